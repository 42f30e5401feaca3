// The exact orientation and the two point-in-ring tests built on it: the plain ring test, checked
// against answers known by construction, and the indexed ring of a shape map (with and without a
// row cache), checked against the plain one on random rings.

#include <zephra/Common/private/zpOrientation.h>
#include <zephra/Common/zpPolyMap.h>
#include <zephra/Common/zpPolyUtils.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

namespace zephra {
namespace {

__extension__ typedef __int128 TInt128;
constexpr float kInf = std::numeric_limits<float>::infinity();

// Coordinates that are whole numbers of 2^kUnit below 2^60 units let 128-bit integer arithmetic
// decide their orientation exactly.
constexpr int kUnit = -20;

bool Representable(TFloatPoint p) {
  const auto whole = [](float v) {
    const double units = std::ldexp(double{v}, -kUnit);
    return std::fabs(units) < 0x1p60 && units == std::trunc(units);
  };
  return whole(p.X) && whole(p.Y);
}

int Sign(TInt128 v) {
  return (v > 0) - (v < 0);
}

int ExactOrientation(TFloatPoint a, TFloatPoint b, TFloatPoint c) {
  const auto u = [](float v) { return static_cast<TInt128>(std::ldexp(double{v}, -kUnit)); };
  return Sign((u(b.X) - u(a.X)) * (u(c.Y) - u(a.Y)) - (u(b.Y) - u(a.Y)) * (u(c.X) - u(a.X)));
}

TFloatPoint WidePoint(std::mt19937_64& rng) {
  std::uniform_int_distribution<int32_t> mantissa(-(1 << 24) + 1, (1 << 24) - 1);
  std::uniform_int_distribution<int> exponent(kUnit, kUnit + 36);
  return {static_cast<float>(std::ldexp(mantissa(rng), exponent(rng))),
          static_cast<float>(std::ldexp(mantissa(rng), exponent(rng)))};
}

// A third point on or near the line through a and b, perhaps one float step off: a rounded point
// of the line, an exact lattice point of it, or (a and b moved far out on opposite sides) a point
// near the origin, where the differences of coordinates no longer fit a double.
TFloatPoint NearLine(std::mt19937_64& rng, TFloatPoint& a, TFloatPoint& b) {
  std::uniform_int_distribution<int> small(-5, 5), step(-1, 1);
  const auto power = [&rng](int lo, int hi) {
    return std::ldexp(1.0, std::uniform_int_distribution<int>(lo, hi)(rng));
  };
  const auto at = [](double x, double y) {
    return TFloatPoint{static_cast<float>(x), static_cast<float>(y)};
  };
  TFloatPoint c{};
  const double dx = small(rng), dy = small(rng), m = small(rng);
  if (rng() % 3 == 0) {
    const double t = std::uniform_real_distribution<double>(-1.0, 2.0)(rng);
    c = at(a.X + t * (b.X - a.X), a.Y + t * (b.Y - a.Y));
  } else if (rng() % 2 == 0) {
    const double unit = power(kUnit, kUnit + 36);
    b = at(a.X + unit * dx, a.Y + unit * dy);
    c = at(a.X + m * unit * dx, a.Y + m * unit * dy);
  } else {
    const double far = power(kUnit + 40, kUnit + 56), near = power(kUnit + 23, kUnit + 28);
    a = at(far * dx, far * dy);
    b = at(-m * far * dx, -m * far * dy);
    c = at(near * dx, near * dy);
  }
  float& nudged = rng() % 2 == 0 ? c.X : c.Y;
  const int s = step(rng);
  nudged = s == 0 ? nudged : std::nextafter(nudged, static_cast<float>(s) * kInf);
  return c;
}

TEST(Orientation, IsExactWhereDoubleArithmeticFails) {
  std::mt19937_64 rng(7);
  int checked = 0, collinear = 0;
  for (int i = 0; i < 300000; ++i) {
    TFloatPoint a = WidePoint(rng), b = WidePoint(rng);
    const TFloatPoint c = i % 4 == 0 ? WidePoint(rng) : NearLine(rng, a, b);
    if (!Representable(a) || !Representable(b) || !Representable(c)) {
      continue;
    }
    const int expected = ExactOrientation(a, b, c);
    ASSERT_EQ(Orientation(a, b, c), expected)
        << a.X << ' ' << a.Y << ' ' << b.X << ' ' << b.Y << ' ' << c.X << ' ' << c.Y;
    ++checked;
    collinear += expected == 0;
  }
  EXPECT_GT(checked, 200000);
  EXPECT_GT(collinear, 10000);

  // Beyond the integer oracle: the largest and smallest floats in one product.
  const float big = FLT_MAX, tiny = std::numeric_limits<float>::denorm_min();
  EXPECT_EQ(Orientation({big, big}, {-big, -big}, {0, 0}), 0);
  EXPECT_EQ(Orientation({big, big}, {-big, -big}, {tiny, 0}), 1);
  EXPECT_EQ(Orientation({big, big}, {-big, -big}, {0, tiny}), -1);
  EXPECT_EQ(Orientation({tiny, 0}, {0, tiny}, {-tiny, 2 * tiny}), 0);
  EXPECT_EQ(Orientation({1, 1}, {1, 1}, {5, -3}), 0);
}

// The plain ring test's answer as the indexed ring words it: 1 inside, 0 on an edge, -1 outside.
int Where(const TFloatPoint& p, const TFloatPointArray& ring) {
  const TPointInPolyResult result = PointInPoly(p, ring);
  return result == pipInside ? 1 : (result == pipOnEdge ? 0 : -1);
}

// Points of one ring and where each lies: 1 inside, 0 on an edge, -1 outside.
struct TRingCase {
  TFloatPointArray Ring, Points;
  std::vector<int> Expected;
};

// Answers known by construction: vertices on the ray of the crossing count, self-intersections,
// a notch, a keyhole, degenerate rings, a diamond open or closed in both turning senses, and
// points one float step off slanted edges at every magnitude.
std::vector<TRingCase> KnownCases() {
  const float t = 1e-20f;
  // A square with a square hole, joined by a bridge run in both directions.
  const TFloatPointArray keyhole{{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 5}, {3, 5},
                                 {3, 7}, {7, 7},  {7, 3},   {3, 3},  {3, 5}, {0, 5}};
  std::vector<TRingCase> cases{
      {{{0, 0}, {4, 0}, {4, 4}, {0, 4}},
       {{2, 2}, {4, 4}, {0, 2.5f}, {4.5f, 2}, {2, -1e-30f}},
       {1, 0, 0, -1, -1}},
      {{{0, 0}, {4, 4}, {4, 0}, {0, 4}}, {{1, 2}, {2, 1}, {2, 2}, {3, 2}}, {1, -1, 0, 1}},
      {{{0, 0}, {4, 2}, {0, 4}, {2, 2}}, {{1, 2}, {3, 2}, {2, 2}, {-1, 2}}, {-1, 1, 0, -1}},
      {{{0, 0}, {0, 3}, {1, 3}, {1, 1}, {2, 1}, {2, 3}, {3, 3}, {3, 0}},
       {{1.5f, 2}, {0.5f, 2}, {2.5f, 1}, {1.5f, 1}, {-0.5f, 3}},
       {-1, 1, 1, 0, -1}},
      {keyhole, {{5, 5}, {1, 1}, {1.5f, 5}, {5, 7}}, {-1, 1, 0, 0}},
      {{}, {{0, 0}}, {-1}},
      {{{1, 2}}, {{1, 2}, {1, 3}}, {0, -1}},
      {{{0, 0}, {2, 2}}, {{1, 1}, {1, 0}}, {0, -1}},
      // A tiny offset from a long edge cancels away in plain double arithmetic.
      {{{-1e20f, -1e20f}, {1e20f, 1e20f}, {-1e20f, 1e20f}},
       {{t, t}, {t, std::nextafter(t, 1.0f)}, {t, std::nextafter(t, -1.0f)}},
       {0, 1, -1}}};
  for (const float s : {1.0f, 1e-30f, 1e6f, 3e30f}) {
    const float x = 1.5f * s, y = 0.5f * s;
    cases.push_back(
        {{{0, 0}, {3 * s, s}, {0, 2 * s}},
         {{x, y}, {x, std::nextafter(y, kInf)}, {x, std::nextafter(y, -kInf)}, {3 * s, s}},
         {0, 1, -1, 0}});
  }
  TFloatPointArray diamond{{0, 2}, {2, 0}, {4, 2}, {2, 4}}, closed = diamond;
  closed.push_back(diamond.front());
  for (const TFloatPointArray& ring :
       {diamond, closed, TFloatPointArray(diamond.rbegin(), diamond.rend()),
        TFloatPointArray(closed.rbegin(), closed.rend())}) {
    TRingCase& grid = cases.emplace_back(TRingCase{ring, {}, {}});
    for (int x = -1; x <= 5; ++x) {
      for (int y = -1; y <= 5; ++y) {
        const int d = std::abs(x - 2) + std::abs(y - 2);
        grid.Points.push_back({static_cast<float>(x), static_cast<float>(y)});
        grid.Expected.push_back(d < 2 ? 1 : (d == 2 ? 0 : -1));
      }
    }
  }
  return cases;
}

TEST(PointInPoly, BothTestsGiveTheKnownAnswers) {
  for (const TRingCase& c : KnownCases()) {
    const TSHPPolygon polygon(0, 1, c.Ring);
    TSHPPolygon::TRowCache row;
    for (size_t i = 0; i < c.Points.size(); ++i) {
      const TFloatPoint p = c.Points[i];
      SCOPED_TRACE(testing::Message()
                   << "ring of " << c.Ring.size() << " at " << p.X << ", " << p.Y);
      EXPECT_EQ(Where(p, c.Ring), c.Expected[i]);
      EXPECT_EQ(polygon.PointInPoly(p), c.Expected[i]);
      EXPECT_EQ(polygon.PointInPoly(p, row), c.Expected[i]);
      EXPECT_EQ(CountsAsInside(PointInPoly(p, c.Ring)), c.Expected[i] >= 0);
    }
  }
  // Only the indexed ring promises an answer for a point that is not a number.
  const float nan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(TSHPPolygon(0, 1, {{0, 0}, {4, 0}, {4, 4}, {0, 4}}).PointInPoly({nan, 2}), -1);
}

// Random rings on an integer lattice, mapped onto floats by a scale and an offset that keep
// them exact, so that lattice points on edges stay exactly on the edges.
using TLattice = std::vector<std::array<int, 2>>;

TLattice RandomRing(std::mt19937_64& rng, int kind) {
  auto uniform = [&rng](int lo, int hi) { return std::uniform_int_distribution<int>(lo, hi)(rng); };
  TLattice v;
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
    std::vector<double> angles(uniform(3, 120));
    for (double& a : angles) {
      a = std::uniform_real_distribution<double>(0, 6.283185307179586)(rng);
    }
    std::sort(angles.begin(), angles.end());
    for (const double a : angles) {
      const double r = uniform(1500, 2000);
      v.push_back({static_cast<int>(r * std::cos(a)), static_cast<int>(r * std::sin(a))});
    }
    if (kind == 3) {
      v.insert(v.end(), {v.front(), {900, 0}, {900, 500}, {400, 500}, {400, 0}, {900, 0}});
    }
  }
  return v;
}

struct TTransform {
  double Scale, Offset;
  TFloatPoint operator()(double x, double y) const {
    return {static_cast<float>(x * Scale + Offset), static_cast<float>(y * Scale + Offset)};
  }
};

// Vertices, lattice and half-lattice points on every edge, their neighbours one float step away,
// whole rows through vertices, the box's edges, and random points around the ring.
std::vector<TFloatPoint> QueryPoints(std::mt19937_64& rng, const TLattice& v,
                                     const TTransform& at) {
  std::vector<TFloatPoint> points;
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
                                     {std::nextafter(p.X, kInf), p.Y},
                                     {std::nextafter(p.X, -kInf), p.Y},
                                     {p.X, std::nextafter(p.Y, kInf)},
                                     {p.X, std::nextafter(p.Y, -kInf)}});
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

TEST(PointInPoly, IndexedRingAgreesWithThePlainTestOnRandomRings) {
  std::mt19937_64 rng(2024);
  const std::array<TTransform, 5> transforms{
      {{1, 0}, {0.25, 4096}, {1.0 / 64, -180}, {3, 100000}, {0x1p-20, 0.5}}};
  std::array<int, 3> seen{};
  int mismatches = 0;
  for (int c = 0; c < 4000; ++c) {
    const TLattice lattice = RandomRing(rng, c % 4);
    const TTransform& at = transforms[c % transforms.size()];
    TFloatPointArray ring;
    for (const auto& p : lattice) {
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
      const int expected = Where(p, ring);
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
