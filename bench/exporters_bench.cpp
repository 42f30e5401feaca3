// Throughput of the exporter classes on a 4000 x 4000 real raster: the grid and XYZ exporters
// against one fwrite of the same bytes, and the GeoTIFF export against the grid exporter, all
// measured in the same run.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <zephra/Export/zplArcInfoGridASCIIExporter.h>
#include <zephra/Export/zplGeoTiffExporter.h>
#include <zephra/Export/zplXYZAsciiExporter.h>

#include "BenchRatio.h"
#include "BenchSupport.h"

namespace zephra::bench {
namespace {

struct TSetup {
  TScratch Scratch;
  std::unique_ptr<TRealImage> Image = Terrain(4000);
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

void ReportSize(benchmark::State& state, const std::string& fileName) {
  const auto size = static_cast<int64_t>(std::filesystem::file_size(fileName));
  state.SetBytesProcessed(state.iterations() * size);
  state.counters["MB_written"] = static_cast<double>(size) / 1e6;
}

template <typename TExporter>
void Export(benchmark::State& state, const char* name) {
  const std::string file = Setup().Scratch.File(name);
  TExporter exporter;
  for (auto _ : state) {
    RemoveUntimed(state, file);
    exporter.ExportImage(Setup().Image.get(), file, nullptr);
  }
  ReportSize(state, file);
}

// As many bytes as the exporter that wrote `written` produced, in one fwrite of a ready buffer.
void FwriteSameBytes(benchmark::State& state, const char* written) {
  const std::vector<char> text(std::filesystem::file_size(Setup().Scratch.File(written)), '7');
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
  ReportSize(state, file);
}

}  // namespace
}  // namespace zephra::bench

int main(int argc, char** argv) {
  using namespace zephra;
  using namespace zephra::bench;
  benchmark::Initialize(&argc, argv);
  const auto add = [](const char* name, auto run) {
    benchmark::RegisterBenchmark(name, run)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->Iterations(1)
        ->Repetitions(3)
        ->ReportAggregatesOnly(true);
  };
  // The order matters: each fwrite reference takes its size from the export before it.
  add("GridExporter", [](benchmark::State& s) { Export<TArcInfoGridASCIIExporter>(s, "g.asc"); });
  add("FwriteGridBytes", [](benchmark::State& s) { FwriteSameBytes(s, "g.asc"); });
  add("XYZExporter", [](benchmark::State& s) { Export<TXYZAsciiExporter>(s, "g.xyz"); });
  add("FwriteXYZBytes", [](benchmark::State& s) { FwriteSameBytes(s, "g.xyz"); });
  add("GeoTiffExporter", [](benchmark::State& s) { Export<TGeoTiffExporter>(s, "g.tif"); });
  TRatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({{"GridExporter", "FwriteGridBytes"},
                        {"XYZExporter", "FwriteXYZBytes"},
                        {"GeoTiffExporter", "GridExporter"}});
  benchmark::Shutdown();
  return 0;
}
