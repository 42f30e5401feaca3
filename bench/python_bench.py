#!/usr/bin/env python3
"""The mean of an 8000 x 8000 float raster through the Python package, against NumPy alone.

1. zephra.open(path).values.mean() against numpy.fromfile(<data file>).mean(), in the same run,
   both from the page cache. The open reads the data file into the library's buffer and the
   values are a view on it, so the two should differ by little more than the open's own work.
   A .doc raster written more than five minutes ago also gets the library's range refresh on
   open (a scan of every cell); both cases are timed.
2. zephra.dask.open(path).mean() on a distributed.LocalCluster of 1 and 2 worker processes
   against the single-process NumPy mean, with the peak memory of each worker.

Run: PYTHONPATH=build/python /usr/bin/python3 bench/python_bench.py [--side N] [--repeat N]
"""

import argparse
import os
import pathlib
import sys
import tempfile
import time

import numpy as np

import zephra
import zephra.dask


def best_of(repeat, work):
    """The shortest wall time of repeat runs of work, and its result."""
    best, result = float("inf"), None
    for _ in range(repeat):
        start = time.perf_counter()
        result = work()
        best = min(best, time.perf_counter() - start)
    return best, result


def reset_peak_rss():
    """Starts the process's peak resident size anew (Linux: a forked worker inherits its
    parent's), and gives the resident size now, in MiB."""
    with open("/proc/self/clear_refs", "w") as clear:
        clear.write("5")
    return rss_mb("VmRSS")


def rss_mb(field="VmHWM"):
    """VmHWM: the peak resident size since the last reset; VmRSS: the resident size now."""
    with open("/proc/self/status") as status:
        for line in status:
            if line.startswith(field + ":"):
                return int(line.split()[1]) / 1024
    raise RuntimeError(f"no {field} in /proc/self/status")


def forget_all(client):
    """Waits until the scheduler holds no task, so that no result of a run is reused."""
    while client.run_on_scheduler(lambda dask_scheduler: len(dask_scheduler.tasks)):
        time.sleep(0.01)


def open_against_fromfile(path, data_file, repeat):
    numpy_time, numpy_mean = best_of(repeat, lambda: np.fromfile(data_file, "<f4").mean())
    zephra_time, zephra_mean = best_of(repeat, lambda: zephra.open(path).values.mean())
    assert zephra_mean == numpy_mean
    return zephra_time, numpy_time


def on_cluster(path, workers, repeat, chunks):
    import distributed
    with distributed.LocalCluster(n_workers=workers, threads_per_worker=1, processes=True,
                                  dashboard_address=None) as cluster, \
            distributed.Client(cluster) as client:
        client.run(lambda: None)  # workers up and importing
        idle = client.run(reset_peak_rss)
        array = zephra.dask.open(path, chunks=chunks)

        def mean():
            forget_all(client)
            start = time.perf_counter()
            value = float(array.mean(dtype=np.float64).compute())
            return time.perf_counter() - start, value

        runs = [mean() for _ in range(repeat)]
        peak = client.run(rss_mb)
    seconds, value = min(runs)
    return seconds, value, sorted(idle.values()), sorted(peak.values())


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--side", type=int, default=8000)
    parser.add_argument("--repeat", type=int, default=5)
    parser.add_argument("--rows-per-chunk", type=int, default=1000)
    options = parser.parse_args()
    zephra.set_sync_writes(False)
    side = options.side
    with tempfile.TemporaryDirectory(prefix="zephra-bench-") as folder:
        path = pathlib.Path(folder) / "big.doc"
        cells = np.random.default_rng(1).standard_normal((side, side), dtype=np.float32)
        zephra.create(path, cells)
        del cells
        data_file = path.with_suffix(".img")
        np.fromfile(data_file, "<f4")  # into the page cache

        print(f"{side} x {side} float32 cells, {data_file.stat().st_size / 2**20:.0f} MiB, "
              f"best of {options.repeat}, numpy {np.__version__}, python {sys.version.split()[0]}")
        fresh, numpy_time = open_against_fromfile(path, data_file, options.repeat)
        hour_ago = time.time() - 3600
        for written in (data_file, path):
            os.utime(written, (hour_ago, hour_ago))
        aged, numpy_aged = open_against_fromfile(path, data_file, options.repeat)
        print(f"numpy.fromfile + mean            {numpy_time * 1e3:8.1f} ms")
        print(f"zephra.open().values.mean()      {fresh * 1e3:8.1f} ms  ratio {fresh / numpy_time:.2f}"
              f"  (written within five minutes: no range refresh)")
        print(f"  the same, with range refresh   {aged * 1e3:8.1f} ms  ratio {aged / numpy_aged:.2f}")

        chunks = (options.rows_per_chunk, side)
        print(f"dask, chunks of {chunks[0]} x {chunks[1]} cells, against the numpy mean "
              f"({numpy_aged * 1e3:.1f} ms); peak RSS of each worker, idle -> after")
        for workers in (1, 2):
            seconds, mean, idle, peak = on_cluster(path, workers, options.repeat, chunks)
            assert abs(mean - np.fromfile(data_file, "<f4").mean(dtype=np.float64)) < 1e-9
            print(f"  {workers} worker{'s' if workers > 1 else ' '}  {seconds * 1e3:8.1f} ms  "
                  f"ratio {seconds / numpy_aged:.2f}  peak "
                  + ", ".join(f"{a:.0f} -> {b:.0f} MiB" for a, b in zip(idle, peak)))


if __name__ == "__main__":
    main()
