"""export: a raster through the library's exporters, with what a format can't hold either taken
by a lossless route or named in a warning."""

import os
import warnings

import numpy as np

from . import _zephra

_FORMATS = {".asc": "grid", ".xyz": "xyz", ".tif": "geotiff", ".tiff": "geotiff",
            ".img": "copy", ".doc": "copy"}
# What the library's exporters write as no data: NaN and everything at or below these.
_GRID_NODATA = -9999.0
_GEOTIFF_NODATA = -9990.0
# Float32 holds every whole number up to this one.
_EXACT_INTEGERS = 2 ** 24


def export(raster, path, format=None, *, progress=None):
    """Writes raster to path through the library's exporter of format: ``"grid"`` (ArcInfo
    ASCII grid), ``"xyz"`` (x y value lines), ``"copy"`` (a binary data file with its ``.doc``)
    or ``"geotiff"``; by default the extension of path decides (.asc, .xyz, .img or .doc, .tif).

    progress(row, last_row), if given, is called as the grid and XYZ exporters write rows. The
    export runs without the GIL. No-data cells go out as the format's no-data value (the grid's
    -9999, the GeoTIFF's NaN) whatever value the raster declares; whatever else the format loses
    (decimals past the fourth, a reference system, a legend, cells that would read as no data)
    is named in a warning.
    """
    path = os.fspath(path)
    format = format or _format_of(path)
    source = raster
    if format in ("grid", "geotiff"):
        source = _with_format_nodata(raster, _GRID_NODATA if format == "grid" else _GEOTIFF_NODATA)
    for loss in _losses(raster, format):
        warnings.warn(f"{path}: {loss}", stacklevel=2)
    _zephra.export_raster(source._handle, path, format, progress)


def _format_of(path):
    extension = os.path.splitext(path)[1].lower()
    try:
        return _FORMATS[extension]
    except KeyError:
        raise ValueError(f"can't tell the format of {path} from its extension: give format="
                         f"'grid', 'xyz', 'copy' or 'geotiff'") from None


def _with_format_nodata(raster, threshold):
    """raster itself if its no-data cells already read as no data in the format, else a float
    copy in memory with them set to the library's flag value."""
    from ._raster import memory_raster
    mask = raster.nodata_mask()
    values = raster.values
    if not np.any(mask & ~(values <= threshold)):
        return raster
    header = _zephra.Header(raster.header)
    header.data_type, header.file_type = "real", "binary"
    copy = np.where(mask, np.float32(_GRID_NODATA), values.astype(np.float32))
    return memory_raster(copy, header)


def _losses(raster, format):
    header, values = raster.header, raster.values
    valid = values[~raster.nodata_mask()]
    losses = []
    if format in ("grid", "geotiff"):
        threshold = _GRID_NODATA if format == "grid" else _GEOTIFF_NODATA
        losses.append((np.count_nonzero(valid <= threshold),
                       f"cells at or below {threshold} that read as no data"))
    if format in ("grid", "xyz"):
        losses.append((np.count_nonzero(_rounded(valid) != valid),
                       "cells rounded to four decimals"))
        losses.append((header.ref_system.lower() not in ("", "plane"),
                       f"the reference system {header.ref_system!r} is not kept"))
    if format == "grid":
        edges = np.array([header.minx, header.miny, header.resolution_x], np.float32)
        losses.append((np.count_nonzero(_rounded(edges) != edges),
                       "corner or cell size rounded to four decimals"))
    if format in ("grid", "geotiff"):
        losses.append((header.resolution_x != header.resolution_y,
                       f"cells of {header.resolution_x} x {header.resolution_y} written square"))
    if format == "geotiff" and values.dtype.kind in "iu":
        losses.append((np.count_nonzero(np.abs(valid.astype(np.int64)) > _EXACT_INTEGERS),
                       "whole numbers past 2**24 rounded to 32-bit floats"))
    if format == "xyz":
        losses.append((values.size - valid.size, "no-data cells written as values"))
        losses.append((not header.is_lat_lon,
                       "y counts up from the south edge (the north row at y = miny), as the "
                       "library writes rasters that are not lat/long"))
    if format != "copy":
        losses.append((bool(header.categories), "the legend is not kept"))
    return [_counted(count, what) for count, what in losses if count]


def _rounded(values):
    return np.round(values.astype(np.float64), 4).astype(np.float32)


def _counted(count, what):
    return what if isinstance(count, (bool, np.bool_)) else f"{int(count)} {what}"
