"""Raster: an open raster of the library, whose cells are a NumPy view on the library's buffer;
open, create, reclass."""

import os
import warnings

import numpy as np

from . import _geometry, _zephra

_MODES = ("r", "r+")
# The forms that the library always reads whole, whatever window or thinning is asked.
_WHOLE_ONLY = ("ASCII", "ARCGRID")
# What a smoothed read gives when no cell of the window counts.
_NO_SMOOTHED_VALUE = np.float32(-9990.0)


class Raster:
    """A raster held by the library: its header, its cells and the operations on it.

    ``values`` is a NumPy array that shares the library's buffer, rows x columns, north row
    first. It is read-only unless the raster was opened with ``"r+"``; then what is written
    into it reaches the files when the raster is closed (``close()``, or the end of a ``with``
    block), through the library's write-back, which replaces the data file and the ``.doc``
    safely and raises :class:`zephra.Error` when it can't. The header (``header``, a
    :class:`zephra.Header`, also a mapping) travels with it.

    A thinned or windowed raster holds only the cells it kept; ``file_header`` describes the
    whole file.
    """

    def __init__(self, handle, mode="r", path=None):
        """Wraps a handle of the extension module; use :func:`open` or :func:`create`."""
        self._handle = handle
        self._mode = mode
        self._closed = False
        self._values = None
        self.path = path

    # Life

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        self.close()

    def close(self):
        """Ends the raster; one opened with ``"r+"`` is written back. Runs once."""
        if self._closed:
            return
        self._closed = True
        if self._mode == "r+":
            self._handle.mark_written()
        self._handle.close()

    @property
    def closed(self):
        return self._closed

    def __del__(self):
        if self._mode == "r+" and not getattr(self, "_closed", True):
            warnings.warn(f"raster {self.path} opened for update was never closed: written back "
                          f"now", ResourceWarning, stacklevel=2)
            try:
                self.close()
            except Exception as failure:  # noqa: BLE001 - a finaliser must not raise
                warnings.warn(f"writing back {self.path} failed: {failure}", RuntimeWarning)

    @property
    def mode(self):
        """"r", "r+", or "memory" for a raster that has no files."""
        return self._mode

    # Cells

    @property
    def values(self):
        """The cells, a view on the library's buffer (no copy)."""
        if self._values is None:
            values = self._handle.cells()  # writable as made
            if self._mode == "r":
                values.flags.writeable = False
            self._values = values
        return self._values

    def __array__(self, dtype=None):
        return self.values if dtype is None else self.values.astype(dtype)

    def read_cell(self, col, row):
        """The zero-based cell (col, row) as the library reads it, a float."""
        return self._handle.read_cr0(col, row)

    def sample(self, x, y, smooth=0):
        """The cells under the map points (x, y), scalars or arrays; with smooth > 0 the mean of
        the valid cells within smooth cells (wrapping east-west), NaN where none is valid. A
        point off the map raises ArgumentError."""
        xs, ys = np.broadcast_arrays(np.asarray(x, np.float64), np.asarray(y, np.float64))
        values = self._handle.sample(xs.ravel(), ys.ravel(), int(smooth)).reshape(xs.shape)
        if smooth > 0:
            values[values == _NO_SMOOTHED_VALUE] = np.nan
        return values if values.ndim else values[()]

    def nodata_mask(self):
        """True where a cell is no data."""
        return nodata_mask(self.values, self.nodata)

    def range(self, low=None, high=None):
        """(min, max) of the cells within low .. high, both included; by default of the cells
        that are not no data. Raises ImageFileError when no cell lies there."""
        if low is None:
            floor = -9999.0 if self.nodata is None else max(self.nodata, -9999.0)
            low = np.nextafter(np.float32(floor), np.float32(np.inf))
        found = self._handle.range(low, high)
        return (found.min, found.max)

    # Header and grid

    @property
    def header(self):
        """The header of the cells held (the raster's own: changes reach an ``"r+"`` raster's
        ``.doc``)."""
        return self._handle.header

    @property
    def file_header(self):
        """A copy of the file's own header, which differs from ``header`` when thinned or
        windowed."""
        return self._handle.file_header

    @property
    def attrs(self):
        """The header as a dict."""
        return self.header.to_dict()

    @property
    def shape(self):
        return (self.header.height, self.header.width)

    @property
    def dtype(self):
        return self._handle.dtype

    @property
    def transform(self):
        """Affine coefficients (a, b, c, d, e, f) of the cell corners: x = a * col + b * row + c,
        y = d * col + e * row + f, with col and row of a corner counted from the north-west."""
        return _geometry.transform_of(self.header)

    @property
    def bounds(self):
        """(minx, miny, maxx, maxy) of the outer edges of the cells held."""
        return _geometry.bounds_of(self.header)

    @property
    def res(self):
        """(cell width, cell height) in map units."""
        return (float(self.header.resolution_x), float(self.header.resolution_y))

    @property
    def nodata(self):
        """The no-data value the header declares, or None; cells at or below it are no data."""
        return _geometry.nodata_of(self.header)

    @property
    def ref_system(self):
        return self.header.ref_system

    @property
    def scale(self):
        """The thinning step: every scale-th cell of every scale-th row was kept."""
        return self._handle.scale

    # Whole-raster work

    def reclass(self, classes, *, dtype=None):
        """A new raster in memory: every cell through the classes (see :func:`reclass`)."""
        return reclass(self, classes, dtype=dtype)

    def export(self, path, format=None, *, progress=None):
        """Writes the raster through one of the library's exporters (see :func:`zephra.export`)."""
        from ._export import export
        export(self, path, format, progress=progress)

    def __repr__(self):
        state = "closed" if self._closed else self._mode
        return (f"<zephra.Raster {self.path or '(memory)'} {self.header.width} x "
                f"{self.header.height} {self.dtype} {state}>")


def open(path, mode="r", *, width=None, window=None):  # noqa: A001 - the package's own open
    """Opens a raster of any form the library reads, told by its content: a binary or text
    ``.doc`` raster (by its ``.doc`` or its data file), an ArcInfo grid, a GeoTIFF.

    ``window=(minx, miny, maxx, maxy)`` reads the cells of that part of the map;
    ``width=n`` thins the raster (or the window) by the largest power of two that leaves at
    least n columns. Text rasters and grids are only read whole. ``mode="r+"`` opens a whole
    ``.doc`` raster for update: ``values`` is writable and the raster is written back when
    closed. The open runs without the GIL.
    """
    if mode not in _MODES:
        raise ValueError(f"mode must be 'r' or 'r+', not {mode!r}")
    if mode == "r+" and (width is not None or window is not None):
        raise ValueError("a thinned or windowed raster is never written back: open it whole "
                         "for update")
    path = os.fspath(path)
    library_window = None
    if window is not None:
        minx, miny, maxx, maxy = window
        library_window = (minx, maxx, miny, maxy)
    handle = _zephra.open_raster(path, library_window, width)
    if handle.type_id in _WHOLE_ONLY and (width is not None or window is not None):
        raise ValueError(f"{path} is a text raster, which the library reads only whole: open it "
                         f"without window and width, and slice values")
    if mode == "r+" and (handle.mem_only or handle.type_id == "ARCGRID"):
        raise ValueError(f"{path} is read-only as a file (GeoTIFF or ArcInfo grid): open it "
                         f"with 'r' and write a new raster with zephra.create")
    return Raster(handle, mode, path)


def read_header(path):
    """The header of the raster at path, reading as few cells as its form allows: none for a
    ``.doc`` raster, a coarse sample of a GeoTIFF (its min_value and max_value are then NaN),
    all of an ArcInfo grid."""
    return _zephra.read_header(os.fspath(path))


def create(path, array, *, like=None, transform=..., nodata=..., ref_system=...):
    """Writes a new binary ``.doc`` raster (the data file at path, or beside a ``.doc`` path)
    from a 2-D array of float32, uint8, int16 or int32, through the library's write-back.

    The grid is ``transform`` (a, b, c, d, e, f as :attr:`Raster.transform`) or that of
    ``like`` (a Raster, Header or path), else unit cells with the north-west corner at
    (0, rows). ``like`` also gives title, units, legend, no-data value and reference system,
    unless ``nodata`` (None for none) or ``ref_system`` say otherwise. Returns the new raster,
    closed, its values in memory.
    """
    array = np.asarray(array)
    header = _geometry.new_header(array.shape, array.dtype, like=like, transform=transform,
                                  nodata=nodata, ref_system=ref_system)
    _warn_cells_read_as_nodata(array, _geometry.nodata_of(header))
    handle = _zephra.create_raster(os.fspath(path), header)
    try:
        handle.cells()[...] = array
    except BaseException:
        handle.mem_only = True  # nothing half-made reaches the disk
        raise
    raster = Raster(handle, "r+", os.fspath(path))
    raster.close()
    raster._mode = "r"
    return raster


def memory_raster(array, header=None, *, nodata=None):
    """A raster with no files holding a copy of array, on header's grid (unit cells if None)."""
    array = np.asarray(array)
    if header is None:
        header = _geometry.new_header(array.shape, array.dtype, nodata=nodata)
    handle = _zephra.create_raster("", header, in_memory=True)
    handle.cells()[...] = array
    handle.mark_written()
    return Raster(handle, "memory")


def nodata_mask(values, nodata=None):
    """True where a cell is no data as the library reads it: NaN, and at or below nodata."""
    values = np.asarray(values)
    mask = np.isnan(values) if values.dtype.kind == "f" else np.zeros(values.shape, bool)
    if nodata is not None:
        mask |= values <= nodata
    return mask


def reclass(source, classes, *, dtype=None, nodata=None):
    """Every cell of source through classes, by the library's reclass.

    classes is a sequence of ``(lower, upper, value)`` or ``(lower, upper, value, name)``: cells
    from lower to upper, both included, take the whole number value; the first class that holds
    a cell wins, and cells in no class keep their value. No-data cells stay as they are. The
    cell type is dtype, or the smallest that holds the source's cells, the class values and the
    no-data value.

    source is a Raster (the result is a new Raster in memory whose legend is the class names)
    or a 2-D array with its nodata (the result is an array).
    """
    if isinstance(source, Raster):
        raster = source
    else:
        raster = memory_raster(source, nodata=nodata)
    key, values = _key_of(classes)
    cells = np.dtype(dtype) if dtype is not None else _dtype_holding(raster.dtype, values,
                                                                      raster.nodata)
    header = _zephra.Header(raster.header)
    header.data_type = _geometry.data_type_of(cells)
    header.file_type = "binary"
    out = Raster(_zephra.create_raster("", header, in_memory=True), "memory")
    raster._handle.reclass(out._handle, key)
    mask = raster.nodata_mask()
    out.values[mask] = raster.values[mask]
    out._handle.mark_written()
    return out if isinstance(source, Raster) else out.values


def _key_of(classes):
    key, values = _zephra.Key(), []
    for entry in classes:
        lower, upper, value, *name = entry
        if not float(value).is_integer() or not -2**31 <= value < 2**31:
            raise ValueError(f"a class value is a 32-bit whole number, not {value}")
        key.add_class(lower, upper, int(value), name[0] if name else f"{lower}:{upper}")
        values.append(int(value))
    return key, values


def _dtype_holding(cells, values, nodata):
    """The smallest cell type that holds every cell of type cells, every value and nodata."""
    cells = np.dtype(cells)
    needed = values + ([nodata] if nodata is not None else [])
    if cells.kind == "f" or not all(float(v).is_integer() for v in needed):
        return np.dtype(np.float32)
    limits = np.iinfo(cells)
    low, high = min([limits.min, *needed]), max([limits.max, *needed])
    for dtype in (np.uint8, np.int16, np.int32):
        if np.iinfo(dtype).min <= low and high <= np.iinfo(dtype).max:
            return np.dtype(dtype)
    return np.dtype(np.float32)


def _warn_cells_read_as_nodata(array, nodata):
    if nodata is None:
        return
    below = int(np.count_nonzero(array < nodata))
    if below:
        warnings.warn(f"{below} cells lie below the no-data value {nodata} and read as no data",
                      stacklevel=3)



def read_cells(path, grid, rows, cols):
    """The cells rows[0] .. rows[1] - 1, cols[0] .. cols[1] - 1 of the raster at path, by a
    windowed open (text rasters and grids are read whole and cut), for the lazy readers."""
    if rows[0] >= rows[1] or cols[0] >= cols[1]:
        return np.empty((max(rows[1] - rows[0], 0), max(cols[1] - cols[0], 0)), grid.dtype)
    if grid.whole_only:
        return open(path).values[rows[0]:rows[1], cols[0]:cols[1]].copy()  # let the rest go
    whole = rows == (0, grid.shape[0]) and cols == (0, grid.shape[1])
    cells = open(path, window=None if whole else grid.window(rows, cols)).values
    expected = (rows[1] - rows[0], cols[1] - cols[0])
    if cells.shape != expected:
        raise RuntimeError(f"{path}: the window of rows {rows} and columns {cols} read "
                           f"{cells.shape} cells, not {expected}: its edges, as the 32-bit "
                           f"floats the library takes, fall on other cells")
    return cells
