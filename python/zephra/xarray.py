"""An xarray backend for the rasters of the family.

``xarray.open_dataarray(path, engine=zephra.xarray.Backend)`` (or ``engine="zephra"`` where the
package is installed with its entry point) opens any raster the library reads, lazily: the header
comes first, the cells when they are needed, and with ``chunks=`` each chunk is read by a
windowed open. ``x`` and ``y`` are the cell centres, the header is in ``attrs``, and
``mask_nodata=True`` turns no-data cells into NaN.
"""

import os

import numpy as np
from xarray import Dataset, Variable
from xarray.backends import BackendArray, BackendEntrypoint
from xarray.core import indexing

from . import _geometry, _raster

_EXTENSIONS = (".doc", ".img", ".asc", ".tif", ".tiff", ".txt")
# The name of the one variable; open_dataarray gives it to the DataArray.
VARIABLE = "cells"


class _RasterArray(BackendArray):
    """The cells of a raster, read by windowed opens of the rows and columns asked for."""

    def __init__(self, path, grid, nodata, mask_nodata):
        self.path, self.grid, self.nodata, self.mask_nodata = path, grid, nodata, mask_nodata
        self.shape = grid.shape
        self.dtype = _masked_dtype(grid.dtype) if mask_nodata else grid.dtype

    def __getitem__(self, key):
        return indexing.explicit_indexing_adapter(key, self.shape,
                                                  indexing.IndexingSupport.BASIC, self._read)

    def _read(self, key):
        spans = [_span(k, n) for k, n in zip(key, self.shape)]
        cells = _raster.read_cells(self.path, self.grid, *(span for span, _ in spans))
        cells = cells[tuple(pick for _, pick in spans)]
        if not self.mask_nodata:
            return np.array(cells)
        masked = cells.astype(self.dtype)
        masked[_raster.nodata_mask(cells, self.nodata)] = np.nan
        return masked


def _span(key, size):
    """The rows (or columns) start .. stop that key needs, and what to pick from them."""
    if isinstance(key, slice):
        start, stop, step = key.indices(size)
        if step < 0:  # read forwards, pick backwards
            first = start + (len(range(start, stop, step)) - 1) * step
            return (first, start + 1), slice(None, None, step)
        return (start, max(stop, start)), slice(None, None, step)
    return (int(key), int(key) + 1), 0


def _masked_dtype(dtype):
    # float32 holds every byte and 16-bit cell exactly; 32-bit integers need float64.
    return np.dtype(np.float64 if dtype == np.int32 else np.float32)


class Backend(BackendEntrypoint):
    """Opens the rasters of the Zephra family: binary and text ``.doc`` rasters, ArcInfo grids,
    GeoTIFF."""

    description = "Rasters of the Zephra family (.doc rasters, ArcInfo grids, GeoTIFF)"
    open_dataset_parameters = ("filename_or_obj", "drop_variables", "mask_nodata")

    def open_dataset(self, filename_or_obj, *, drop_variables=None, mask_nodata=False):
        path = os.path.abspath(os.fspath(filename_or_obj))
        header = _raster.read_header(path)
        grid = _geometry.Grid.of(header)
        nodata = _geometry.nodata_of(header)
        cells = indexing.LazilyIndexedArray(_RasterArray(path, grid, nodata, mask_nodata))
        attrs = header.to_dict()
        attrs.update(transform=_geometry.transform_of(header), nodata=nodata)
        height, width = grid.shape
        x = grid.minx + (np.arange(width) + 0.5) * grid.res_x
        y = grid.maxy - (np.arange(height) + 0.5) * grid.res_y
        variables = {} if VARIABLE in (drop_variables or ()) else {
            VARIABLE: Variable(("y", "x"), cells, attrs=attrs)}
        return Dataset(variables, coords={"x": x, "y": y}, attrs=attrs)

    def guess_can_open(self, filename_or_obj):
        try:
            return os.path.splitext(os.fspath(filename_or_obj))[1].lower() in _EXTENSIONS
        except TypeError:
            return False
