#pragma once
// The ring test: where a point lies against one closed ring of vertices. Edges and vertices are
// decided exactly, whatever the magnitude of the coordinates.

#include <cstdint>

#include <zephra/Common/zpCommonTypes.h>

namespace zephra {

// Ordinals 0 and 1 count as in the ring; every other ordinal as out of it.
enum TPointInPolyResult : uint8_t { pipInside, pipOnEdge, pipOutside };

// The ring need not repeat its first vertex at its end: the edge from the last vertex back to
// the first is always part of it. An empty ring holds no point; a ring of one vertex holds only
// that vertex, on its edge.
TPointInPolyResult PointInPoly(const TFloatPoint& Point, const TFloatPointArray& Polygon);

inline bool CountsAsInside(TPointInPolyResult result) {
  return result == pipInside || result == pipOnEdge;
}

}  // namespace zephra
