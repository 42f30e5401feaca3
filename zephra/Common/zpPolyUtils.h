#pragma once
/// @file
/// The ring test: where a point lies against one closed ring of vertices. Edges and vertices are
/// decided exactly, whatever the magnitude of the coordinates.

#include <cstdint>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExport.h>

namespace zephra {

/// Where a point lies against a ring. Ordinals 0 and 1 count as in the ring; every other ordinal
/// as out of it.
enum TPointInPolyResult : uint8_t {
  pipInside,  ///< Strictly inside.
  pipOnEdge,  ///< On an edge or a vertex; counts as inside.
  pipOutside  ///< Outside.
};

/// Where Point lies against the ring Polygon. The ring need not repeat its first vertex at its
/// end: the edge from the last vertex back to the first is always part of it. An empty ring holds
/// no point; a ring of one vertex holds only that vertex, on its edge. Never raises.
ZEPHRA_API TPointInPolyResult PointInPoly(const TFloatPoint& Point,
                                          const TFloatPointArray& Polygon);

/// Whether a result of PointInPoly() counts as in the ring: inside or on its edge.
inline bool CountsAsInside(TPointInPolyResult result) {
  return result == pipInside || result == pipOnEdge;
}

}  // namespace zephra
