// Per-cell cost: a full pass over 64 Mi cells with ReadCR0 and with FileRead, each against a plain
// loop over a std::vector<float> of the same size that does the same sum. Every allocation of
// the program is counted, to show that no cell access allocates.

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <vector>

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "BenchAllocations.h"
#include "BenchRatio.h"

namespace zephra::bench {
namespace {

constexpr int32_t kSide = 8192;  // 64 Mi cells

std::unique_ptr<TRealImage> MemoryImage() {
  TImageHeader header;
  header.Width = kSide;
  header.Height = kSide;
  auto image = TRealImage::Create("", &header);
  image->MemOnly = true;
  for (size_t i = 0; i < image->Buffer.size(); ++i) {
    image->Buffer[i] = static_cast<float>(i % 7);
  }
  return image;
}

void CountAllocations(benchmark::State& state, int64_t before) {
  state.counters["allocations_per_pass"] =
      static_cast<double>(gAllocations.load() - before) / static_cast<double>(state.iterations());
  state.counters["ns_per_cell"] =
      benchmark::Counter(static_cast<double>(state.iterations()) * kSide * kSide,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void PlainVectorLoop(benchmark::State& state) {
  std::vector<float> cells(static_cast<size_t>(kSide) * kSide);
  for (size_t i = 0; i < cells.size(); ++i) {
    cells[i] = static_cast<float>(i % 7);
  }
  const int64_t before = gAllocations.load();
  for (auto _ : state) {
    float sum = 0.0f;
    for (const float cell : cells) {
      sum += cell;
    }
    benchmark::DoNotOptimize(sum);
  }
  CountAllocations(state, before);
}

void ReadCR0Pass(benchmark::State& state) {
  const auto image = MemoryImage();
  const int64_t before = gAllocations.load();
  for (auto _ : state) {
    float sum = 0.0f;
    for (int32_t row = 0; row < kSide; ++row) {
      for (int32_t col = 0; col < kSide; ++col) {
        sum += image->ReadCR0(col, row);
      }
    }
    benchmark::DoNotOptimize(sum);
  }
  CountAllocations(state, before);
}

void FileReadPass(benchmark::State& state) {
  const auto image = MemoryImage();
  const int64_t before = gAllocations.load();
  for (auto _ : state) {
    image->ResetFile();
    float sum = 0.0f;
    while (!image->EndOfFile()) {
      sum += image->FileRead();
    }
    benchmark::DoNotOptimize(sum);
  }
  CountAllocations(state, before);
}

}  // namespace
}  // namespace zephra::bench

int main(int argc, char** argv) {
  using namespace zephra::bench;
  benchmark::Initialize(&argc, argv);
  for (const auto& [name, run] :
       {std::pair{"PlainVectorLoop", &PlainVectorLoop}, std::pair{"ReadCR0Pass", &ReadCR0Pass},
        std::pair{"FileReadPass", &FileReadPass}}) {
    benchmark::RegisterBenchmark(name, run)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->Repetitions(3)
        ->ReportAggregatesOnly(true);
  }
  TRatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({{"ReadCR0Pass", "PlainVectorLoop"}, {"FileReadPass", "PlainVectorLoop"}});
  benchmark::Shutdown();
  return 0;
}
