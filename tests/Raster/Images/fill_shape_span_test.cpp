// FillShape by runs against the fill that tests every cell on its own, on random maps drawn to
// hit what runs could decide otherwise: vertices and horizontal edges on cell points, overlaps
// (where the scan's current shape wins), holes, shapes past the grid's edge.

#include <zephra/Common/zpRingLocator.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "support/ReferenceFill.h"
#include "support/ShapeSupport.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

struct TGridCase {
  const char* Name;
  float Minx, Miny, Maxx, Maxy;
  int32_t Width, Height;
};

// Random maps on one grid: features of one to four parts, which overlap each other and often
// their siblings too.
class TMapMaker {
 public:
  TMapMaker(const TGridCase& grid, uint32_t seed) : FGrid(grid), FRandom(seed) {}

  std::vector<test::TRecord> Map() {
    std::vector<test::TRecord> records;
    for (int f = Uniform(2, 9); f > 0; --f) {
      test::TRecord record{Ring()};
      for (int part = Uniform(0, 3); part > 0; --part) {
        record.push_back(Uniform(0, 1) == 0 ? Inner(record.front()) : Ring());
      }
      records.push_back(record);
    }
    return records;
  }

 private:
  int Uniform(int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(FRandom); }

  // Mostly an exact cell point of the axis, as the fill computes them; else any value from a
  // little past the extent.
  double Coord(float from, float to, int32_t cells) {
    const double span = static_cast<double>(to) - from;
    return Uniform(0, 3) == 0
               ? from + span * std::uniform_real_distribution<double>(-0.125, 1.125)(FRandom)
               : static_cast<float>(Uniform(0, cells) * span / cells + from);
  }
  double X() { return Coord(FGrid.Minx, FGrid.Maxx, FGrid.Width); }
  double Y() { return Coord(FGrid.Maxy, FGrid.Miny, FGrid.Height); }

  // A box (horizontal edges on rows), or a ring of drawn points, which may cross itself.
  test::TRing Ring() {
    if (Uniform(0, 2) == 0) {
      const double x0 = X(), y0 = Y(), x1 = X(), y1 = Y();
      return test::Box(x0, y0, x1, y1);
    }
    test::TRing ring;
    for (int k = Uniform(3, 12); k > 0; --k) {
      const double x = X();
      ring.emplace_back(x, Y());
    }
    ring.push_back(ring.front());
    return ring;
  }

  // A ring shrunk towards the first vertex of another: a hole in it, or nearly.
  test::TRing Inner(test::TRing ring) {
    const auto [x0, y0] = ring[0];
    for (auto& [x, y] : ring) {
      x = x0 + (x - x0) / 2, y = y0 + (y - y0) / 2;
    }
    return ring;
  }

  const TGridCase FGrid;
  std::mt19937 FRandom;
};

std::unique_ptr<TRealImage> Image(const TGridCase& grid) {
  TImageHeader header;
  header.Width = grid.Width;
  header.Height = grid.Height;
  header.Minx = grid.Minx;
  header.Maxx = grid.Maxx;
  header.Miny = grid.Miny;
  header.Maxy = grid.Maxy;
  auto image = TRealImage::Create("", &header);
  std::fill(image->Buffer.begin(), image->Buffer.end(), 0.0f);
  return image;
}

// Runs with a current shape carried from cell to cell and from row to row, holes, and the exact
// test next to each crossing: any slip shows as one cell of another value.
TEST(FillShapeSpans, GiveTheRasterOfTheCellByCellFill) {
  const TGridCase grids[] = {
      {"plane", 500000.0f, 4100000.0f, 502010.0f, 4101590.0f, 67, 53},
      {"latlong", -12.5f, 35.1f, -5.4f, 40.0f, 71, 49},
      {"reversed", 20.0f, 0.0f, 0.0f, 10.0f, 40, 20},  // x descends: no runs, each point asked
  };
  const test::TTempDir dir;
  for (const TGridCase& grid : grids) {
    for (uint32_t seed = 1; seed <= 60; ++seed) {
      SCOPED_TRACE(std::string(grid.Name) + " map " + std::to_string(seed));
      const auto records = TMapMaker(grid, seed).Map();
      const std::string shapes =
          test::WriteShapefile(dir.File(grid.Name + std::to_string(seed)), records);
      TSingleArray values(seed % 4 == 0 ? 0 : 40);
      std::iota(values.begin(), values.end(), 1.0f);
      auto expected = Image(grid);
      test::TReferenceFill(*expected, shapes, values).Run();
      auto actual = Image(grid);
      actual->FillShape(shapes, values);
      const auto& got = actual->Buffer;
      EXPECT_EQ(std::mismatch(got.begin(), got.end(), expected->Buffer.begin()).first - got.begin(),
                std::ssize(got))
          << "the index of the first cell that differs";
    }
  }
}

// Near the origin the points of a row stand far closer together than the rounding error of the
// crossing of a long edge: only the exact test tells their side, and the runs must keep to it.
TEST(FillShapeSpans, KeepTheExactTestWhereRoundingHidesTheSideOfACrossing) {
  std::vector<float> xs;
  for (int k = -400; k <= 400; ++k) {
    xs.push_back(static_cast<float>(k * 1e-22));
  }
  std::mt19937 random(11);
  std::uniform_real_distribution<float> far(1e4f, 1e6f);
  std::uniform_real_distribution<float> near(-4e-20f, 4e-20f);
  for (int trial = 0; trial < 200; ++trial) {
    // The diagonal crosses the row at y * a / b, which rounds to 0.
    const float a = far(random), b = far(random), y = near(random) * b / a;
    const TRingLocator ring({{-a, -b}, {a, b}, {a, -b}});
    TRingLocator::TRowCache cache;
    std::vector<TRingLocator::TRun> runs;
    ring.HeldRuns(y, xs, cache, runs);
    std::vector<bool> held(xs.size());
    for (const auto& run : runs) {
      std::fill(held.begin() + run.First, held.begin() + run.Last, true);
    }
    for (std::size_t i = 0; i < xs.size(); ++i) {
      ASSERT_EQ(held[i], ring.Locate({xs[i], y}) >= 0) << "trial " << trial << ", x " << xs[i];
    }
  }
}

}  // namespace
}  // namespace zephra
