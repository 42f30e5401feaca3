#pragma once
// The plain point-in-ring test that the fast one must agree with: every edge, on every call.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/private/zpOrientation.h>

namespace zephra::test {

// 1 inside by the even-odd rule, 0 on an edge or vertex, -1 outside. The ring closes from its
// last vertex back to the first.
inline int8_t ReferencePointInPoly(const TFloatPoint& P, const TFloatPointArray& ring) {
  bool inside = false;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const TFloatPoint& a = ring[i];
    const TFloatPoint& b = ring[(i + 1) % ring.size()];
    const bool inBox = std::min(a.X, b.X) <= P.X && P.X <= std::max(a.X, b.X) &&
                       std::min(a.Y, b.Y) <= P.Y && P.Y <= std::max(a.Y, b.Y);
    if (inBox && Orientation(a, b, P) == 0) {
      return 0;
    }
    // A crossing of the ray from P towards +x; the half-open rule counts a vertex on the ray
    // once where the ring passes through it, and twice or not at all where the ring turns back.
    if ((a.Y > P.Y) != (b.Y > P.Y)) {
      const bool ascending = a.Y < b.Y;
      if (Orientation(ascending ? a : b, ascending ? b : a, P) > 0) {
        inside = !inside;
      }
    }
  }
  return inside ? 1 : -1;
}

}  // namespace zephra::test
