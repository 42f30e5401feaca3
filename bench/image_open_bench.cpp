// Opening rasters: a whole 256 MiB float raster against a plain read() of the same file, and a
// 16000 x 16000 byte raster whole and thinned to the screen (step 8 on the default 1920-pixel
// screen). The files live in a folder under /tmp for the length of the run.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "BenchRatio.h"

namespace zephra::bench {
namespace {

constexpr int32_t kFloatSide = 8192;  // 64 Mi cells of 4 bytes: 256 MiB
constexpr int32_t kByteSide = 16000;

// Fields of /proc/self/io or /proc/self/status, as numbers.
std::map<std::string, int64_t> ProcFields(const char* file) {
  std::ifstream in(file);
  std::map<std::string, int64_t> fields;
  std::string line;
  while (std::getline(in, line)) {
    std::istringstream words(line);
    std::string key;
    int64_t value = 0;
    if (words >> key >> value) {
      fields[key] = value;
    }
  }
  return fields;
}

// Lets VmHWM start again from the current resident size.
void ResetPeakMemory() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

// The two rasters, written through the library itself and removed at the end of the run.
class TBenchFiles {
 public:
  TBenchFiles() {
    std::string pattern = "/tmp/zephra-open-bench-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
      throw std::runtime_error("cannot create a folder under /tmp");
    }
    FDir = pattern;
    FloatImage = Write<TRealImage>("float.img", kFloatSide);
    ByteImage = Write<TByteImage>("byte.img", kByteSide);
  }
  ~TBenchFiles() {
    std::error_code ignored;
    std::filesystem::remove_all(FDir, ignored);
  }
  TBenchFiles(const TBenchFiles&) = delete;
  TBenchFiles& operator=(const TBenchFiles&) = delete;

  std::string FloatImage;
  std::string ByteImage;

 private:
  template <typename TImage>
  std::string Write(const std::string& name, int32_t side) {
    TImageHeader header;
    header.Width = side;
    header.Height = side;
    header.Maxx = static_cast<float>(side);
    header.Maxy = static_cast<float>(side);
    const std::string fileName = (FDir / name).string();
    auto image = TImage::Create(fileName, &header);
    for (size_t i = 0; i < image->Buffer.size(); ++i) {
      image->Buffer[i] = static_cast<typename decltype(image->Buffer)::value_type>(i % 251);
    }
    image->WriteCR(1, 1, 1.0f);
    image->Close();
    return fileName;
  }

  std::filesystem::path FDir;
};

void PlainRead(benchmark::State& state, const std::string& fileName, bool freshBuffer) {
  const size_t bytes = std::filesystem::file_size(fileName);
  auto reused = std::make_unique_for_overwrite<std::byte[]>(bytes);
  std::fill_n(reused.get(), bytes, std::byte{1});
  for (auto _ : state) {
    auto fresh = freshBuffer ? std::make_unique_for_overwrite<std::byte[]>(bytes) : nullptr;
    std::byte* target = freshBuffer ? fresh.get() : reused.get();
    const int handle = ::open(fileName.c_str(), O_RDONLY | O_CLOEXEC);
    size_t done = 0;
    ssize_t got = 1;
    while (done < bytes && got > 0) {
      got = ::read(handle, target + done, bytes - done);
      done += got > 0 ? static_cast<size_t>(got) : 0;
    }
    ::close(handle);
    benchmark::DoNotOptimize(target);
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
}

// Times the open, then opens once more outside the timing to count the read calls, the share of
// the data file read and the peak memory above the buffer.
template <typename TImage>
void OpenImage(benchmark::State& state, const std::string& fileName, bool aScaleBuff) {
  for (auto _ : state) {
    auto image = TImage::Open(fileName, aScaleBuff);
    benchmark::DoNotOptimize(image->Buffer.data());
  }
  const double fileBytes = static_cast<double>(std::filesystem::file_size(fileName));
  ResetPeakMemory();
  const auto statusBefore = ProcFields("/proc/self/status");
  const auto ioBefore = ProcFields("/proc/self/io");
  auto image = TImage::Open(fileName, aScaleBuff);
  const auto ioAfter = ProcFields("/proc/self/io");
  const auto statusAfter = ProcFields("/proc/self/status");
  const double bufferMiB =
      static_cast<double>(image->Buffer.size() * sizeof(image->Buffer[0])) / (1 << 20);
  state.counters["step"] = image->ScaleImage();
  state.counters["read_calls_with_doc"] =
      static_cast<double>(ioAfter.at("syscr:") - ioBefore.at("syscr:"));
  state.counters["share_of_file_read"] =
      static_cast<double>(ioAfter.at("rchar:") - ioBefore.at("rchar:")) / fileBytes;
  state.counters["buffer_MiB"] = bufferMiB;
  // Only a whole open maps fresh memory; a small thinned buffer reuses pages already resident.
  if (image->ScaleImage() == 1) {
    state.counters["peak_above_buffer_MiB"] =
        static_cast<double>(statusAfter.at("VmHWM:") - statusBefore.at("VmRSS:")) / 1024 -
        bufferMiB;
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * fileBytes));
}

}  // namespace
}  // namespace zephra::bench

int main(int argc, char** argv) {
  using namespace zephra::bench;
  benchmark::Initialize(&argc, argv);
  const TBenchFiles files;
  const auto add = [](const char* name, auto&& run) { AddRepeated(name, run, 5); };
  add("PlainReadFreshBuffer", [&](benchmark::State& s) { PlainRead(s, files.FloatImage, true); });
  add("PlainReadReusedBuffer", [&](benchmark::State& s) { PlainRead(s, files.FloatImage, false); });
  add("OpenWholeReal256MiB",
      [&](benchmark::State& s) { OpenImage<zephra::TRealImage>(s, files.FloatImage, false); });
  add("OpenWholeByte16000",
      [&](benchmark::State& s) { OpenImage<zephra::TByteImage>(s, files.ByteImage, false); });
  add("OpenThinnedByte16000",
      [&](benchmark::State& s) { OpenImage<zephra::TByteImage>(s, files.ByteImage, true); });

  TRatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({{"OpenWholeReal256MiB", "PlainReadFreshBuffer"},
                        {"OpenWholeReal256MiB", "PlainReadReusedBuffer"},
                        {"OpenThinnedByte16000", "OpenWholeByte16000"}});
  benchmark::Shutdown();
  return 0;
}
