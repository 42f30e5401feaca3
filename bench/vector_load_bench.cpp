// Loading a layer of 1,000,000 vertices from its text and its binary coordinate file. The text
// load is also set against a plain read() of the same file, the floor that any parser stands on.
// The files are made in a scratch folder under /tmp and removed at the end.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <zephra/Vector/zpVectorFile.h>

namespace {

constexpr int kFeatures = 10000;
constexpr int kVerticesPerFeature = 100;
constexpr double kVertices = static_cast<double>(kFeatures) * kVerticesPerFeature;

using Clock = std::chrono::steady_clock;

class TScratchDir {
 public:
  TScratchDir() {
    std::string pattern = "/tmp/zephra-vector-bench-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
      throw std::runtime_error("cannot create a scratch folder in /tmp");
    }
    FPath = pattern;
  }
  ~TScratchDir() {
    std::error_code ignored;
    std::filesystem::remove_all(FPath, ignored);
  }
  TScratchDir(const TScratchDir&) = delete;
  TScratchDir& operator=(const TScratchDir&) = delete;

  std::string File(const std::string& name) const { return (FPath / name).string(); }

 private:
  std::filesystem::path FPath;
};

// Polygons of 100 vertices spread over the globe, two decimals each, as the text form keeps them.
float Coordinate(int feature, int vertex, int axis) {
  const int seed = (feature * 7919 + vertex * 104729 + axis * 1299709) % 36000;
  return static_cast<float>(axis == 0 ? seed - 18000 : seed / 2 - 9000) / 100.0f;
}

void WriteTextLayer(const std::string& fileName) {
  zephra::TVector layer(zephra::ltPolygon);
  layer.Header()->SetRefSystem("latlong");
  for (int f = 0; f < kFeatures; ++f) {
    auto feature = std::make_unique<zephra::TFeature>(static_cast<float>(f + 1));
    for (int v = 0; v < kVerticesPerFeature; ++v) {
      feature->AddPoint(Coordinate(f, v, 0), Coordinate(f, v, 1));
    }
    layer.AddFeature(std::move(feature));
  }
  layer.SaveToFile(fileName);
}

void AppendInt32(std::string& bytes, uint32_t bits) {
  for (int shift = 0; shift < 32; shift += 8) {
    bytes += static_cast<char>((bits >> shift) & 0xFF);
  }
}

void WriteBinaryLayer(const std::string& fileName, const std::string& headerName) {
  std::string bytes;
  bytes.reserve(static_cast<size_t>(kFeatures) * (8 + 8 * kVerticesPerFeature));
  for (int f = 0; f < kFeatures; ++f) {
    AppendInt32(bytes, static_cast<uint32_t>(f + 1));
    AppendInt32(bytes, kVerticesPerFeature);
    for (int v = 0; v < kVerticesPerFeature; ++v) {
      AppendInt32(bytes, std::bit_cast<uint32_t>(Coordinate(f, v, 0)));
      AppendInt32(bytes, std::bit_cast<uint32_t>(Coordinate(f, v, 1)));
    }
  }
  std::ofstream(fileName, std::ios::binary) << bytes;
  std::ofstream(headerName, std::ios::binary)
      << "object type : POLYGON\r\nfile type   : BINARY\r\nref. system : latlong\r\n";
}

// The whole file through one read() into a buffer made beforehand.
double PlainReadSeconds(const std::string& fileName, std::vector<char>& buffer) {
  const auto start = Clock::now();
  const int fd = open(fileName.c_str(), O_RDONLY);
  size_t total = 0;
  for (ssize_t got = 1; fd >= 0 && got > 0; total += static_cast<size_t>(got)) {
    got = read(fd, buffer.data() + total, buffer.size() - total);
    if (got <= 0) {
      break;
    }
  }
  close(fd);
  benchmark::DoNotOptimize(buffer.data());
  return std::chrono::duration<double>(Clock::now() - start).count() * (total > 0 ? 1 : 0);
}

double LoadSeconds(const std::string& fileName) {
  const auto start = Clock::now();
  const auto layer = zephra::TVector::Open(fileName);
  const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
  if (layer->Count() != kFeatures) {
    throw std::runtime_error("the layer did not load whole");
  }
  return seconds;
}

void LoadText(benchmark::State& state, const std::string& fileName) {
  std::vector<char> buffer(std::filesystem::file_size(fileName) + 1);
  double loadTotal = 0.0, readTotal = 0.0;
  for (auto _ : state) {
    readTotal += PlainReadSeconds(fileName, buffer);
    const double seconds = LoadSeconds(fileName);
    loadTotal += seconds;
    state.SetIterationTime(seconds);
  }
  state.counters["vertices/s"] = kVertices * static_cast<double>(state.iterations()) / loadTotal;
  state.counters["MB"] = static_cast<double>(buffer.size()) / 1e6;
  state.counters["read_ms"] = 1e3 * readTotal / static_cast<double>(state.iterations());
  state.counters["load/read"] = loadTotal / readTotal;
}

void LoadBinary(benchmark::State& state, const std::string& fileName) {
  double loadTotal = 0.0;
  for (auto _ : state) {
    const double seconds = LoadSeconds(fileName);
    loadTotal += seconds;
    state.SetIterationTime(seconds);
  }
  state.counters["vertices/s"] = kVertices * static_cast<double>(state.iterations()) / loadTotal;
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  const TScratchDir dir;
  const std::string textFile = dir.File("layer.vec");
  const std::string binaryFile = dir.File("binary.vec");
  WriteTextLayer(textFile);
  WriteBinaryLayer(binaryFile, dir.File("binary.dvc"));

  benchmark::RegisterBenchmark("LoadText/1M_vertices", LoadText, textFile)
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("LoadBinary/1M_vertices", LoadBinary, binaryFile)
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
