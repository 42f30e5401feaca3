"""ZephraLib in Python: the rasters, vector layers and palettes of the Zephra family of GIS files.

Rasters (a ``.doc`` header beside a binary ``.img`` of byte, 16-bit, 32-bit or float cells; text
rasters; ArcInfo ASCII grids; GeoTIFF) open into NumPy with :func:`open`; their cells are a view
on the library's own buffer. :func:`create` writes a new raster from an array. The submodules
``zephra.xarray`` and ``zephra.dask`` open rasters lazily, read chunk by chunk through windowed
opens.

Failures of the library are :class:`Error` and its subclasses, which also derive from the
closest built-in exception (``OSError`` for files, ``ValueError`` for bad values and text,
``IndexError`` for lists), with the library's message.
"""

import importlib

from ._zephra import (
    ArgumentError,
    ArgumentNullError,
    AssertionFailedError,
    ConvertError,
    Error,
    FileOpenError,
    Header,
    ImageFileError,
    ImageHeaderError,
    InOutError,
    InvalidOperationError,
    ListError,
    MathError,
    Palette,
    PaletteError,
    RefSystemNotFoundError,
    VectorFileError,
    __version__,
    library_version,
    open_allocation_limit,
    set_geotiff_library_path,
    set_open_allocation_limit,
    set_sync_writes,
    sync_writes,
)
from ._export import export
from ._raster import Raster, create, nodata_mask, open, read_header, reclass
from ._shapes import rasterize
from ._vector import Feature, Vector, open_vector

__all__ = [
    "ArgumentError", "ArgumentNullError", "AssertionFailedError", "ConvertError", "Error",
    "Feature", "FileOpenError", "Header", "ImageFileError", "ImageHeaderError", "InOutError",
    "InvalidOperationError", "ListError", "MathError", "Palette", "PaletteError", "Raster",
    "RefSystemNotFoundError", "Vector", "VectorFileError", "create", "export", "library_version",
    "nodata_mask", "open", "open_allocation_limit", "open_vector", "rasterize", "read_header",
    "reclass", "set_geotiff_library_path", "set_open_allocation_limit", "set_sync_writes",
    "sync_writes", "__version__",
]

# xarray and dask are optional: their modules load when first named (zephra.xarray.Backend).
_LAZY_SUBMODULES = ("xarray", "dask")


def __getattr__(name):
    if name in _LAZY_SUBMODULES:
        return importlib.import_module(f".{name}", __name__)
    raise AttributeError(f"module 'zephra' has no attribute {name!r}")
