#!/usr/bin/env bash
# Times the library's command-line tool against GDAL's utilities on the same data, as whole
# processes, and checks that both produce the same cells. Writes the table to bench/RESULTS.md.
#
#   bench/compare.sh [ROUNDS]          (default 5; REAL_SHP=path.shp adds a real shapefile)
#
# GDAL is installed here and only here: it is the reference we measure against, never a
# dependency of the library, its tests or its tool. The data are made once in a scratch folder
# (bench/compare/compare_data.cpp) and the build is a Release build of its own.
set -euo pipefail
cd "$(dirname "$0")/.."
rounds=${1:-5}
build=${COMPARE_BUILD:-build-compare}
work=${COMPARE_DATA:-${TMPDIR:-/tmp}/zephra-compare}

need=()
command -v gdalinfo >/dev/null || need+=(gdal-bin)
[ -x /usr/bin/time ] || need+=(time)
if [ ${#need[@]} -gt 0 ]; then
  sudo=$([ "$(id -u)" = 0 ] || echo sudo)
  $sudo apt-get install -y --no-install-recommends "${need[@]}"
fi

cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DZEPHRA_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j"$(nproc)" --target zephra_cli compare_data tvgeotifflib >/dev/null
[ -f "$work/terrain.img" ] || "$build/bench/compare_data" make "$work" >/dev/null

exec /usr/bin/python3 bench/compare/compare.py --rounds "$rounds" --data "$work" \
  --zephra "$build/cli/zephra" --floor "$build/bench/compare_data" --out bench/RESULTS.md \
  ${REAL_SHP:+--real-shp "$REAL_SHP"}
