// Writing a 4000 x 4000 float raster through the GeoTIFF writer component: seconds per file and
// MB/s of cells taken in, for a smooth field with a no-data region and for noise, which DEFLATE
// can hardly shrink; each compressed on one thread and on every core (the files are the same).

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "tvgeotifflib.h"

namespace {

constexpr int32_t kSide = 4000;

using TRaster = std::vector<std::vector<float>>;

// A surface like a climate layer: smooth values, with the south-east corner as no-data sea.
TRaster SmoothField() {
  TRaster rows(kSide, std::vector<float>(kSide));
  for (int32_t r = 0; r < kSide; ++r) {
    for (int32_t c = 0; c < kSide; ++c) {
      const bool sea = r + c > 6000;
      rows[r][c] =
          sea ? std::numeric_limits<float>::quiet_NaN()
              : static_cast<float>(15.0 + 10.0 * std::sin(r / 300.0) * std::cos(c / 450.0));
    }
  }
  return rows;
}

TRaster Noise() {
  std::mt19937 random(42);
  std::uniform_real_distribution<float> value(-1000.0f, 1000.0f);
  TRaster rows(kSide, std::vector<float>(kSide));
  for (auto& row : rows) {
    for (float& cell : row) {
      cell = value(random);
    }
  }
  return rows;
}

// The argument is the number of compressing threads, 0 for one per core.
void WriteGeoTiff(benchmark::State& state, const TRaster& raster) {
  if (state.range(0) > 0) {
    setenv("GTW_THREADS", std::to_string(state.range(0)).c_str(), 1);
  } else {
    unsetenv("GTW_THREADS");
  }
  const std::string fileName =
      (std::filesystem::temp_directory_path() / "zephra-geotiff-bench.tif").string();
  for (auto _ : state) {
    const gtw_handle handle = gtw_create(fileName.c_str(), "w");
    bool ok = handle != nullptr && gtw_init_data(handle, kSide, kSide, -180, 90, 0.09f, 1) == 1;
    for (int32_t r = 0; r < kSide && ok; ++r) {
      ok = gtw_write_row(handle, r, raster[r].data()) == 1;
    }
    if (gtw_free(handle) != 1 || !ok) {
      state.SkipWithError("the GeoTIFF could not be written");
      break;
    }
  }
  const double cellBytes = double{kSide} * kSide * sizeof(float);
  state.SetBytesProcessed(static_cast<int64_t>(cellBytes * state.iterations()));
  std::error_code error;
  state.counters["file/cells"] = std::filesystem::file_size(fileName, error) / cellBytes;
  std::filesystem::remove(fileName, error);
}

void BM_GeoTiffWriteSmoothField(benchmark::State& state) {
  static const TRaster raster = SmoothField();
  WriteGeoTiff(state, raster);
}

void BM_GeoTiffWriteNoise(benchmark::State& state) {
  static const TRaster raster = Noise();
  WriteGeoTiff(state, raster);
}

BENCHMARK(BM_GeoTiffWriteSmoothField)
    ->Unit(benchmark::kSecond)
    ->UseRealTime()
    ->Iterations(3)
    ->Arg(1)
    ->Arg(0);
BENCHMARK(BM_GeoTiffWriteNoise)
    ->Unit(benchmark::kSecond)
    ->UseRealTime()
    ->Iterations(3)
    ->Arg(1)
    ->Arg(0);

}  // namespace

BENCHMARK_MAIN();
