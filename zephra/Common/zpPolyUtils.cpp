#include <zephra/Common/zpPolyUtils.h>

#include <algorithm>
#include <cstddef>

#include <zephra/Common/private/zpOrientation.h>

namespace zephra {

namespace {

bool WithinBox(const TFloatPoint& a, const TFloatPoint& b, const TFloatPoint& p) {
  return std::min(a.X, b.X) <= p.X && p.X <= std::max(a.X, b.X) && std::min(a.Y, b.Y) <= p.Y &&
         p.Y <= std::max(a.Y, b.Y);
}

}  // namespace

// Crossing count along the ray from the point toward growing X. An edge counts when it spans the
// ray's height half-open (one end above, the other at or below), so a vertex on the ray is
// counted once; the side of the crossing comes from the exact orientation, never from a
// computed intersection, and so does the test for a point on an edge.
TPointInPolyResult PointInPoly(const TFloatPoint& Point, const TFloatPointArray& Polygon) {
  bool inside = false;
  const size_t count = Polygon.size();
  for (size_t i = 0, j = count - 1; i < count; j = i++) {
    const TFloatPoint& a = Polygon[j];
    const TFloatPoint& b = Polygon[i];
    const int side = Orientation(a, b, Point);
    if (side == 0 && WithinBox(a, b, Point)) {
      return pipOnEdge;
    }
    if ((a.Y > Point.Y) != (b.Y > Point.Y)) {
      const bool upward = b.Y > a.Y;
      if (upward ? side > 0 : side < 0) {
        inside = !inside;
      }
    }
  }
  return inside ? pipInside : pipOutside;
}

}  // namespace zephra
