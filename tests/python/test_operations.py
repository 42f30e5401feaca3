import numpy as np
import pytest

import zephra
from conftest import EXAMPLES, ramp

CLASSES = [(0, 150, 1, "low"), (100, 250, 2, "middle"), (250, 1000, 3, "high")]


def reclassified(values, classes, nodata):
    """What a reclass gives: the first class that holds a cell, else the cell; no data stays."""
    out = values.astype(np.float64)
    for lower, upper, value, _ in reversed(classes):
        out = np.where((values >= lower) & (values <= upper), value, out)
    return np.where(values <= nodata, values, out)


def test_range_leaves_out_no_data(elevation):
    with zephra.open(elevation) as raster:
        valid = raster.values[raster.values > raster.nodata]
        assert raster.range() == (valid.min(), valid.max())
        assert raster.range(200, 300) == (valid[valid >= 200].min(), valid[valid <= 300].max())


def test_reclass_of_a_raster_and_of_an_array(elevation):
    with zephra.open(elevation) as raster:
        classes = raster.reclass(CLASSES)
        expected = reclassified(raster.values, CLASSES, raster.nodata)
        np.testing.assert_array_equal(classes.values, expected)
        assert classes.header.categories == ["low", "middle", "high"]
        from_array = zephra.reclass(raster.values, CLASSES, nodata=raster.nodata)
        np.testing.assert_array_equal(from_array, expected)


@pytest.mark.parametrize("cells, classes, dtype", [
    (np.uint8, [(0, 10, 5)], np.uint8),
    (np.uint8, [(0, 10, 300)], np.int16),
    (np.int16, [(0, 10, 70000)], np.int32),
    (np.float32, [(0, 10, 5)], np.float32),
])
def test_reclass_cells_hold_every_class_value(cells, classes, dtype):
    out = zephra.reclass(ramp((3, 4), cells), classes)
    assert out.dtype == dtype
    assert classes[0][2] in out


def test_smoothed_samples_are_window_means(elevation):
    with zephra.open(elevation) as raster:
        values = raster.values
        x0, _, _, y0 = raster.bounds
        cols, rows = np.array([5, 20, 0]), np.array([6, 12, 29])
        xs, ys = x0 + (cols + 0.5) * 100, y0 - (rows + 0.5) * 100
        np.testing.assert_array_equal(raster.sample(xs, ys), values[rows, cols])
        smoothed = raster.sample(xs[:2], ys[:2], smooth=1)
        for got, c, r in zip(smoothed, cols, rows):
            window = values[r - 1:r + 2, c - 1:c + 2]
            assert got == pytest.approx(window[window > raster.nodata].mean(), rel=1e-6)


def test_rasterize_gives_every_part_its_feature_value(elevation):
    by_field = zephra.rasterize(EXAMPLES / "zones.shp", "ZONE", like=elevation)
    by_list = zephra.rasterize(EXAMPLES / "zones.shp", [10, 20, 30], like=elevation,
                               dtype=np.int16)
    np.testing.assert_array_equal(by_field.values, by_list.values)
    assert by_field.nodata == -9999
    # Each burnt cell's north-west corner lies in a zone of that value in the same zones as a
    # vector layer.
    zones = zephra.open_vector(EXAMPLES / "zones.vec")
    x0, _, _, y0 = by_field.bounds
    for (row, col), value in np.ndenumerate(by_field.values):
        if value != -9999:
            x, y = x0 + col * 100, y0 - row * 100
            assert any(zones[i].id == value and zones.layer.point_in_poly(x, y, i)
                       for i in range(len(zones)))


@pytest.mark.parametrize("format, name", [("grid", "out.asc"), ("xyz", "out.xyz"),
                                          ("copy", "out.img"), ("geotiff", "out.tif")])
def test_every_exporter_writes_with_progress(tmp_path, make_raster, format, name):
    cells = ramp((4, 6), np.uint8)
    cells[0, 0] = 0
    square = (10.0, 0.0, 1000.0, 0.0, -10.0, 5000.0)
    with zephra.open(make_raster(cells, nodata=0, transform=square)) as raster:
        calls = []
        with pytest.warns() if format == "xyz" else nullcontext():
            raster.export(tmp_path / name, progress=lambda row, last: calls.append((row, last)))
    if format in ("grid", "xyz"):
        assert calls == [(row, 3) for row in range(4)]
    if format != "xyz":
        with zephra.open(tmp_path / name) as written:
            # No data stays no data in every format that has it: the byte raster's 0 too.
            assert written.nodata_mask()[0, 0] and written.nodata_mask().sum() == 1
            np.testing.assert_array_equal(written.values[1:], cells[1:])


def test_a_failing_progress_callback_ends_the_export(tmp_path, elevation):
    def stop(row, last):
        raise KeyboardInterrupt
    with zephra.open(elevation) as raster, pytest.raises(KeyboardInterrupt):
        raster.export(tmp_path / "out.asc", progress=stop)


def test_palettes_are_uint8_tables(tmp_path):
    palette = zephra.Palette()
    assert np.asarray(palette).shape == (16, 3) and palette.colors.dtype == np.uint8
    palette.colors = [[0, 0, 0], [0, 0, 0], [0, 128, 252]]
    palette.blend(0, 2)  # a ramp that stops one step short of the last colour
    np.testing.assert_array_equal(palette.colors, np.rint(np.outer([0, 1, 2], [0, 128, 252]) / 3))
    palette.save(tmp_path / "p.pal")
    assert len(zephra.Palette.open(str(tmp_path / "p.pal"))) == 3


def test_vector_features_are_taken_by_shapely():
    geometry = pytest.importorskip("shapely.geometry")
    zones = zephra.open_vector(EXAMPLES / "zones.vec")
    collection = zones.__geo_interface__
    assert [f["id"] for f in collection["features"]] == [f.id for f in zones]
    for i, feature in enumerate(zones):
        shape = geometry.shape(feature.geometry)
        assert shape.area == pytest.approx(abs(zones.layer.area(i)))
        assert len(shape.interiors) == feature._feature.holes


class nullcontext:
    def __enter__(self):
        return self

    def __exit__(self, *failure):
        return False
