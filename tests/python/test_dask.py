import numpy as np
import pytest

distributed = pytest.importorskip("distributed")
dask = pytest.importorskip("dask")

import dask.array  # noqa: E402

import zephra  # noqa: E402
import zephra.dask  # noqa: E402

SIDE = 8000
CLASSES = [(-1.0, 0.0, 1), (0.0, 0.5, 2), (0.5, 2.0, 3)]


@pytest.fixture(scope="module")
def big(tmp_path_factory):
    """An 8000 x 8000 float raster with a no-data corner, and its cells."""
    cells = np.random.default_rng(7).standard_normal((SIDE, SIDE), dtype=np.float32)
    cells[:100, :100] = -9999.0
    path = tmp_path_factory.mktemp("big") / "big.doc"
    zephra.create(path, cells, nodata=-9999.0)
    return path, cells


@pytest.fixture(scope="module")
def client():
    with distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=True,
                                  dashboard_address=None) as cluster:
        with distributed.Client(cluster) as client:
            yield client


def test_a_cluster_computes_what_numpy_computes(big, client, tmp_path):
    path, cells = big
    array = zephra.dask.open(path, chunks=(1000, SIDE))
    valid = dask.array.ma.masked_less_equal(array, -9999.0)
    statistics = [valid.mean(dtype=np.float64), valid.min(), valid.max()]
    assert all(isinstance(s, dask.array.Array) for s in statistics)  # computed by the workers
    mean, low, high = (float(v) for v in client.compute(statistics, sync=True))
    expected = np.ma.masked_less_equal(cells, -9999.0)
    assert mean == pytest.approx(expected.mean(dtype=np.float64), rel=1e-9)
    assert (low, high) == (expected.min(), expected.max())

    classes = array.map_blocks(zephra.reclass, CLASSES, nodata=-9999.0, dtype=np.float32)
    zephra.dask.store(classes, tmp_path / "classes.doc", like=path)
    reference = np.select([(cells >= lo) & (cells <= hi) for lo, hi, _ in CLASSES],
                          [value for _, _, value in CLASSES], cells)
    reference[cells <= -9999.0] = -9999.0
    with zephra.open(tmp_path / "classes.doc") as written:
        np.testing.assert_array_equal(written.values, reference)
