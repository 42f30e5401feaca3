#!/usr/bin/env bash
# The main job of the zephra tool on the samples beside this script: the statistics of every
# raster, a reclass of the elevation into height bands, the zones burned into the elevation's grid,
# the elevation in every output format and the land cover in every cell type, and the elevation
# rendered in the terrain palette, all into one folder, which it names at the end with a list of
# what it made.
#
# Usage: examples/main_job.sh [OUTPUT_DIR] [ZEPHRA]
#   OUTPUT_DIR defaults to build/main-job, ZEPHRA to build/cli/zephra.
set -euo pipefail

samples="$(cd "$(dirname "$0")" && pwd)"
out="${1:-$samples/../build/main-job}"
zephra="${2:-$samples/../build/cli/zephra}"

rm -rf "$out"
mkdir -p "$out"
out="$(cd "$out" && pwd)"

step() { printf '\n== %s\n' "$*"; }

for raster in elevation.doc landcover.doc sample.doc temperature.doc rainfall.asc; do
  step "info --stats $raster"
  "$zephra" info --stats "$samples/$raster" | tee "$out/${raster%.*}-info.txt"
done

step "reclass the elevation into height bands"
"$zephra" reclass "$samples/elevation.doc" "$out/elevation-bands.doc" \
  --key-file "$samples/elevation_bands.key"

step "rasterize the zones on the grid of the elevation"
"$zephra" rasterize "$samples/zones.shp" "$out/zones.doc" --like "$samples/elevation.doc" \
  --field ZONE --type byte

step "convert the elevation to every format"
for target in elevation.doc elevation-text.txt elevation.asc elevation.xyz elevation.tif; do
  "$zephra" convert "$samples/elevation.doc" "$out/$target"
done
step "convert the land cover to every cell type"
for type in byte integer integer32 real; do
  "$zephra" convert "$samples/landcover.doc" "$out/landcover-$type.doc" --to "$type"
done

step "render the elevation in the terrain palette"
"$zephra" render "$samples/elevation.doc" "$out/elevation.png" --palette "$samples/terrain.pal"

step "the main job wrote into $out:"
(cd "$out" && ls -1)
