// What the safe write-back costs: Close() of a 256 MiB float raster (data file and .doc, each
// written under a temporary name and renamed over the old one) with and without fsync, against
// the in-place write it replaced (the old file emptied and written again by one write()), also
// with and without fsync. Every run replaces an existing pair, as a host saving its work does.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <vector>

#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "BenchRatio.h"
#include "BenchSupport.h"

namespace zephra::bench {
namespace {

constexpr int32_t kSide = 8192;  // 64 Mi cells of 4 bytes: 256 MiB

TImageHeader Header() {
  TImageHeader header;
  header.Width = header.Height = kSide;
  header.Maxx = header.Maxy = static_cast<float>(kSide);
  return header;
}

struct TSetup {
  TScratch Scratch;
  std::string File = Scratch.File("terrain.img");
};

TSetup& Setup() {
  static TSetup setup;
  return setup;
}

void SafeWriteBack(benchmark::State& state, bool sync) {
  SetSyncWrites(sync);
  const TImageHeader header = Header();
  for (auto _ : state) {
    state.PauseTiming();
    auto image = TRealImage::Create(Setup().File, &header);
    image->WriteCR(1, 1, 1.0f);
    state.ResumeTiming();
    image->Close();
    state.PauseTiming();
    image.reset();  // giving the buffer back is no part of the write
    state.ResumeTiming();
  }
  SetSyncWrites(true);
  state.SetBytesProcessed(state.iterations() * int64_t{kSide} * kSide * 4);
}

// The old way: the existing file emptied and written again where it stands.
void InPlaceWrite(benchmark::State& state, bool sync) {
  const std::vector<float> cells(size_t{kSide} * kSide, -9990.0f);
  const size_t bytes = cells.size() * sizeof(float);
  for (auto _ : state) {
    const int handle = ::open(Setup().File.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    const bool written = handle >= 0 && ::write(handle, cells.data(), bytes) == ssize_t(bytes) &&
                         (!sync || ::fsync(handle) == 0);
    if (handle < 0 || ::close(handle) != 0 || !written) {
      state.SkipWithError("the in-place write failed");
      break;
    }
  }
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}

}  // namespace
}  // namespace zephra::bench

int main(int argc, char** argv) {
  using namespace zephra::bench;
  benchmark::Initialize(&argc, argv);
  const auto add = [](const char* name, auto run) { AddRepeated(name, run, 5)->Iterations(1); };
  add("InPlaceWrite", [](benchmark::State& s) { InPlaceWrite(s, false); });
  add("SafeWriteBackNoSync", [](benchmark::State& s) { SafeWriteBack(s, false); });
  add("InPlaceWriteSync", [](benchmark::State& s) { InPlaceWrite(s, true); });
  add("SafeWriteBack", [](benchmark::State& s) { SafeWriteBack(s, true); });
  TRatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({{"SafeWriteBackNoSync", "InPlaceWrite"},
                        {"SafeWriteBack", "InPlaceWrite"},
                        {"SafeWriteBack", "InPlaceWriteSync"}});
  benchmark::Shutdown();
  return 0;
}
