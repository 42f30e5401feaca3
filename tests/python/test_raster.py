import shutil

import numpy as np
import pytest

import zephra
from conftest import CELL_TYPES, EXAMPLES, TRANSFORM, ramp


def library_cells(raster):
    """Every cell as the library's own cell read gives it."""
    rows, cols = raster.shape
    return np.array([[raster.read_cell(c, r) for c in range(cols)] for r in range(rows)])


@pytest.mark.parametrize("dtype", CELL_TYPES)
def test_values_are_the_buffer_of_every_cell_type(make_raster, dtype):
    cells = ramp((6, 7), dtype)
    with zephra.open(make_raster(cells)) as raster:
        assert raster.dtype == dtype and raster.values.dtype == dtype
        assert raster.values.base is raster._handle  # a view kept alive by the raster
        np.testing.assert_array_equal(raster.values, cells)
        np.testing.assert_array_equal(raster.values, library_cells(raster))
        assert not raster.values.flags.writeable


@pytest.mark.parametrize("form", ["doc", "text", "grid", "geotiff"])
def test_every_form_opens_into_numpy(form, elevation, text_raster, geotiff):
    path = {"doc": elevation, "text": text_raster, "grid": EXAMPLES / "rainfall.asc",
            "geotiff": geotiff}[form]
    with zephra.open(path) as raster:
        np.testing.assert_array_equal(raster.values, library_cells(raster).astype(raster.dtype))
        assert raster.values.shape == (raster.header.height, raster.header.width)


@pytest.mark.parametrize("path", ["elevation", "geotiff"])
def test_windowed_and_thinned_buffers_hold_the_kept_cells(path, elevation, geotiff):
    path = {"elevation": elevation, "geotiff": geotiff}[path]
    whole = zephra.open(path).values
    minx, _, _, maxy = zephra.open(path).bounds
    window = (minx + 300, maxy - 1200, minx + 1700, maxy - 500)  # rows 5..11, columns 3..16
    with zephra.open(path, window=window) as part:
        np.testing.assert_array_equal(part.values, whole[5:12, 3:17])
        np.testing.assert_array_equal(part.values, library_cells(part))
        assert part.bounds == pytest.approx(window)
        assert part.file_header.width == whole.shape[1]
    with zephra.open(path, width=10) as thinned:
        assert thinned.scale == 4
        np.testing.assert_array_equal(thinned.values, whole[::4, ::4][:7, :10])


def test_a_write_through_values_reaches_the_files(make_raster):
    path = make_raster(ramp((5, 6), np.int16), nodata=-1)
    with zephra.open(path, "r+") as raster:
        raster.values[2, 3] = 900
        raster.values[0, :] = -1
        raster.header.file_title = "changed"
        assert raster.read_cell(3, 2) == 900  # the library reads what NumPy wrote
    reread = zephra.open(path)
    assert reread.values[2, 3] == 900 and (reread.values[0] == -1).all()
    assert reread.header.file_title == "changed"
    # The range is that of the cells, no data left out.
    valid = reread.values[1:]
    assert (reread.header.min_value, reread.header.max_value) == (valid.min(), 900)


def test_a_failed_write_back_raises(make_raster, tmp_path):
    folder = tmp_path / "gone"
    folder.mkdir()
    path = make_raster(ramp((3, 3), np.float32), name="gone/cells.doc")
    raster = zephra.open(path, "r+")
    raster.values[0, 0] = 5
    shutil.rmtree(folder)
    with pytest.raises(zephra.Error) as failure:
        raster.close()
    assert isinstance(failure.value, OSError)


@pytest.mark.parametrize("dtype", CELL_TYPES)
def test_create_keeps_grid_nodata_and_reference_system(make_raster, dtype):
    nodata = 0 if dtype == np.uint8 else -9999
    path = make_raster(ramp((4, 5), dtype), nodata=nodata, ref_system="utm 33")
    with zephra.open(path) as raster:
        assert raster.transform == TRANSFORM
        assert raster.bounds == (1000.0, 4920.0, 1050.0, 5000.0)
        assert raster.nodata == nodata and raster.ref_system == "utm 33"
        assert raster.header.data_type == {np.float32: "real", np.uint8: "byte",
                                           np.int16: "integer", np.int32: "integer32"}[dtype]


@pytest.mark.parametrize("arguments, failure", [
    ({"values": np.zeros((2, 2), np.float64)}, TypeError),
    ({"values": np.zeros((2, 2, 2), np.float32)}, ValueError),
    ({"transform": (1, 0.5, 0, 0, -1, 0)}, ValueError),  # rotated
    ({"values": np.zeros((2, 2), np.uint8), "nodata": -9999}, ValueError),
])
def test_create_refuses_what_a_raster_cannot_hold(make_raster, arguments, failure):
    values = arguments.pop("values", np.zeros((2, 2), np.float32))
    with pytest.raises(failure):
        make_raster(values, **arguments)


def test_create_warns_of_a_grid_the_header_cannot_keep(make_raster):
    with pytest.warns(UserWarning, match="32-bit floats"):
        make_raster(np.zeros((2, 2), np.float32), transform=(0.01, 0, 500000.0, 0, -0.01, 0))


def test_update_is_refused_where_nothing_would_be_written(geotiff, elevation):
    with pytest.raises(ValueError, match="read-only"):
        zephra.open(geotiff, "r+")
    with pytest.raises(ValueError, match="never written back"):
        zephra.open(elevation, "r+", width=10)
    with pytest.raises(ValueError, match="only whole"):
        zephra.open(EXAMPLES / "rainfall.asc", window=(500000, 6100000, 501000, 6101000))


def bad_number(tmp_path):
    (tmp_path / "bad.doc").write_text("columns : lots\nrows : 2\n")
    zephra.read_header(tmp_path / "bad.doc")


@pytest.mark.parametrize("action, error, builtin, message", [
    (lambda tmp: zephra.open(tmp / "none.doc"), zephra.FileOpenError, OSError, "none.doc"),
    (bad_number, zephra.ConvertError, ValueError, "lots"),
    (lambda tmp: zephra.open(EXAMPLES / "sample.doc").sample(0, 0), zephra.ArgumentError,
     ValueError, "outside map bounds"),
    (lambda tmp: zephra.open_vector(EXAMPLES / "zones.vec").layer[9], zephra.ListError,
     IndexError, ""),
    (lambda tmp: zephra.Palette().blend(5, 2), zephra.PaletteError, IndexError,
     "Index out of range"),
])
def test_library_failures_map_to_python_exceptions(tmp_path, action, error, builtin, message):
    with pytest.raises(error, match=message) as failure:
        action(tmp_path)
    assert isinstance(failure.value, zephra.Error) and isinstance(failure.value, builtin)
