#!/usr/bin/env bash
# Installs what the project needs from Debian's packages (only what is missing), then configures
# and builds it.
#   ./setup.sh                      build in ./build
#   ./setup.sh DIR [CMAKE-ARGS...]  build in DIR with extra CMake arguments
set -euo pipefail
cd "$(dirname "$0")"

packages=(
  build-essential cmake pkg-config locales
  libgtest-dev libgmock-dev libbenchmark-dev
  libshp-dev libtiff-dev libtiff-tools libgeotiff-dev geotiff-bin libpng-dev libcli11-dev
  clang libclang-rt-14-dev doxygen
  python3-dev pybind11-dev python3-numpy python3-pytest python3-xarray python3-dask
  python3-distributed python3-shapely
)

sudo=""
if [ "$(id -u)" -ne 0 ]; then
  sudo="sudo"
fi

missing=()
for package in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$package")
  fi
done
if [ "${#missing[@]}" -gt 0 ]; then
  echo "setup: installing ${missing[*]}"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi

# The tests prove that number text follows a locale with a decimal comma.
if ! locale -a 2>/dev/null | grep -qix 'de_DE\.utf-\?8'; then
  echo "setup: generating the de_DE.UTF-8 locale"
  $sudo localedef -i de_DE -f UTF-8 de_DE.UTF-8
fi

build_dir="${1:-build}"
shift $(( $# > 0 ? 1 : 0 ))
cmake -S . -B "$build_dir" "$@" >/dev/null
cmake --build "$build_dir" -j"$(nproc)"
