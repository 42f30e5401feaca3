#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include <zephra/Common/zpPolyUtils.h>

namespace zephra {
namespace {

TFloatPointArray Reversed(TFloatPointArray ring) {
  return {ring.rbegin(), ring.rend()};
}

// A diamond has vertices at the height of many test rays, the hard case of a crossing count.
TEST(RingTest, DiamondOnIntegerGridInBothTurningSensesOpenOrClosed) {
  const TFloatPointArray open{{0, 2}, {2, 0}, {4, 2}, {2, 4}};
  TFloatPointArray closed = open;
  closed.push_back(open.front());
  for (const TFloatPointArray& ring : {open, closed, Reversed(open), Reversed(closed)}) {
    for (int x = -1; x <= 5; ++x) {
      for (int y = -1; y <= 5; ++y) {
        const int d = std::abs(x - 2) + std::abs(y - 2);
        const TPointInPolyResult expected = d < 2 ? pipInside : (d == 2 ? pipOnEdge : pipOutside);
        EXPECT_EQ(PointInPoly(TFloatPoint::Create(x, y), ring), expected) << x << "," << y;
      }
    }
  }
}

// The neighbours of a point on a slanted edge, one float step away, fall on either side of it,
// at any magnitude of the coordinates.
TEST(RingTest, SlantedEdgesAreDecidedExactlyAtAnyScale) {
  for (const float scale : {1.0f, 1e-30f, 1e6f, 3e30f}) {
    const TFloatPointArray ring{{0, 0}, {3 * scale, 1 * scale}, {0, 2 * scale}};
    const float x = 1.5f * scale, y = 0.5f * scale;
    EXPECT_EQ(PointInPoly(TFloatPoint::Create(x, y), ring), pipOnEdge) << scale;
    EXPECT_EQ(PointInPoly(TFloatPoint::Create(x, std::nextafter(y, 1e38f)), ring), pipInside);
    EXPECT_EQ(PointInPoly(TFloatPoint::Create(x, std::nextafter(y, -1e38f)), ring), pipOutside);
    EXPECT_EQ(PointInPoly(TFloatPoint::Create(3 * scale, scale), ring), pipOnEdge);
  }
  // A tiny offset from a long edge cancels away in plain double arithmetic.
  const TFloatPointArray wide{{-1e20f, -1e20f}, {1e20f, 1e20f}, {-1e20f, 1e20f}};
  const float t = 1e-20f;
  EXPECT_EQ(PointInPoly(TFloatPoint::Create(t, t), wide), pipOnEdge);
  EXPECT_EQ(PointInPoly(TFloatPoint::Create(t, std::nextafter(t, 1.0f)), wide), pipInside);
  EXPECT_EQ(PointInPoly(TFloatPoint::Create(t, std::nextafter(t, -1.0f)), wide), pipOutside);
}

TEST(RingTest, DegenerateRingsAndConcaveNotches) {
  EXPECT_EQ(PointInPoly(TFloatPoint::Create(0, 0), {}), pipOutside);
  EXPECT_EQ(PointInPoly(TFloatPoint::Create(1, 1), {{1, 1}}), pipOnEdge);
  EXPECT_EQ(PointInPoly(TFloatPoint::Create(1, 2), {{1, 1}}), pipOutside);
  // A "U": the notch between the arms is outside, the arms and the base inside.
  const TFloatPointArray u{{0, 0}, {0, 3}, {1, 3}, {1, 1}, {2, 1}, {2, 3}, {3, 3}, {3, 0}};
  EXPECT_EQ(PointInPoly(TFloatPoint::Create(1.5f, 2), u), pipOutside);
  EXPECT_EQ(PointInPoly(TFloatPoint::Create(0.5f, 2), u), pipInside);
  EXPECT_EQ(PointInPoly(TFloatPoint::Create(2.5f, 1), u), pipInside);
  EXPECT_EQ(PointInPoly(TFloatPoint::Create(1.5f, 1), u), pipOnEdge);
  EXPECT_EQ(PointInPoly(TFloatPoint::Create(-0.5f, 3), u), pipOutside);
  EXPECT_TRUE(CountsAsInside(pipOnEdge));
  EXPECT_FALSE(CountsAsInside(pipOutside));
}

}  // namespace
}  // namespace zephra
