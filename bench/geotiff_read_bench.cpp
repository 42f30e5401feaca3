// Reading a 4000 x 4000 float GeoTIFF (DEFLATE, floating-point predictor) whole through the
// library, against libtiff's own decode of the same strips or tiles into one buffer, in the same
// run. The library's extra work is its header, the no-data pass and the range of the cells.

#include <benchmark/benchmark.h>
#include <tiffio.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <zephra/Raster/Images/zplbRasterOpen.h>

#include "BenchRatio.h"

namespace {

constexpr uint32_t kSide = 4000;

// A smooth surface with a no-data sea in the south-east, as an elevation or climate layer has.
float CellAt(uint32_t r, uint32_t c) {
  return r + c > 6000 ? std::numeric_limits<float>::quiet_NaN()
                      : static_cast<float>(15.0 + 10.0 * std::sin(r / 300.0) * std::cos(c / 450.0));
}

// Strips of 16 rows, or tiles of 256 x 256.
void WriteFile(const std::string& fileName, bool tiled) {
  TIFF* tif = TIFFOpen(fileName.c_str(), "w");
  TIFFSetField(tif, TIFFTAG_IMAGEWIDTH, kSide);
  TIFFSetField(tif, TIFFTAG_IMAGELENGTH, kSide);
  TIFFSetField(tif, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(tif, TIFFTAG_BITSPERSAMPLE, 32);
  TIFFSetField(tif, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_IEEEFP);
  TIFFSetField(tif, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK);
  TIFFSetField(tif, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
  TIFFSetField(tif, TIFFTAG_PREDICTOR, PREDICTOR_FLOATINGPOINT);
  const uint32_t width = tiled ? 256 : kSide;
  const uint32_t height = tiled ? 256 : 16;
  if (tiled) {
    TIFFSetField(tif, TIFFTAG_TILEWIDTH, width);
    TIFFSetField(tif, TIFFTAG_TILELENGTH, height);
  } else {
    TIFFSetField(tif, TIFFTAG_ROWSPERSTRIP, height);
  }
  std::vector<float> chunk(size_t{width} * height);
  for (uint32_t y = 0; y < kSide; y += height) {
    for (uint32_t x = 0; x < kSide; x += width) {
      for (uint32_t i = 0; i < chunk.size(); ++i) {
        chunk[i] = CellAt(y + i / width, x + i % width);
      }
      const auto bytes = static_cast<tmsize_t>(chunk.size() * sizeof(float));
      if (tiled) {
        TIFFWriteEncodedTile(tif, TIFFComputeTile(tif, x, y, 0, 0), chunk.data(), bytes);
      } else {
        const uint32_t rows = std::min(height, kSide - y);
        TIFFWriteEncodedStrip(tif, TIFFComputeStrip(tif, y, 0), chunk.data(),
                              static_cast<tmsize_t>(rows) * width * sizeof(float));
      }
    }
  }
  TIFFClose(tif);
}

// Every strip or tile decoded by libtiff into one fresh buffer (its pages untouched, as the
// library's is), the tiles each through a tile buffer into their place.
void LibtiffDecode(benchmark::State& state, const std::string& fileName) {
  for (auto _ : state) {
    TIFF* tif = TIFFOpen(fileName.c_str(), "r");
    const auto cells = std::make_unique_for_overwrite<float[]>(size_t{kSide} * kSide);
    if (TIFFIsTiled(tif)) {
      std::vector<float> tile(256 * 256);
      for (uint32_t y = 0; y < kSide; y += 256) {
        for (uint32_t x = 0; x < kSide; x += 256) {
          TIFFReadEncodedTile(tif, TIFFComputeTile(tif, x, y, 0, 0), tile.data(), -1);
          for (uint32_t r = 0; r < 256 && y + r < kSide; ++r) {
            std::copy_n(tile.data() + r * 256, std::min(256u, kSide - x),
                        cells.get() + size_t{y + r} * kSide + x);
          }
        }
      }
    } else {
      for (uint32_t strip = 0; strip < TIFFNumberOfStrips(tif); ++strip) {
        TIFFReadEncodedStrip(tif, strip, cells.get() + size_t{strip} * 16 * kSide, -1);
      }
    }
    benchmark::DoNotOptimize(cells.get());
    TIFFClose(tif);
  }
}

void LibraryRead(benchmark::State& state, const std::string& fileName) {
  for (auto _ : state) {
    const auto image = zephra::OpenAnyRaster(fileName);
    benchmark::DoNotOptimize(image->GetElement0Ptr());
  }
}

}  // namespace

int main(int argc, char** argv) {
  using namespace zephra::bench;
  benchmark::Initialize(&argc, argv);
  const auto folder = std::filesystem::temp_directory_path();
  const std::string stripped = (folder / "zephra-read-bench-strips.tif").string();
  const std::string tiled = (folder / "zephra-read-bench-tiles.tif").string();
  WriteFile(stripped, false);
  WriteFile(tiled, true);
  const auto add = [](const char* name, auto run) { AddRepeated(name, run, 5)->Iterations(1); };
  add("LibtiffStrips", [&](benchmark::State& s) { LibtiffDecode(s, stripped); });
  add("LibraryStrips", [&](benchmark::State& s) { LibraryRead(s, stripped); });
  add("LibtiffTiles", [&](benchmark::State& s) { LibtiffDecode(s, tiled); });
  add("LibraryTiles", [&](benchmark::State& s) { LibraryRead(s, tiled); });
  TRatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({{"LibraryStrips", "LibtiffStrips"}, {"LibraryTiles", "LibtiffTiles"}});
  benchmark::Shutdown();
  std::filesystem::remove(stripped);
  std::filesystem::remove(tiled);
  return 0;
}
