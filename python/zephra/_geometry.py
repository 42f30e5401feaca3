"""The grid of a raster as Python sees it: cell types, affine transform, bounds, windows of
cells, and the header of a new raster."""

import math
import os
import typing
import warnings

import numpy as np

from . import _zephra

#: The NumPy type of each cell type word of a header.
CELL_TYPES = {
    "real": np.dtype(np.float32),
    "byte": np.dtype(np.uint8),
    "integer": np.dtype(np.int16),
    "integer32": np.dtype(np.int32),
}
_DATA_TYPES = {dtype: word for word, dtype in CELL_TYPES.items()}

# The library reads windows in map units given as 32-bit floats; a window edge that lands this
# far from a cell edge (in cells) is taken as that edge.
_EDGE_TOLERANCE = 1e-3
# How far, relative to the cell size, the header's 32-bit bounds may move a cell edge before
# the loss is worth a warning.
_RESOLUTION_TOLERANCE = 1e-6


def cell_dtype(header):
    """The NumPy type in which the library holds the cells of header's raster (text rasters
    hold float32 whatever their header says)."""
    return CELL_TYPES["real"] if header.file_type == "ascii" else CELL_TYPES[header.data_type]


def data_type_of(dtype):
    """The header's cell type word for a NumPy type; TypeError for a type no raster holds."""
    native = np.dtype(dtype).newbyteorder("=")
    try:
        return _DATA_TYPES[native]
    except KeyError:
        raise TypeError(
            f"rasters hold float32, uint8, int16 or int32 cells, not {native}: convert the "
            f"array with .astype() first") from None


def transform_of(header):
    """The affine coefficients (a, b, c, d, e, f) of the cell corners: a cell's north-west
    corner is x = a * col + b * row + c, y = d * col + e * row + f."""
    return (float(header.resolution_x), 0.0, float(header.minx),
            0.0, -float(header.resolution_y), float(header.maxy))


def bounds_of(header):
    """(minx, miny, maxx, maxy) of the grid's outer edges."""
    return (float(header.minx), float(header.miny), float(header.maxx), float(header.maxy))


def nodata_of(header):
    """The declared no-data value, or None."""
    return float(header.flag_value) if header.flag else None


def header_of(like):
    """The header of a Raster, a Header, or the raster at a path."""
    if isinstance(like, _zephra.Header):
        return like
    if isinstance(like, (str, os.PathLike)):
        return _zephra.read_header(os.fspath(like))
    return like.header


def new_header(shape, dtype, *, like=None, transform=..., nodata=..., ref_system=...):
    """The header of a new binary raster of shape (rows, columns) and cell type dtype.

    The grid comes from transform, else from like (whose size must then be shape), else it is a
    plane grid of unit cells with its north-west corner at (0, rows). like also gives the other
    fields (title, units, legend, no-data value, reference system) unless nodata or ref_system
    say otherwise; ... (Ellipsis) means "not given"."""
    if len(shape) != 2:
        raise ValueError(f"a raster has rows and columns, not the shape {shape}")
    height, width = (int(n) for n in shape)
    header = _zephra.Header(header_of(like)) if like is not None else _zephra.Header()
    if transform is ... and like is not None and (header.width, header.height) != (width, height):
        raise ValueError(f"like has {header.width} x {header.height} cells, the array "
                         f"{width} x {height}: give the transform")
    if transform is ... and like is None:
        transform = (1.0, 0.0, 0.0, 0.0, -1.0, float(height))
    header.width, header.height = width, height
    if transform is not ...:
        _set_grid(header, transform)
    header.data_type = data_type_of(dtype)
    header.file_type = "binary"
    if nodata is not ...:
        _set_nodata(header, nodata, np.dtype(dtype))
    elif like is None:
        header.flag = False
    if ref_system is not ...:
        header.ref_system = ref_system
    elif like is None:
        header.ref_system = "plane"
    return header


def _set_grid(header, transform):
    a, b, c, d, e, f = (float(v) for v in transform)
    if b != 0.0 or d != 0.0 or not a > 0.0 or not e < 0.0:
        raise ValueError(f"the library's grids run north-up with no rotation: the transform "
                         f"needs b = d = 0, a > 0 and e < 0, not {tuple(transform)}")
    header.minx, header.maxy = c, f
    header.maxx, header.miny = c + a * header.width, f + e * header.height
    header.resolution_x, header.resolution_y = a, -e
    _warn_narrowed_grid(header, (a, c, -e, f))


def _warn_narrowed_grid(header, asked):
    """The header keeps bounds as 32-bit floats and a reader derives the cell size from them."""
    kept = np.array([header.minx, header.maxx, header.miny, header.maxy], dtype=np.float32)
    kept = kept.astype(np.float64)
    res_x = np.float32((kept[1] - kept[0]) / header.width)
    res_y = np.float32((kept[3] - kept[2]) / header.height)
    a, c, res, f = asked
    moved = max(abs(kept[0] - c) / a, abs(kept[3] - f) / res)
    drift = max(abs(res_x - a) / a, abs(res_y - res) / res)
    if moved > _EDGE_TOLERANCE or drift > _RESOLUTION_TOLERANCE:
        warnings.warn(
            f"the header keeps its bounds as 32-bit floats: the grid reads back with its corner "
            f"at ({kept[0]}, {kept[3]}) and cells of {res_x} x {res_y}, not ({c}, {f}) and "
            f"{a} x {res}", stacklevel=4)


def _set_nodata(header, nodata, dtype):
    if nodata is None or (isinstance(nodata, float) and math.isnan(nodata)):
        header.flag = False  # NaN is no data to the library without a declaration
        return
    if dtype.kind in "iu" and not _holds(np.iinfo(dtype), nodata):
        raise ValueError(f"the no-data value {nodata} does not fit {dtype} cells")
    header.flag, header.flag_value = True, float(nodata)


def _holds(limits, value):
    return float(value).is_integer() and limits.min <= value <= limits.max


class Grid(typing.NamedTuple):
    """What a reader of part of a raster needs of its header: small, so that it travels to
    the workers of a cluster at no cost."""

    minx: float
    maxy: float
    res_x: float
    res_y: float
    shape: tuple
    dtype: np.dtype
    whole_only: bool  # text rasters and grids, which the library reads only whole

    @classmethod
    def of(cls, header):
        return cls(float(header.minx), float(header.maxy), float(header.resolution_x),
                   float(header.resolution_y), (header.height, header.width), cell_dtype(header),
                   header.file_type == "ascii")

    def window(self, rows, cols):
        """The map window (minx, miny, maxx, maxy) of rows rows[0] .. rows[1] - 1 and columns
        cols[0] .. cols[1] - 1."""
        return (self.minx + cols[0] * self.res_x, self.maxy - rows[1] * self.res_y,
                self.minx + cols[1] * self.res_x, self.maxy - rows[0] * self.res_y)
