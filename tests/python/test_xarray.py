import numpy as np
import pytest

xarray = pytest.importorskip("xarray")

import zephra  # noqa: E402
import zephra.xarray  # noqa: E402
from conftest import EXAMPLES  # noqa: E402


@pytest.mark.parametrize("engine", [zephra.xarray.Backend, "zephra"])
def test_coordinates_are_the_cell_centres_of_the_header(elevation, engine):
    cells = xarray.open_dataarray(elevation, engine=engine)
    header = zephra.read_header(elevation)
    assert cells.dims == ("y", "x") and cells.shape == (header.height, header.width)
    np.testing.assert_allclose(cells.x[[0, -1]], [header.minx + 50, header.maxx - 50])
    np.testing.assert_allclose(cells.y[[0, -1]], [header.maxy - 50, header.miny + 50])
    assert cells.attrs["flag_value"] == header.flag_value
    assert cells.attrs["transform"] == zephra.open(elevation).transform


def test_cells_are_read_only_when_needed(make_raster, tmp_path):
    path = make_raster(np.arange(12, dtype=np.float32).reshape(3, 4))
    cells = xarray.open_dataarray(path, engine="zephra")
    (tmp_path / "cells.doc").with_suffix(".img").unlink()
    with pytest.raises(zephra.Error, match="does not exist|doesn't exist"):
        cells.values


@pytest.mark.parametrize("path, windowed", [("elevation.doc", True), ("rainfall.asc", False)])
def test_chunks_are_read_by_windowed_opens(monkeypatch, path, windowed):
    opens = []
    real_open = zephra._raster.open

    def recorded(path, mode="r", **how):
        opens.append(how.get("window"))
        return real_open(path, mode, **how)

    whole = zephra.open(EXAMPLES / path)
    chunked = xarray.open_dataarray(EXAMPLES / path, engine="zephra", chunks={"y": 7, "x": 9},
                                    mask_nodata=True)
    monkeypatch.setattr(zephra._raster, "open", recorded)
    expected = np.where(whole.nodata_mask(), np.nan, whole.values)
    np.testing.assert_array_equal(chunked.values, expected)
    assert len(opens) == chunked.data.npartitions
    assert all((window is not None) == windowed for window in opens)
    np.testing.assert_array_equal(chunked[3:11:2, 5].values, expected[3:11:2, 5])
