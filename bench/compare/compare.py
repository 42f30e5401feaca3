"""Runs the comparison of bench/compare.sh: each workload's two commands as whole processes,
interleaved round after round, with medians, peak memory, the floor, and agreement checks."""

import argparse
import json
import datetime
import os
import platform
import re
import statistics
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass, field
from pathlib import Path

import numpy as np

# The raster's grid (compare_data.cpp) and the rasterize grid over the same extent.
MINX, MINY, MAXX, MAXY = 500000.0, 6080000.0, 620000.0, 6200000.0
BURN_SIDE = 4096
NODATA = -9999.0
TEXT_TOLERANCE = 0.5e-4 + 1e-3  # four decimals, and the float behind them at a thousand metres


@dataclass
class Workload:
    name: str
    ours: list
    gdal: list
    floor: list = None  # "OURS_SIZE" stands for the size of our output
    outputs: tuple = (None, None)  # ours, GDAL's: removed before every run
    caches: list = field(default_factory=list)  # inputs whose GDAL statistics caches go first
    check: object = None  # () -> text, raises AssertionError when the outputs disagree


def run_timed(argv):
    """Seconds and peak resident kilobytes of one whole process. The dirty pages of the runs
    before it (hundreds of megabytes of text) are flushed first, untimed, so that no run pays
    for another's writeback."""
    os.sync()
    with tempfile.NamedTemporaryFile("r") as memory:
        start = time.perf_counter()
        done = subprocess.run(["/usr/bin/time", "-f", "%M", "-o", memory.name] + argv,
                              stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        seconds = time.perf_counter() - start
        if done.returncode != 0:
            sys.exit(f"failed ({done.returncode}): {' '.join(argv)}\n{done.stderr}")
        return seconds, int(memory.read().split()[-1])


def remove(job):
    """The outputs of earlier runs, and the statistics GDAL keeps beside its inputs."""
    written = [path for path in job.outputs if path]
    if job.floor and job.floor[1] == "write":
        written.append(job.floor[2])
    for path in written:
        Path(path).unlink(missing_ok=True)
        if path.endswith(".doc"):
            Path(path).with_suffix(".img").unlink(missing_ok=True)
    for path in job.caches:
        drop_statistics(path)


def output_size(path):
    """Bytes of an output, with the data file of a .doc raster (and of an EHdr .bil, its .hdr)."""
    companions = {".doc": ".img", ".bil": ".hdr"}
    files = [Path(path)]
    if Path(path).suffix in companions:
        files.append(Path(path).with_suffix(companions[Path(path).suffix]))
    return sum(f.stat().st_size for f in files if f.exists())


def drop_statistics(path):
    """GDAL keeps statistics beside a raster (x.bil.aux.xml, and x.stx for EHdr) and would read
    them instead of scanning."""
    for cache in (Path(str(path) + ".aux.xml"), Path(path).with_suffix(".stx")):
        cache.unlink(missing_ok=True)


def read_grid(path):
    with open(path) as text:
        head = [next(text) for _ in range(6)]
        cells = np.array(text.read().split(), dtype=np.float64)
    return head, cells


def read_bil(path, dtype="<f4"):
    return np.fromfile(path, dtype=dtype).astype(np.float64)


def same_cells(ours, theirs, what, tolerance=TEXT_TOLERANCE):
    assert ours.shape == theirs.shape, f"{what}: {ours.shape} cells against {theirs.shape}"
    ours_missing, theirs_missing = ours <= NODATA + 1, theirs <= NODATA + 1
    ours_missing |= np.isnan(ours)
    theirs_missing |= np.isnan(theirs)
    assert np.array_equal(ours_missing, theirs_missing), f"{what}: no-data cells differ"
    worst = np.max(np.abs(ours[~ours_missing] - theirs[~theirs_missing]), initial=0.0)
    assert worst <= tolerance, f"{what}: cells differ by up to {worst}"
    return f"{ours.size} cells equal within {tolerance:g}"


def stats_of_gdalinfo(text):
    """Minimum, maximum and mean from the band's statistics line, which every driver prints
    (the STATISTICS_ metadata only some do), to three decimals."""
    found = re.search(r"Minimum=(\S+), Maximum=(\S+), Mean=(\S+),", text)
    assert found, "gdalinfo printed no statistics"
    return tuple(float(value) for value in found.groups())


def workloads(args, scratch):
    data, z = Path(args.data), args.zephra
    floor = [args.floor]
    out = lambda name: str(scratch / name)
    cell = (MAXX - MINX) / BURN_SIDE
    # GDAL burns a cell whose centre lies inside; the library, one whose north-west corner does.
    # Moving GDAL's grid half a cell west and north puts its centres on our corners.
    shifted = [str(MINX - cell / 2), str(MINY + cell / 2), str(MAXX - cell / 2), str(MAXY + cell / 2)]
    extent = [str(MINX), str(MINY), str(MAXX), str(MAXY)]

    def stats_check(source, gdal_source):
        def check():
            ours = subprocess.run([z, "info", "--stats", "--json", source], capture_output=True,
                                  text=True, check=True).stdout
            drop_statistics(gdal_source)
            theirs = stats_of_gdalinfo(subprocess.run(["gdalinfo", "-stats", gdal_source],
                                                      capture_output=True, text=True, check=True).stdout)
            s = json.loads(ours)["stats"]
            mine = (s["min"], s["max"], s["mean"])
            assert np.allclose(mine, theirs, rtol=0, atol=1e-3 / 2 + 1e-6), f"statistics {mine} vs {theirs}"
            return f"min, max, mean equal: {theirs}"
        return check

    def grid_check(name):
        def check():
            (_, ours), (_, theirs) = read_grid(out(name)), read_grid(out("g.asc"))
            return same_cells(ours, theirs, "grid")
        return check

    def xyz_check(name):
        def check():
            ours = np.array(Path(out(name)).read_text().split(), dtype=np.float64)[2::3]
            theirs = np.array(Path(out("g.xyz")).read_text().split(), dtype=np.float64)[2::3]
            return same_cells(ours, theirs, "xyz")
        return check

    def tiff_check():
        subprocess.run(["gdal_translate", "-q", "-of", "EHdr", out("z.tif"), out("zt.bil")], check=True)
        subprocess.run(["gdal_translate", "-q", "-of", "EHdr", out("g.tif"), out("gt.bil")], check=True)
        return same_cells(read_bil(out("zt.bil")), read_bil(out("gt.bil")), "GeoTIFF", 0.0)

    def burn_check(ours_doc, theirs_bil):
        def check():
            ours, theirs = read_bil(ours_doc.replace(".doc", ".img")), read_bil(theirs_bil)
            burned_ours, burned_theirs = ours > NODATA + 1, theirs > NODATA + 1
            differ = np.count_nonzero(burned_ours != burned_theirs)
            both = burned_ours & burned_theirs
            # Where polygons overlap the library keeps the first that holds a cell and GDAL
            # burns the last over it, so values may differ there and only there.
            other_value = np.count_nonzero(ours[both] != theirs[both])
            share = differ / ours.size
            assert share <= 1e-4, f"{differ} cells burned by one only"
            return (f"{np.count_nonzero(burned_ours)} cells burned; {differ} on edges burned by one "
                    f"only; {other_value} with another polygon's value (overlaps: first vs last wins)")
        return check

    gdal_tiff = ["gdal_translate", "-q", "-of", "GTiff", "-co", "COMPRESS=DEFLATE", "-co", "PREDICTOR=3",
                 "-co", "ZLEVEL=6", "-co", "BLOCKYSIZE=16", "-co", "NUM_THREADS=1",
                 "--config", "GDAL_NUM_THREADS", "1", str(data / "terrain.bil"), out("g.tif")]
    result = [
        Workload("ArcInfo grid read + statistics", [z, "info", "--stats", str(data / "terrain.asc")],
                 ["gdalinfo", "-stats", str(data / "terrain.asc")], floor + ["read", str(data / "terrain.asc")],
                 caches=[data / "terrain.asc"], check=stats_check(str(data / "terrain.asc"), data / "terrain.asc")),
        Workload("binary raster open + statistics", [z, "info", "--stats", str(data / "terrain.doc")],
                 ["gdalinfo", "-stats", str(data / "terrain.bil")], floor + ["read", str(data / "terrain.img")],
                 caches=[data / "terrain.bil"], check=stats_check(str(data / "terrain.doc"), data / "terrain.bil")),
        # The library's exporters write four decimals, as GDAL is asked to; the tool writes the
        # shortest text that reads back as the same float, so its output is exact and smaller.
        Workload("ArcInfo grid export, library, 4 decimals",
                 floor + ["export", "grid", str(data / "terrain.doc"), out("l.asc")],
                 ["gdal_translate", "-q", "-of", "AAIGrid", "-co", "DECIMAL_PRECISION=4",
                  str(data / "terrain.bil"), out("g.asc")],
                 floor + ["write", out("f.asc"), "OURS_SIZE"], (out("l.asc"), out("g.asc")), check=grid_check("l.asc")),
        Workload("ArcInfo grid export, tool, exact text", [z, "convert", str(data / "terrain.doc"), out("z.asc")],
                 ["gdal_translate", "-q", "-of", "AAIGrid", "-co", "DECIMAL_PRECISION=4",
                  str(data / "terrain.bil"), out("g.asc")],
                 floor + ["write", out("f.asc"), "OURS_SIZE"], (out("z.asc"), out("g.asc")), check=grid_check("z.asc")),
        Workload("XYZ export, library, 4 decimals",
                 floor + ["export", "xyz", str(data / "terrain.doc"), out("l.xyz")],
                 ["gdal_translate", "-q", "-of", "XYZ", "-co", "DECIMAL_PRECISION=4",
                  str(data / "terrain.bil"), out("g.xyz")],
                 floor + ["write", out("f.xyz"), "OURS_SIZE"], (out("l.xyz"), out("g.xyz")), check=xyz_check("l.xyz")),
        Workload("XYZ export, tool, exact text", [z, "convert", str(data / "terrain.doc"), out("z.xyz")],
                 ["gdal_translate", "-q", "-of", "XYZ", "-co", "DECIMAL_PRECISION=4",
                  str(data / "terrain.bil"), out("g.xyz")],
                 floor + ["write", out("f.xyz"), "OURS_SIZE"], (out("z.xyz"), out("g.xyz")), check=xyz_check("z.xyz")),
        Workload("GeoTIFF export, DEFLATE + predictor 3", [z, "convert", str(data / "terrain.doc"), out("z.tif")],
                 gdal_tiff, None, (out("z.tif"), out("g.tif")), check=tiff_check),
    ]
    shapes = [("FillShape, 500 polygons x 1000 vertices", str(data / "polygons.shp"))]
    if args.real_shp:
        shapes.append((f"FillShape, {Path(args.real_shp).name}", args.real_shp))
    for index, (name, shp) in enumerate(shapes):
        ours_doc, theirs_bil = out(f"z{index}.doc"), out(f"g{index}.bil")
        result.append(Workload(
            name, [z, "rasterize", shp, ours_doc, "--extent", *extent, "--size", str(BURN_SIDE),
                   str(BURN_SIDE), "--field", "value"],
            ["gdal_rasterize", "-q", "-of", "EHdr", "-ot", "Float32", "-a", "value", "-a_nodata",
             str(NODATA), "-init", str(NODATA), "-te", *shifted, "-ts", str(BURN_SIDE), str(BURN_SIDE),
             shp, theirs_bil],
            None, (ours_doc, theirs_bil), check=burn_check(ours_doc, theirs_bil)))
    return result


def main():
    parser = argparse.ArgumentParser()
    for name in ("--data", "--zephra", "--floor", "--out"):
        parser.add_argument(name, required=True)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--real-shp")
    args = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="zephra-compare-") as folder:
        scratch = Path(folder)
        jobs = workloads(args, scratch)
        times = {job.name: {"ours": [], "gdal": [], "floor": []} for job in jobs}
        memory, sizes, agreement = {}, {}, {}
        for round_ in range(args.rounds):
            for job in jobs:
                remove(job)
                for side, output in zip(("ours", "gdal"), job.outputs):
                    seconds, kb = run_timed(getattr(job, side))
                    times[job.name][side].append(seconds)
                    memory[(job.name, side)] = max(memory.get((job.name, side), 0), kb)
                    if output:
                        sizes[(job.name, side)] = output_size(output)
                if round_ == 0 and job.check:
                    agreement[job.name] = job.check()
                if job.floor:
                    remove(job)
                    size = str(sizes.get((job.name, "ours"), 0))
                    times[job.name]["floor"].append(
                        run_timed([size if a == "OURS_SIZE" else a for a in job.floor])[0])
                remove(job)
        report(args, jobs, times, memory, sizes, agreement)


def describe_machine():
    model = next((line.split(":", 1)[1].strip() for line in open("/proc/cpuinfo")
                  if line.startswith("model name")), platform.processor())
    gib = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    gdal = subprocess.run(["gdalinfo", "--version"], capture_output=True, text=True).stdout.strip()
    commit = subprocess.run(["git", "rev-parse", "--short", "HEAD"], capture_output=True, text=True).stdout.strip()
    return f"{model}, {os.cpu_count()} cores, {gib:.0f} GiB; {gdal}; zephra at {commit}"


def report(args, jobs, times, memory, sizes, agreement):
    lines = [
        "# The library against GDAL, whole processes",
        "",
        f"Made by `bench/compare.sh` on {datetime.date.today().isoformat()}: {describe_machine()}.",
        f"Medians of {args.rounds} interleaved rounds; peak memory is the largest resident set seen.",
        "",
        "| workload | ours s | GDAL s | ours / GDAL | floor s | ours / floor | ours MB | GDAL MB | ours peak MiB | GDAL peak MiB |",
        "|---|---|---|---|---|---|---|---|---|---|",
    ]
    for job in jobs:
        t = {side: statistics.median(v) if v else None for side, v in times[job.name].items()}
        floor = f"{t['floor']:.3f} | {t['ours'] / t['floor']:.2f}" if t["floor"] else "- | -"
        size = lambda side: f"{sizes[(job.name, side)] / 1e6:.1f}" if (job.name, side) in sizes else "-"
        lines.append(f"| {job.name} | {t['ours']:.3f} | {t['gdal']:.3f} | {t['ours'] / t['gdal']:.2f} | {floor} | "
                     f"{size('ours')} | {size('gdal')} | {memory[(job.name, 'ours')] / 1024:.0f} | "
                     f"{memory[(job.name, 'gdal')] / 1024:.0f} |")
    lines += ["", "Agreement of the outputs:", ""]
    lines += [f"- {name}: {text}" for name, text in agreement.items()]
    lines += ["", "Floors: reading the input into fresh memory (statistics), writing the same number of "
              "bytes from memory (text exports).", ""]
    text = "\n".join(lines)
    print(text)
    Path(args.out).write_text(text)


if __name__ == "__main__":
    main()
