"""rasterize: the polygons of a shapefile burnt into a new raster by the library's shape fill,
each feature with its own value."""

import numbers
import os
import warnings

import numpy as np

from . import _geometry, _zephra


def rasterize(shapefile, values=None, *, like=None, shape=None, transform=..., dtype=np.float32,
              nodata=..., ref_system=...):
    """A new raster in memory with the polygons of shapefile burnt in by the library's shape
    fill: a cell takes the value of the polygon that holds its north-west corner, holes stay
    empty, and every part of a multi-part feature burns its feature's value.

    values gives each feature (record) its value: the name of a numeric field of the ``.dbf``
    beside the shapefile, a sequence with one number per record, or one number for all (1 if
    None). A record without a value (NULL, or NaN) burns nothing. The grid is that of like (a
    Raster, Header or path), or ``shape`` (rows, columns) cells on ``transform``. Cells outside
    the polygons hold nodata (-9999, or 0 for uint8 cells). The fill runs without the GIL.
    """
    shapefile = os.fspath(shapefile)
    dtype = np.dtype(dtype)
    if nodata is ...:
        nodata = 0 if dtype == np.uint8 else -9999.0
    grid = shape if shape is not None else _grid_shape(like)
    header = _geometry.new_header(grid, dtype, like=like, transform=transform, nodata=nodata,
                                  ref_system=ref_system)
    parts = _zephra.ShapeMap(shapefile).feature_ids
    burnt = _part_values(shapefile, values, parts, dtype, nodata)

    from ._raster import Raster
    raster = Raster(_zephra.create_raster("", header, in_memory=True), "memory")
    raster.values[...] = nodata  # the fill leaves the cells outside the polygons alone
    raster._handle.fill_shape(shapefile, burnt.tolist())
    # The fill declares the library's own flag value; the background is this one.
    raster.header.flag, raster.header.flag_value = True, float(nodata)
    raster.header.flag_def = "Outside the polygons"
    raster._handle.mark_written()
    return raster


def _grid_shape(like):
    if like is None:
        raise ValueError("rasterize needs the grid: like=, or shape= with transform=")
    header = _geometry.header_of(like)
    return (header.height, header.width)


def _feature_values(shapefile, values, count):
    if values is None:
        values = 1.0
    if isinstance(values, str):
        read = _zephra.read_dbf_field(shapefile, values)
        return np.array([np.nan if v is None else v for v in read], np.float64)
    if isinstance(values, numbers.Number):
        return np.full(count, float(values))
    values = np.asarray(values, np.float64)
    if values.shape != (count,):
        raise ValueError(f"{shapefile} has {count} records, and values gives {values.size}")
    return values


def _part_values(shapefile, values, parts, dtype, nodata):
    """One value per polygon part, as the fill takes them: its feature's value."""
    count = int(parts.max()) + 1 if parts.size else 0
    features = _feature_values(shapefile, values, count)
    burnt = features[parts] if parts.size else features[:0]
    missing = np.isnan(burnt)
    burnt = np.where(missing, nodata, burnt)
    _check_fits(burnt[~missing], dtype, nodata, shapefile)
    return burnt.astype(np.float32)


def _check_fits(burnt, dtype, nodata, shapefile):
    if dtype.kind in "iu":
        limits = np.iinfo(dtype)
        if np.any((burnt < limits.min) | (burnt > limits.max)):
            raise ValueError(f"{shapefile}: values outside {limits.min} .. {limits.max} do not "
                             f"fit {dtype} cells")
        rounded = np.count_nonzero(burnt != np.round(burnt))
        if rounded:
            warnings.warn(f"{shapefile}: {rounded} polygon parts burn values rounded to {dtype}",
                          stacklevel=4)
    below = np.count_nonzero(burnt <= nodata)
    if below:
        warnings.warn(f"{shapefile}: {below} polygon parts burn a value at or below the no-data "
                      f"value {nodata} and read as no data", stacklevel=4)
