// Text throughput of the direct exports on a 4000 x 4000 real raster, against writing the same
// number of bytes to the same folder with one fwrite, measured in the same run.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "BenchRatio.h"
#include "BenchSupport.h"

namespace zephra::bench {
namespace {

constexpr int32_t kSide = 4000;

struct TSetup {
  TScratch Scratch;
  std::unique_ptr<TRealImage> Image = Terrain(kSide);
};

TSetup& Setup() {
  static TSetup setup;
  return setup;
}

void ExportARCGrid(benchmark::State& state) {
  const std::string file = Setup().Scratch.File("grid.asc");
  for (auto _ : state) {
    RemoveUntimed(state, file);
    Setup().Image->ExportARCGrid(file, -9999.0f);
  }
  ReportFileSize(state, file);
}

void ExportXYZGrid(benchmark::State& state) {
  const std::string file = Setup().Scratch.File("grid.xyz");
  for (auto _ : state) {
    RemoveUntimed(state, file);
    Setup().Image->ExportXYZGrid(file, -9999.0f);
  }
  ReportFileSize(state, file);
}

// The same number of bytes as the grid export wrote, in one fwrite from a ready buffer.
void FwriteGridBytes(benchmark::State& state) {
  const std::string grid = Setup().Scratch.File("grid.asc");
  if (!std::filesystem::exists(grid)) {
    Setup().Image->ExportARCGrid(grid, -9999.0f);
  }
  FwriteSameBytes(state, grid, Setup().Scratch.File("plain.bin"));
}

}  // namespace
}  // namespace zephra::bench

int main(int argc, char** argv) {
  using namespace zephra::bench;
  benchmark::Initialize(&argc, argv);
  for (const auto& [name, run] :
       {std::pair{"ExportARCGrid", &ExportARCGrid}, std::pair{"FwriteSameBytes", &FwriteGridBytes},
        std::pair{"ExportXYZGrid", &ExportXYZGrid}}) {
    AddRepeated(name, run, 5)->Iterations(1);
  }
  TRatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({{"ExportARCGrid", "FwriteSameBytes"}});
  benchmark::Shutdown();
  return 0;
}
