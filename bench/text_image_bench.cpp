// Text rasters: opening a 4000 x 4000 ArcInfo grid (about 100 MB of text) against a plain read of
// the same file, and the write-back of a TAsciiImage against one fwrite of the same bytes, each
// pair measured in the same run.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <zephra/Common/zpNumberText.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "BenchRatio.h"
#include "BenchSupport.h"

namespace zephra::bench {
namespace {

constexpr int32_t kSide = 4000;

// Realistic grid values: temperatures with two decimals and some no-data cells.
std::string GridText() {
  std::string text =
      "ncols        4000\nnrows        4000\nxllcorner    100.0\nyllcorner    -45.0\n"
      "cellsize     0.01\nNODATA_value -9999\n";
  text.reserve(110'000'000);
  const TNumberFormat format('.');
  char number[TNumberFormat::MaxLength];
  for (int32_t r = 0; r < kSide; ++r) {
    for (int32_t c = 0; c < kSide; ++c) {
      const double value =
          (r * 7 + c * 13) % 9973 == 0 ? -9999.0 : ((r * 31 + c * 17) % 4000) * 0.01 - 5.0;
      text.append(number, format.Fixed(number, value, 2));
      text += c + 1 < kSide ? ' ' : '\n';
    }
  }
  return text;
}

struct TSetup {
  TScratch Scratch;
  std::string Grid = Scratch.File("grid.asc");
  size_t GridBytes = 0;

  TSetup() {
    const std::string text = GridText();
    GridBytes = text.size();
    std::FILE* out = std::fopen(Grid.c_str(), "wb");
    std::fwrite(text.data(), 1, text.size(), out);
    std::fclose(out);
  }
};

TSetup& Setup() {
  static TSetup setup;
  return setup;
}

void OpenArcGrid(benchmark::State& state) {
  for (auto _ : state) {
    const auto grid = TArcGridImage::Open(Setup().Grid, false);
    benchmark::DoNotOptimize(grid->Buffer.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(Setup().GridBytes));
}

void PlainReadGrid(benchmark::State& state) {
  for (auto _ : state) {
    std::vector<char> bytes(Setup().GridBytes);
    const int fd = open(Setup().Grid.c_str(), O_RDONLY);
    size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t got = read(fd, bytes.data() + done, bytes.size() - done);
      if (got <= 0) {
        break;
      }
      done += static_cast<size_t>(got);
    }
    close(fd);
    benchmark::DoNotOptimize(bytes.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(Setup().GridBytes));
}

// A changed text raster written back whole through Close().
void WriteAsciiImage(benchmark::State& state) {
  const auto source = TArcGridImage::Open(Setup().Grid, false);
  const std::string name = Setup().Scratch.File("cells.txt");
  for (auto _ : state) {
    state.PauseTiming();
    std::filesystem::remove(name);
    auto image = TAsciiImage::Create(name, source->Header());
    image->Buffer = source->Buffer;
    image->FirstWrite = false;
    state.ResumeTiming();
    image->Close();
  }
  state.SetBytesProcessed(state.iterations() *
                          static_cast<int64_t>(std::filesystem::file_size(name)));
}

void FwriteAsciiBytes(benchmark::State& state) {
  const std::vector<char> text(std::filesystem::file_size(Setup().Scratch.File("cells.txt")), '7');
  const std::string name = Setup().Scratch.File("plain.txt");
  for (auto _ : state) {
    state.PauseTiming();
    std::filesystem::remove(name);
    state.ResumeTiming();
    std::FILE* out = std::fopen(name.c_str(), "wb");
    std::fwrite(text.data(), 1, text.size(), out);
    std::fclose(out);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

}  // namespace
}  // namespace zephra::bench

int main(int argc, char** argv) {
  using namespace zephra::bench;
  benchmark::Initialize(&argc, argv);
  Setup();  // the grid file is made before anything is timed
  for (const auto& [name, run] :
       {std::pair{"OpenArcGrid", &OpenArcGrid}, std::pair{"PlainReadGrid", &PlainReadGrid},
        std::pair{"WriteAsciiImage", &WriteAsciiImage},
        std::pair{"FwriteAsciiBytes", &FwriteAsciiBytes}}) {
    benchmark::RegisterBenchmark(name, run)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->Iterations(1)
        ->Repetitions(3)
        ->ReportAggregatesOnly(true);
  }
  TRatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({{"OpenArcGrid", "PlainReadGrid"}, {"WriteAsciiImage", "FwriteAsciiBytes"}});
  benchmark::Shutdown();
  return 0;
}
