// FillShape on a 4096 x 4096 raster with 500 polygons of 1000 vertices (every fifth with a hole),
// and the same scan with the plain point test on a 512 x 512 grid of the same map, so that the
// fast and the plain test are compared on equal work in the same run.

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include <zephra/Common/zpPolyMap.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "../tests/support/ReferencePointInPoly.h"
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

struct TSetup {
  TScratch Scratch;
  std::string ShapeFile;
  std::vector<float> Values;

  TSetup() {
    std::mt19937_64 rng(2026);
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
    ShapeFile = test::WriteShapefile(Scratch.File("polygons"), records);
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

void FastFill(benchmark::State& state) {
  const auto side = static_cast<int32_t>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    auto image = Grid(side);
    state.ResumeTiming();
    image->FillShape(Setup().ShapeFile, Setup().Values);
    benchmark::DoNotOptimize(image->Buffer.data());
  }
  state.counters["cells_per_s"] = benchmark::Counter(static_cast<double>(side) * side,
                                                     benchmark::Counter::kIsIterationInvariantRate);
}

// The same scan as FillShape (current shape first, then the boxed search, sibling parts as
// holes), answering every point with the plain test over all edges.
void ReferenceFill(benchmark::State& state) {
  const auto side = static_cast<int32_t>(state.range(0));
  TPolyMap map(Setup().ShapeFile, 0);
  const int32_t count = map.GetShapeCount();
  const auto holds = [&](int32_t i, const TFloatPoint& p) {
    return test::ReferencePointInPoly(p, map.GetShape(i)->Vertices()) >= 0;
  };
  const auto tryShape = [&](int32_t i, const TFloatPoint& p) {
    if (!holds(i, p)) {
      return false;
    }
    const int32_t id = map.GetShape(i)->ShapeId;
    for (int32_t k = i - 1; k >= 0 && map.GetShape(k)->ShapeId == id; --k) {
      if (holds(k, p))
        return false;
    }
    for (int32_t k = i + 1; k < count && map.GetShape(k)->ShapeId == id; ++k) {
      if (holds(k, p))
        return false;
    }
    return true;
  };
  for (auto _ : state) {
    int64_t filled = 0;
    int32_t current = 0;
    for (int32_t r = 0; r < side; ++r) {
      for (int32_t c = 0; c < side; ++c) {
        const TFloatPoint p{static_cast<float>(c * kExtent / side),
                            static_cast<float>(kExtent - r * kExtent / side)};
        if (tryShape(current, p)) {
          ++filled;
          continue;
        }
        for (int32_t i = 0; i < count; ++i) {
          current = i;
          const TSHPPolygon* s = map.GetShape(i);
          if (p.X < s->BoundsMinX || p.X > s->BoundsMaxX || p.Y < s->BoundsMinY ||
              p.Y > s->BoundsMaxY) {
            continue;
          }
          if (tryShape(i, p)) {
            ++filled;
            break;
          }
        }
      }
    }
    benchmark::DoNotOptimize(filled);
  }
  state.counters["cells_per_s"] = benchmark::Counter(static_cast<double>(side) * side,
                                                     benchmark::Counter::kIsIterationInvariantRate);
}

}  // namespace
}  // namespace zephra::bench

int main(int argc, char** argv) {
  using namespace zephra::bench;
  benchmark::Initialize(&argc, argv);
  benchmark::RegisterBenchmark("FastFill512", FastFill)
      ->Arg(512)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime()
      ->Iterations(1)
      ->Repetitions(3)
      ->ReportAggregatesOnly(true);
  benchmark::RegisterBenchmark("ReferenceFill512", ReferenceFill)
      ->Arg(512)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime()
      ->Iterations(1)
      ->Repetitions(1);
  benchmark::RegisterBenchmark("FastFill4096", FastFill)
      ->Arg(4096)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime()
      ->Iterations(1)
      ->Repetitions(1);
  TRatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({{"ReferenceFill512", "FastFill512"}});
  benchmark::Shutdown();
  return 0;
}
