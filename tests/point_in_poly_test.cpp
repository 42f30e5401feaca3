#include <zephra/Common/private/zpOrientation.h>
#include <zephra/Common/zpPolyMap.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

#include "support/ReferencePointInPoly.h"

namespace zephra {
namespace {

using test::ReferencePointInPoly;
__extension__ typedef __int128 TInt128;

// Coordinates that are whole numbers of 2^kUnit below 2^60 units (such as k * 2^j with |k| < 2^24
// and j in [kUnit, kUnit + 36]) let 128-bit integer arithmetic decide their orientation exactly.
constexpr int kUnit = -20;

bool Representable(double v) {
  const double units = std::ldexp(v, -kUnit);
  return std::fabs(units) < 0x1p60 && units == std::trunc(units) && static_cast<float>(v) == v;
}

TInt128 Units(float v) {
  return static_cast<TInt128>(std::ldexp(static_cast<double>(v), -kUnit));
}

int ExactOrientation(TFloatPoint a, TFloatPoint b, TFloatPoint c) {
  const TInt128 det = (Units(b.X) - Units(a.X)) * (Units(c.Y) - Units(a.Y)) -
                      (Units(b.Y) - Units(a.Y)) * (Units(c.X) - Units(a.X));
  return (det > 0) - (det < 0);
}

int NaiveOrientation(TFloatPoint a, TFloatPoint b, TFloatPoint c) {
  const double det =
      (double{b.X} - a.X) * (double{c.Y} - a.Y) - (double{b.Y} - a.Y) * (double{c.X} - a.X);
  return (det > 0) - (det < 0);
}

TFloatPoint WidePoint(std::mt19937_64& rng) {
  std::uniform_int_distribution<int32_t> mantissa(-(1 << 24) + 1, (1 << 24) - 1);
  std::uniform_int_distribution<int> exponent(kUnit, kUnit + 36);
  return {static_cast<float>(std::ldexp(mantissa(rng), exponent(rng))),
          static_cast<float>(std::ldexp(mantissa(rng), exponent(rng)))};
}

// A third point near or on the line through a and b, perhaps one float step off: a rounded
// point of the line, an exact lattice point of it, or (replacing a and b by points far out on
// opposite sides) a point close to the origin on a line through it, where the differences of
// coordinates no longer fit a double.
TFloatPoint NearLine(std::mt19937_64& rng, TFloatPoint& a, TFloatPoint& b) {
  std::uniform_int_distribution<int> small(-5, 5), step(-1, 1);
  const auto power = [&rng](int lo, int hi) {
    return std::ldexp(1.0, std::uniform_int_distribution<int>(lo, hi)(rng));
  };
  TFloatPoint c{};
  const double dx = small(rng), dy = small(rng);
  if (const int m = small(rng); rng() % 3 == 0) {
    const double t = std::uniform_real_distribution<double>(-1.0, 2.0)(rng);
    c = {static_cast<float>(a.X + t * (b.X - a.X)), static_cast<float>(a.Y + t * (b.Y - a.Y))};
  } else if (rng() % 2 == 0) {
    const double unit = power(kUnit, kUnit + 36);
    b = {static_cast<float>(a.X + unit * dx), static_cast<float>(a.Y + unit * dy)};
    c = {static_cast<float>(a.X + m * unit * dx), static_cast<float>(a.Y + m * unit * dy)};
  } else {
    const double far = power(kUnit + 40, kUnit + 56), near = power(kUnit + 23, kUnit + 28);
    a = {static_cast<float>(far * dx), static_cast<float>(far * dy)};
    b = {static_cast<float>(-m * far * dx), static_cast<float>(-m * far * dy)};
    c = {static_cast<float>(near * dx), static_cast<float>(near * dy)};
  }
  const float inf = std::numeric_limits<float>::infinity();
  float& nudged = rng() % 2 == 0 ? c.X : c.Y;
  const int s = step(rng);
  nudged = s == 0 ? nudged : std::nextafter(nudged, s * inf);
  return c;
}

TEST(Orientation, IsExactWhereDoubleArithmeticFails) {
  std::mt19937_64 rng(7);
  int checked = 0, collinear = 0, naiveWrong = 0;
  for (int i = 0; i < 300000; ++i) {
    TFloatPoint a = WidePoint(rng);
    TFloatPoint b = WidePoint(rng);
    const TFloatPoint c = i % 4 == 0 ? WidePoint(rng) : NearLine(rng, a, b);
    if (!Representable(a.X) || !Representable(a.Y) || !Representable(b.X) || !Representable(b.Y) ||
        !Representable(c.X) || !Representable(c.Y)) {
      continue;
    }
    const int expected = ExactOrientation(a, b, c);
    ASSERT_EQ(Orientation(a, b, c), expected)
        << a.X << ' ' << a.Y << ' ' << b.X << ' ' << b.Y << ' ' << c.X << ' ' << c.Y;
    ++checked;
    collinear += expected == 0;
    naiveWrong += NaiveOrientation(a, b, c) != expected;
  }
  EXPECT_GT(checked, 200000);
  EXPECT_GT(collinear, 10000);
  EXPECT_GT(naiveWrong, 1000);  // the cases are hard enough to need the exact path

  // Beyond the integer oracle: the largest and smallest floats in one product.
  const float big = FLT_MAX, tiny = std::numeric_limits<float>::denorm_min();
  EXPECT_EQ(Orientation({big, big}, {-big, -big}, {0, 0}), 0);
  EXPECT_EQ(Orientation({big, big}, {-big, -big}, {tiny, 0}), 1);
  EXPECT_EQ(Orientation({big, big}, {-big, -big}, {0, tiny}), -1);
  EXPECT_EQ(Orientation({tiny, 0}, {0, tiny}, {-tiny, 2 * tiny}), 0);
  EXPECT_EQ(Orientation({1, 1}, {1, 1}, {5, -3}), 0);
}

struct TKnownCase {
  TFloatPointArray Ring;
  TFloatPoint P;
  int Expected;
};

TEST(PointInPoly, GivesKnownAnswersOnEdgesVerticesAndTurns) {
  const TFloatPointArray square{{0, 0}, {4, 0}, {4, 4}, {0, 4}};
  const TFloatPointArray bowTie{{0, 0}, {4, 4}, {4, 0}, {0, 4}};
  const TFloatPointArray spike{{0, 0}, {4, 2}, {0, 4}, {2, 2}};  // vertices on the ray y = 2
  // A square with a square hole, joined by a bridge run in both directions.
  const TFloatPointArray keyhole{{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 5}, {3, 5},
                                 {3, 7}, {7, 7},  {7, 3},   {3, 3},  {3, 5}, {0, 5}};
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const std::vector<TKnownCase> cases{
      {square, {2, 2}, 1},
      {square, {4, 4}, 0},
      {square, {0, 2.5f}, 0},
      {square, {4.5f, 2}, -1},
      {square, {2, -1e-30f}, -1},
      {square, {nan, 2}, -1},
      {bowTie, {1, 2}, 1},
      {bowTie, {2, 1}, -1},
      {bowTie, {2, 2}, 0},
      {bowTie, {3, 2}, 1},
      {spike, {1, 2}, -1},
      {spike, {3, 2}, 1},
      {spike, {2, 2}, 0},
      {spike, {-1, 2}, -1},
      {keyhole, {5, 5}, -1},
      {keyhole, {1, 1}, 1},
      {keyhole, {1.5f, 5}, 0},
      {keyhole, {5, 7}, 0},
      {{}, {0, 0}, -1},
      {{{1, 2}}, {1, 2}, 0},
      {{{1, 2}}, {1, 3}, -1},
      {{{0, 0}, {2, 2}}, {1, 1}, 0},
      {{{0, 0}, {2, 2}}, {1, 0}, -1},
  };
  for (const TKnownCase& c : cases) {
    const TSHPPolygon polygon(0, 1, c.Ring);
    SCOPED_TRACE(testing::Message()
                 << "ring of " << c.Ring.size() << " at " << c.P.X << ", " << c.P.Y);
    EXPECT_EQ(ReferencePointInPoly(c.P, c.Ring), c.Expected);
    EXPECT_EQ(polygon.PointInPoly(c.P), c.Expected);
  }
}

// Random rings on an integer lattice, mapped onto floats by a scale and an offset that keep
// them exact, so that lattice points on edges stay exactly on the edges.
struct TLatticeRing {
  std::vector<std::array<int, 2>> Vertices;
};

TLatticeRing RandomRing(std::mt19937_64& rng, int kind) {
  auto uniform = [&rng](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  TLatticeRing ring;
  auto& v = ring.Vertices;
  if (kind == 0) {  // wild: self-intersecting, repeated and collinear vertices
    const int grid = std::array<int, 4>{1, 3, 8, 40}[uniform(0, 3)];
    for (int i = uniform(1, 30); i > 0; --i) {
      v.push_back({uniform(0, grid), uniform(0, grid)});
    }
  } else if (kind == 1) {  // rectilinear walk
    int x = 0, y = 0;
    for (int i = uniform(2, 40); i > 0; --i) {
      (i % 2 ? x : y) += uniform(-6, 6);
      v.push_back({x, y});
    }
  } else {  // star around a centre, with a keyhole bridge to an inner ring for kind 3
    const int n = uniform(3, 120);
    std::vector<double> angles(n);
    for (double& a : angles) {
      a = std::uniform_real_distribution<double>(0, 6.283185307179586)(rng);
    }
    std::sort(angles.begin(), angles.end());
    for (const double a : angles) {
      const double r = uniform(1500, 2000);
      v.push_back({static_cast<int>(r * std::cos(a)), static_cast<int>(r * std::sin(a))});
    }
    if (kind == 3) {
      v.push_back(v.front());
      for (const auto& corner :
           {std::array<int, 2>{900, 0}, {900, 500}, {400, 500}, {400, 0}, {900, 0}}) {
        v.push_back(corner);
      }
    }
  }
  return ring;
}

struct TTransform {
  double Scale, Offset;
  TFloatPoint operator()(double x, double y) const {
    return {static_cast<float>(x * Scale + Offset), static_cast<float>(y * Scale + Offset)};
  }
};

// Vertices, lattice and half-lattice points on every edge, their neighbours one float step away,
// whole rows through vertices, the box's edges, and random points around the ring.
std::vector<TFloatPoint> QueryPoints(std::mt19937_64& rng, const TLatticeRing& ring,
                                     const TTransform& at) {
  std::vector<TFloatPoint> points;
  const auto& v = ring.Vertices;
  const float inf = std::numeric_limits<float>::infinity();
  int lo = 1 << 30, hi = -(1 << 30);
  for (std::size_t i = 0; i < v.size(); ++i) {
    const auto& a = v[i];
    const auto& b = v[(i + 1) % v.size()];
    const int dx = b[0] - a[0], dy = b[1] - a[1];
    const int g = std::max(1, std::gcd(dx, dy));
    for (const int k : {0, std::uniform_int_distribution<int>(1, g)(rng)}) {
      for (const double half : {0.0, 0.5}) {
        const TFloatPoint p = at(a[0] + (k + half) * dx / g, a[1] + (k + half) * dy / g);
        points.insert(points.end(), {p,
                                     {std::nextafter(p.X, inf), p.Y},
                                     {std::nextafter(p.X, -inf), p.Y},
                                     {p.X, std::nextafter(p.Y, inf)},
                                     {p.X, std::nextafter(p.Y, -inf)}});
      }
    }
    lo = std::min({lo, a[0], a[1]});
    hi = std::max({hi, a[0], a[1]});
  }
  std::uniform_int_distribution<int> lattice(lo - 2, hi + 2);
  for (int i = 0; i < 40; ++i) {
    points.push_back(at(lattice(rng) + (i % 2) * 0.5, lattice(rng) + (i % 3) * 0.5));
    points.push_back(at(lattice(rng), v[i % v.size()][1]));
    points.push_back(at(i % 2 ? lo : hi, lattice(rng)));
  }
  return points;
}

TEST(PointInPoly, FastTestAgreesWithReferenceOnRandomRings) {
  std::mt19937_64 rng(2024);
  const std::array<TTransform, 5> transforms{
      {{1, 0}, {0.25, 4096}, {1.0 / 64, -180}, {3, 100000}, {0x1p-20, 0.5}}};
  std::array<int, 3> seen{};
  int mismatches = 0;
  for (int c = 0; c < 4000; ++c) {
    const TLatticeRing lattice = RandomRing(rng, c % 4);
    const TTransform& at = transforms[c % transforms.size()];
    TFloatPointArray ring;
    for (const auto& p : lattice.Vertices) {
      ring.push_back(at(p[0], p[1]));
    }
    const TSHPPolygon polygon(c, 1, ring);
    std::vector<TFloatPoint> points = QueryPoints(rng, lattice, at);
    // Scanned row by row through a kept row, as a fill does, or in random order, each point on
    // its own.
    const bool scan = c % 2 == 0;
    if (scan) {
      std::sort(points.begin(), points.end(),
                [](TFloatPoint a, TFloatPoint b) { return a.Y != b.Y ? a.Y > b.Y : a.X < b.X; });
    }
    TSHPPolygon::TRowCache row;
    for (const TFloatPoint& p : points) {
      const int expected = ReferencePointInPoly(p, ring);
      ++seen[expected + 1];
      const int found = scan ? polygon.PointInPoly(p, row) : polygon.PointInPoly(p);
      if (found != expected && ++mismatches <= 5) {
        ADD_FAILURE() << "ring " << c << " at " << p.X << ", " << p.Y << ": expected " << expected;
      }
    }
  }
  EXPECT_EQ(mismatches, 0);
  for (const int count : seen) {  // outside, on the edge and inside all well covered
    EXPECT_GT(count, 100000);
  }
}

}  // namespace
}  // namespace zephra
