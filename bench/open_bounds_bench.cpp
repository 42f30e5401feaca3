// Opening files that claim 30000 x 30000 cells (3.4 GiB as floats) but hold a few lines of text:
// a text raster opened directly and through TGenericImage (old enough for its range refresh),
// and an ArcInfo grid. PeakRssMiB is how far the process's peak resident memory rose.

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "BenchSupport.h"

namespace zephra::bench {
namespace {

struct TSetup {
  TScratch Scratch;
  std::string Text = Scratch.File("short.img");
  std::string Grid = Scratch.File("short.asc");

  TSetup() {
    Write(Scratch.File("short.doc"), "file type: ascii\ncolumns: 30000\nrows: 30000\n");
    Write(Text, "1.5\n2.5\n");
    Write(Grid,
          "ncols 30000\nnrows 30000\nxllcorner 0\nyllcorner 0\ncellsize 1\nNODATA_value -9999\n"
          "1.5 2.5\n");
    std::filesystem::last_write_time(
        Text, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  }

  static void Write(const std::string& name, const std::string& text) {
    std::FILE* out = std::fopen(name.c_str(), "wb");
    std::fwrite(text.data(), 1, text.size(), out);
    std::fclose(out);
  }
};

TSetup& Setup() {
  static TSetup setup;
  return setup;
}

double PeakRssMiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024;
}

void RunOpen(benchmark::State& state,
             const std::function<std::unique_ptr<TAbstractImage>()>& open) {
  const double before = PeakRssMiB();
  for (auto _ : state) {
    const auto image = open();
    benchmark::DoNotOptimize(image->BufferRead(image->NumRecs - 1));
  }
  state.counters["PeakRssMiB"] = PeakRssMiB() - before;
}

void OpenShortText(benchmark::State& state) {
  RunOpen(state, [] { return TAsciiImage::Open(Setup().Text, false); });
}

void OpenShortTextGeneric(benchmark::State& state) {
  RunOpen(state, [] { return TGenericImage::Open(Setup().Text, false); });
}

void OpenShortGrid(benchmark::State& state) {
  RunOpen(state, [] { return TArcGridImage::Open(Setup().Grid, false); });
}

}  // namespace
}  // namespace zephra::bench

int main(int argc, char** argv) {
  using namespace zephra::bench;
  benchmark::Initialize(&argc, argv);
  Setup();
  for (const auto& [name, run] : {std::pair{"OpenShortText", &OpenShortText},
                                  std::pair{"OpenShortTextGeneric", &OpenShortTextGeneric},
                                  std::pair{"OpenShortGrid", &OpenShortGrid}}) {
    benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMillisecond)->UseRealTime();
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
