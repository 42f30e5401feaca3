// Random single-cell reads of a stream-backed image on a 1 GiB real raster, with the file's
// pages dropped from the page cache before every batch (cold) and with the whole file cached
// (warm), each against a plain 4-byte pread at the same offsets. Every allocation of the program
// is counted, to show that a read allocates nothing.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <zephra/Raster/Stream/zplbNonBufferedImageTypes.h>

#include "BenchAllocations.h"
#include "BenchRatio.h"

namespace zephra::bench {
namespace {

constexpr int32_t kSide = 16384;  // 256 Mi cells, 1 GiB
constexpr int kColdReads = 2000;
constexpr int kWarmReads = 200000;

struct TCell {
  int32_t Col;
  int32_t Row;
};

// The raster r.img / r.doc in a scratch folder, written once and removed at the end, with a
// descriptor of its own for the page-cache advice.
class TRasterFile {
 public:
  TRasterFile() {
    std::string pattern =
        (std::filesystem::temp_directory_path() / "zephra-stream-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
      throw std::runtime_error("cannot create a scratch folder");
    }
    FFolder = pattern;
    WriteDoc();
    WriteData();
    FHandle = ::open(Image().c_str(), O_RDONLY | O_CLOEXEC);
  }
  ~TRasterFile() {
    ::close(FHandle);
    std::error_code ignored;
    std::filesystem::remove_all(FFolder, ignored);
  }

  std::string Image() const { return (FFolder / "r.img").string(); }
  int Handle() const { return FHandle; }

  void DropPages() const { ::posix_fadvise(FHandle, 0, 0, POSIX_FADV_DONTNEED); }
  void LoadPages() const {
    std::vector<char> chunk(1 << 22);
    for (off_t at = 0; ::pread(FHandle, chunk.data(), chunk.size(), at) > 0;
         at += static_cast<off_t>(chunk.size())) {
    }
  }

 private:
  void WriteDoc() const {
    std::ofstream doc(FFolder / "r.doc", std::ios::binary);
    doc << "data type : real\r\nfile type : binary\r\ncolumns : " << kSide << "\r\nrows : " << kSide
        << "\r\nmin. X : 0\r\nmax. X : " << kSide << "\r\nmin. Y : 0\r\nmax. Y : " << kSide
        << "\r\n";
  }
  // Written and synced, so that its pages are clean and the advice can drop them.
  void WriteData() const {
    const int out = ::open(Image().c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    std::vector<float> row(kSide);
    for (int32_t r = 0; r < kSide; ++r) {
      for (int32_t c = 0; c < kSide; ++c) {
        row[c] = static_cast<float>(r) + static_cast<float>(c) * 1e-5f;
      }
      if (::write(out, row.data(), row.size() * sizeof(float)) !=
          static_cast<ssize_t>(row.size() * sizeof(float))) {
        throw std::runtime_error("cannot write the raster");
      }
    }
    ::fdatasync(out);
    ::close(out);
  }

  std::filesystem::path FFolder;
  int FHandle = -1;
};

TRasterFile& Raster() {
  static TRasterFile raster;
  return raster;
}

std::vector<TCell> RandomCells(int count) {
  std::mt19937 random(20240611);
  std::uniform_int_distribution<int32_t> side(0, kSide - 1);
  std::vector<TCell> cells(static_cast<size_t>(count));
  for (TCell& cell : cells) {
    cell = TCell{side(random), side(random)};
  }
  return cells;
}

// Runs the reads of one batch per iteration, cold batches after dropping the file's pages.
template <typename TRead>
void RunBatches(benchmark::State& state, bool cold, int count, TRead read) {
  const std::vector<TCell> cells = RandomCells(count);
  if (!cold) {
    Raster().LoadPages();
  }
  float sum = 0.0f;
  int64_t allocations = 0;
  for (auto _ : state) {
    if (cold) {
      state.PauseTiming();
      Raster().DropPages();
      state.ResumeTiming();
    }
    const int64_t before = gAllocations.load();
    for (const TCell& cell : cells) {
      sum += read(cell);
    }
    allocations += gAllocations.load() - before;
  }
  benchmark::DoNotOptimize(sum);
  state.SetItemsProcessed(state.iterations() * count);
  state.counters["allocations_per_read"] =
      static_cast<double>(allocations) / static_cast<double>(state.iterations() * count);
}

void StreamRead(benchmark::State& state, bool cold, int count) {
  const auto image = TSingleNonBufferedImage::Open(Raster().Image());
  RunBatches(state, cold, count,
             [&](const TCell& cell) { return image->Read(cell.Col, cell.Row); });
}

void PlainPread(benchmark::State& state, bool cold, int count) {
  const int handle = Raster().Handle();
  RunBatches(state, cold, count, [&](const TCell& cell) {
    float value = 0.0f;
    const off_t offset = (static_cast<off_t>(cell.Row) * kSide + cell.Col) * 4;
    if (::pread(handle, &value, sizeof value, offset) != sizeof value) {
      std::abort();
    }
    return value;
  });
}

}  // namespace
}  // namespace zephra::bench

int main(int argc, char** argv) {
  using namespace zephra::bench;
  benchmark::Initialize(&argc, argv);
  const auto add = [](const char* name, void (*run)(benchmark::State&, bool, int), bool cold) {
    benchmark::RegisterBenchmark(name, run, cold, cold ? kColdReads : kWarmReads)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->Iterations(cold ? 5 : 20)
        ->Repetitions(3)
        ->ReportAggregatesOnly(true);
  };
  add("ColdStreamRead", &StreamRead, true);
  add("ColdPlainPread", &PlainPread, true);
  add("WarmStreamRead", &StreamRead, false);
  add("WarmPlainPread", &PlainPread, false);
  TRatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios(
      {{"ColdStreamRead", "ColdPlainPread"}, {"WarmStreamRead", "WarmPlainPread"}});
  benchmark::Shutdown();
  return 0;
}
