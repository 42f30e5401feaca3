// FillShape at 4096 x 4096 on two maps, 108 county-like parts that tile the extent and 500
// polygons of 1000 vertices (every fifth with a hole), against the fill that tests every cell on
// its own (tests/support/ReferenceFill.h) in the same run.

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "../tests/support/ReferenceFill.h"
#include "../tests/support/ShapeSupport.h"
#include "BenchRatio.h"
#include "BenchSupport.h"

namespace zephra::bench {
namespace {

constexpr double kExtent = 4096.0;

test::TRing StarRing(std::mt19937_64& rng, double cx, double cy, double radius, int vertices) {
  std::uniform_real_distribution<double> jitter(0.6, 1.0);
  test::TRing ring;
  for (int k = 0; k < vertices; ++k) {
    const double angle = 2.0 * std::numbers::pi * k / vertices;
    const double r = radius * jitter(rng);
    ring.emplace_back(cx + r * std::cos(angle), cy + r * std::sin(angle));
  }
  ring.push_back(ring.front());
  return ring;
}

// One side of the county lattice: the points strictly between its ends, wiggling across the line
// from a to b, except on the map's border.
test::TRing Side(std::mt19937_64& rng, std::pair<double, double> a, std::pair<double, double> b,
                 bool border) {
  std::uniform_real_distribution<double> wiggle(-25.0, 25.0);
  const double length = std::hypot(b.first - a.first, b.second - a.second);
  const double nx = (a.second - b.second) / length, ny = (b.first - a.first) / length;
  test::TRing points;
  double offset = 0.0;
  for (int k = 1; k < 60; ++k) {
    const double t = k / 60.0;
    offset = border ? 0.0 : 0.7 * offset + wiggle(rng) * std::sin(std::numbers::pi * t);
    points.emplace_back(a.first + t * (b.first - a.first) + offset * nx,
                        a.second + t * (b.second - a.second) + offset * ny);
  }
  return points;
}

// 12 x 9 parts over the extent, from a lattice with jittered inner nodes whose sides each part
// shares with its neighbours, as counties meet along common borders.
std::vector<test::TRecord> Counties(std::mt19937_64& rng) {
  constexpr int kColumns = 12, kRows = 9;
  std::uniform_real_distribution<double> jitter(-80.0, 80.0);
  std::vector<std::vector<std::pair<double, double>>> nodes(kColumns + 1);
  for (int i = 0; i <= kColumns; ++i) {
    for (int j = 0; j <= kRows; ++j) {
      const bool inner = i > 0 && i < kColumns && j > 0 && j < kRows;
      nodes[i].emplace_back(i * kExtent / kColumns + (inner ? jitter(rng) : 0.0),
                            j * kExtent / kRows + (inner ? jitter(rng) : 0.0));
    }
  }
  std::vector<std::vector<test::TRing>> across(kColumns), up(kColumns + 1);
  for (int i = 0; i <= kColumns; ++i) {
    for (int j = 0; j <= kRows; ++j) {
      if (i < kColumns) {
        across[i].push_back(Side(rng, nodes[i][j], nodes[i + 1][j], j == 0 || j == kRows));
      }
      if (j < kRows) {
        up[i].push_back(Side(rng, nodes[i][j], nodes[i][j + 1], i == 0 || i == kColumns));
      }
    }
  }
  std::vector<test::TRecord> records;
  for (int i = 0; i < kColumns; ++i) {
    for (int j = 0; j < kRows; ++j) {
      test::TRing ring{nodes[i][j]};
      ring.insert(ring.end(), up[i][j].begin(), up[i][j].end());
      ring.push_back(nodes[i][j + 1]);
      ring.insert(ring.end(), across[i][j + 1].begin(), across[i][j + 1].end());
      ring.push_back(nodes[i + 1][j + 1]);
      ring.insert(ring.end(), up[i + 1][j].rbegin(), up[i + 1][j].rend());
      ring.push_back(nodes[i + 1][j]);
      ring.insert(ring.end(), across[i][j].rbegin(), across[i][j].rend());
      ring.push_back(nodes[i][j]);
      records.push_back({ring});
    }
  }
  return records;
}

std::vector<test::TRecord> Polygons(std::mt19937_64& rng) {
  std::uniform_real_distribution<double> centre(0.0, kExtent);
  std::uniform_real_distribution<double> radius(40.0, 160.0);
  std::vector<test::TRecord> records;
  for (int i = 0; i < 500; ++i) {
    const double cx = centre(rng), cy = centre(rng), r = radius(rng);
    test::TRecord record{StarRing(rng, cx, cy, r, 1000)};
    if (i % 5 == 0) {
      record.push_back(StarRing(rng, cx, cy, r * 0.3, 1000));
    }
    records.push_back(std::move(record));
  }
  return records;
}

struct TSetup {
  TScratch Scratch;
  std::string CountyFile;
  std::string ShapeFile;
  std::vector<float> Values;

  TSetup() {
    std::mt19937_64 rng(2026);
    ShapeFile = test::WriteShapefile(Scratch.File("polygons"), Polygons(rng));
    CountyFile = test::WriteShapefile(Scratch.File("counties"), Counties(rng));
    for (int i = 0; i < 600; ++i) {
      Values.push_back(static_cast<float>(i + 1));
    }
  }
};

TSetup& Setup() {
  static TSetup setup;
  return setup;
}

std::unique_ptr<TRealImage> Grid(int32_t side) {
  TImageHeader header;
  header.Width = header.Height = side;
  header.Maxx = header.Maxy = static_cast<float>(kExtent);
  header.ResolutionX = header.ResolutionY = static_cast<float>(kExtent / side);
  auto image = TRealImage::Create("", &header);
  image->MemOnly = true;
  return image;
}

// TFill runs on a fresh grid each time, made outside the timing; the map is read inside it.
template <typename TFill>
void TimeFill(benchmark::State& state, int32_t side, const TFill& fill) {
  for (auto _ : state) {
    state.PauseTiming();
    auto image = Grid(side);
    state.ResumeTiming();
    fill(*image);
    benchmark::DoNotOptimize(image->Buffer.data());
  }
  state.counters["cells_per_s"] = benchmark::Counter(static_cast<double>(side) * side,
                                                     benchmark::Counter::kIsIterationInvariantRate);
}

void SpanFill(benchmark::State& state, const std::string* file) {
  TimeFill(state, static_cast<int32_t>(state.range(0)),
           [file](TRealImage& image) { image.FillShape(*file, Setup().Values); });
}

void CellFill(benchmark::State& state, const std::string* file) {
  TimeFill(state, static_cast<int32_t>(state.range(0)),
           [file](TRealImage& image) { test::TReferenceFill(image, *file, Setup().Values).Run(); });
}

}  // namespace
}  // namespace zephra::bench

int main(int argc, char** argv) {
  using namespace zephra::bench;
  benchmark::Initialize(&argc, argv);
  const auto span = [](const std::string* file) {
    return [file](benchmark::State& state) { SpanFill(state, file); };
  };
  const auto cell = [](const std::string* file) {
    return [file](benchmark::State& state) { CellFill(state, file); };
  };
  const std::string* counties = &Setup().CountyFile;
  const std::string* polygons = &Setup().ShapeFile;
  AddRepeated("SpanFillCounties4096", span(counties), 3)->Arg(4096)->Iterations(1);
  AddRepeated("CellFillCounties4096", cell(counties), 3)->Arg(4096)->Iterations(1);
  AddRepeated("SpanFillPolygons4096", span(polygons), 3)->Arg(4096)->Iterations(1);
  AddRepeated("CellFillPolygons4096", cell(polygons), 3)->Arg(4096)->Iterations(1);
  TRatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({{"CellFillCounties4096", "SpanFillCounties4096"},
                        {"CellFillPolygons4096", "SpanFillPolygons4096"}});
  benchmark::Shutdown();
  return 0;
}
