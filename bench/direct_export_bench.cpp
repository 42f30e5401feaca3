// Text throughput of the direct exports on a 4000 x 4000 real raster, against writing the same
// number of bytes to the same folder with one fwrite, measured in the same run.

#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "BenchRatio.h"

namespace zephra::bench {
namespace {

constexpr int32_t kSide = 4000;

// A scratch folder, removed with its files at the end.
class TScratch {
 public:
  TScratch() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "zephra-export-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
      throw std::runtime_error("cannot create a scratch folder");
    }
    FPath = pattern;
  }
  ~TScratch() {
    std::error_code ignored;
    std::filesystem::remove_all(FPath, ignored);
  }
  std::string File(const char* name) const { return (FPath / name).string(); }

 private:
  std::filesystem::path FPath;
};

// Cells from 0 to 4000 with one decimal, as a terrain model might hold: "1234.5000 " and the like.
std::unique_ptr<TRealImage> Terrain() {
  TImageHeader header;
  header.Width = kSide;
  header.Height = kSide;
  header.Maxx = header.Maxy = 4000.0f;
  header.ResolutionX = header.ResolutionY = 1.0f;
  auto image = TRealImage::Create("", &header);
  image->MemOnly = true;
  for (int32_t r = 0; r < kSide; ++r) {
    for (int32_t c = 0; c < kSide; ++c) {
      image->Buffer[static_cast<size_t>(r) * kSide + c] =
          static_cast<float>((r * 37 + c * 11) % 40000) * 0.1f;
    }
  }
  return image;
}

struct TSetup {
  TScratch Scratch;
  std::unique_ptr<TRealImage> Image = Terrain();
};

TSetup& Setup() {
  static TSetup setup;
  return setup;
}

// Each run writes a new file: replacing the last one would wait for the disk to take it first.
void RemoveUntimed(benchmark::State& state, const std::string& fileName) {
  state.PauseTiming();
  std::filesystem::remove(fileName);
  state.ResumeTiming();
}

void SetBytes(benchmark::State& state, const std::string& fileName) {
  const auto size = static_cast<int64_t>(std::filesystem::file_size(fileName));
  state.SetBytesProcessed(state.iterations() * size);
  state.counters["MB_of_text"] = static_cast<double>(size) / 1e6;
}

void ExportARCGrid(benchmark::State& state) {
  const std::string file = Setup().Scratch.File("grid.asc");
  for (auto _ : state) {
    RemoveUntimed(state, file);
    Setup().Image->ExportARCGrid(file, -9999.0f);
  }
  SetBytes(state, file);
}

void ExportXYZGrid(benchmark::State& state) {
  const std::string file = Setup().Scratch.File("grid.xyz");
  for (auto _ : state) {
    RemoveUntimed(state, file);
    Setup().Image->ExportXYZGrid(file, -9999.0f);
  }
  SetBytes(state, file);
}

// The same number of bytes as the grid export wrote, in one fwrite from a ready buffer.
void FwriteSameBytes(benchmark::State& state) {
  const std::string grid = Setup().Scratch.File("grid.asc");
  if (!std::filesystem::exists(grid)) {
    Setup().Image->ExportARCGrid(grid, -9999.0f);
  }
  const std::vector<char> text(std::filesystem::file_size(grid), '7');
  const std::string file = Setup().Scratch.File("plain.bin");
  for (auto _ : state) {
    RemoveUntimed(state, file);
    std::FILE* out = std::fopen(file.c_str(), "wb");
    if (out == nullptr || std::fwrite(text.data(), 1, text.size(), out) != text.size() ||
        std::fclose(out) != 0) {
      state.SkipWithError("fwrite failed");
      break;
    }
  }
  SetBytes(state, file);
}

}  // namespace
}  // namespace zephra::bench

int main(int argc, char** argv) {
  using namespace zephra::bench;
  benchmark::Initialize(&argc, argv);
  for (const auto& [name, run] :
       {std::pair{"ExportARCGrid", &ExportARCGrid}, std::pair{"FwriteSameBytes", &FwriteSameBytes},
        std::pair{"ExportXYZGrid", &ExportXYZGrid}}) {
    benchmark::RegisterBenchmark(name, run)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->Iterations(1)
        ->Repetitions(5)
        ->ReportAggregatesOnly(true);
  }
  TRatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({{"ExportARCGrid", "FwriteSameBytes"}});
  benchmark::Shutdown();
  return 0;
}
