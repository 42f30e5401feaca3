"""Rasters as Dask arrays.

:func:`open` builds a Dask array whose every chunk is read by a windowed open of the library in
the worker that computes it: the graph carries the path and a few numbers of the grid, and each
worker opens the file itself, so the same code runs on a ``distributed.LocalCluster`` and on a
cluster of many machines that share a file system. :func:`store` writes a Dask array to a new
raster, computing it in bands of rows.
"""

import os

import dask
import dask.array as da
import numpy as np
from dask.base import tokenize

from . import _geometry, _raster, _zephra

# The bands of rows that store computes at once, in bytes of cells.
_STORE_BYTES = 256 * 2**20


def open(path, chunks="auto"):  # noqa: A001 - the module's own open
    """The raster at path as a Dask array, each chunk read by a windowed open where the chunk
    is computed. chunks is anything ``dask.array`` takes ("auto", a shape, tuples of sizes).
    Text rasters and ArcInfo grids have no windowed read: they are one chunk by default, and
    each chunk of them reads the whole text."""
    path = os.path.abspath(os.fspath(path))
    grid = _geometry.Grid.of(_raster.read_header(path))
    if grid.whole_only and chunks == "auto":
        chunks = grid.shape
    chunks = da.core.normalize_chunks(chunks, grid.shape, dtype=grid.dtype)
    stat = os.stat(path)
    name = "zephra-open-" + tokenize(path, stat.st_mtime_ns, stat.st_size, chunks)
    return da.map_blocks(_read_block, path, grid, chunks=chunks, dtype=grid.dtype,
                         meta=np.empty((0, 0), grid.dtype), name=name)


def _read_block(path, grid, block_info=None):
    (row0, row1), (col0, col1) = block_info[None]["array-location"]
    return _raster.read_cells(path, grid, (row0, row1), (col0, col1))


def store(array, path, *, like=None, transform=..., nodata=..., ref_system=...):
    """Writes the 2-D Dask array to a new binary ``.doc`` raster at path, as
    :func:`zephra.create` writes a NumPy array: the header from like, transform, nodata and
    ref_system, the file through the library's write-back. The array is computed in bands of
    rows of chunks, on whatever scheduler is active, into the new raster's buffer; the files
    are written once every band is in."""
    path = os.fspath(path)
    header = _geometry.new_header(array.shape, array.dtype, like=like, transform=transform,
                                  nodata=nodata, ref_system=ref_system)
    handle = _zephra.create_raster(path, header)
    try:
        cells = handle.cells()
        for rows, bands in _band_groups(array):
            for (start, stop), band in zip(rows, dask.compute(*bands)):
                cells[start:stop] = band
        _raster._warn_cells_read_as_nodata(cells, _geometry.nodata_of(header))
    except BaseException:
        handle.mem_only = True  # nothing half-made reaches the disk
        raise
    _raster.Raster(handle, "r+", path).close()


def _band_groups(array):
    """The bands of rows of chunks, in groups of about _STORE_BYTES."""
    row_bytes = array.shape[1] * array.dtype.itemsize
    starts = np.cumsum((0,) + array.chunks[0])
    rows, bands, size = [], [], 0
    for i in range(array.numblocks[0]):
        rows.append((int(starts[i]), int(starts[i + 1])))
        bands.append(array.blocks[i])
        size += (starts[i + 1] - starts[i]) * row_bytes
        if size >= _STORE_BYTES:
            yield rows, bands
            rows, bands, size = [], [], 0
    if bands:
        yield rows, bands
