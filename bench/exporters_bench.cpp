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

template <typename TExporter>
void Export(benchmark::State& state, const char* name) {
  const std::string file = Setup().Scratch.File(name);
  TExporter exporter;
  for (auto _ : state) {
    RemoveUntimed(state, file);
    exporter.ExportImage(Setup().Image.get(), file, nullptr);
  }
  ReportFileSize(state, file);
}

}  // namespace
}  // namespace zephra::bench

int main(int argc, char** argv) {
  using namespace zephra;
  using namespace zephra::bench;
  benchmark::Initialize(&argc, argv);
  const auto add = [](const char* name, auto run) { AddRepeated(name, run, 3)->Iterations(1); };
  // The order matters: each fwrite reference takes its size from the export before it.
  add("GridExporter", [](benchmark::State& s) { Export<TArcInfoGridASCIIExporter>(s, "g.asc"); });
  add("FwriteGridBytes", [](benchmark::State& s) {
    FwriteSameBytes(s, Setup().Scratch.File("g.asc"), Setup().Scratch.File("plain.bin"));
  });
  add("XYZExporter", [](benchmark::State& s) { Export<TXYZAsciiExporter>(s, "g.xyz"); });
  add("FwriteXYZBytes", [](benchmark::State& s) {
    FwriteSameBytes(s, Setup().Scratch.File("g.xyz"), Setup().Scratch.File("plain.bin"));
  });
  add("GeoTiffExporter", [](benchmark::State& s) { Export<TGeoTiffExporter>(s, "g.tif"); });
  TRatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({{"GridExporter", "FwriteGridBytes"},
                        {"XYZExporter", "FwriteXYZBytes"},
                        {"GeoTiffExporter", "GridExporter"}});
  benchmark::Shutdown();
  return 0;
}
