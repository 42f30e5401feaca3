import os
import pathlib

import numpy as np
import pytest

import zephra
from zephra import _zephra

EXAMPLES = pathlib.Path(os.environ.get("ZEPHRA_EXAMPLES",
                                       pathlib.Path(__file__).parents[2] / "examples"))
CELL_TYPES = [np.float32, np.uint8, np.int16, np.int32]
# A grid with cells of 10 x 20 map units and its north-west corner at (1000, 5000).
TRANSFORM = (10.0, 0.0, 1000.0, 0.0, -20.0, 5000.0)

# Test files are scratch: no flush to the disk.
zephra.set_sync_writes(False)


@pytest.fixture
def elevation():
    return EXAMPLES / "elevation.doc"


def ramp(shape, dtype):
    """Distinct values in every cell, within the cell type."""
    values = np.arange(np.prod(shape)).reshape(shape) % 200 + 1
    return values.astype(dtype)


@pytest.fixture
def make_raster(tmp_path):
    """Writes a binary .doc raster of the given cells and returns its path."""
    def make(values, name="cells.doc", **header):
        path = tmp_path / name
        zephra.create(path, values, transform=header.pop("transform", TRANSFORM), **header)
        return path
    return make


@pytest.fixture
def text_raster(tmp_path):
    """A text .doc raster, written by the library's own write-back of a text image."""
    header = _zephra.Header()
    header.width, header.height, header.data_type, header.file_type = 5, 4, "real", "ascii"
    header.minx, header.maxx, header.miny, header.maxy = 0.0, 5.0, 0.0, 4.0
    header.resolution_x = header.resolution_y = 1.0
    handle = _zephra.create_raster(str(tmp_path / "text.txt"), header)
    handle.cells()[...] = np.arange(20, dtype=np.float32).reshape(4, 5) / 4
    handle.mark_written()
    handle.close()
    return tmp_path / "text.txt"


@pytest.fixture
def geotiff(tmp_path, elevation):
    path = tmp_path / "elevation.tif"
    with zephra.open(elevation) as raster:
        zephra.export(raster, path)
    return path
