#pragma once
// Where a point lies against one closed ring, fast enough to be asked for every cell of a raster.
// The ring's edges are indexed by horizontal bands; the crossings of the row through the last
// asked Y are kept sorted, so that a scan along a row answers each point by a binary search and
// decides exactly only the few edges that pass within rounding distance of the point.

#include <cstdint>
#include <vector>

#include <zephra/Common/zpCommonTypes.h>

namespace zephra {

class TRingLocator {
 public:
  // The edge from the last vertex back to the first always belongs to the ring, so a closing
  // repeat of the first vertex only adds an edge of length zero. Vertices must be finite.
  explicit TRingLocator(TFloatPointArray Vertices);

  const TFloatPointArray& Vertices() const { return FVertices; }
  // The box of the vertices; an empty ring has +inf minima and -inf maxima, so no box holds it.
  float MinX() const { return FMinX; }
  float MaxX() const { return FMaxX; }
  float MinY() const { return FMinY; }
  float MaxY() const { return FMaxY; }

  // 1 inside by the even-odd rule, 0 exactly on an edge or vertex, -1 outside (also for NaN).
  // Keeps the crossings of the last row asked for: an object is used by one thread at a time.
  int8_t Locate(const TFloatPoint& P) const;

 private:
  struct TCrossing {
    double X;  // where the edge meets the row, rounded
    uint32_t Edge;
  };
  struct TSpan {
    float Lo, Hi;
  };
  // The ring on one row Y: edges that cross it (lower end at or below Y, upper end above), and
  // the spans where the ring only touches it (horizontal edges, upper ends of edges).
  struct TRow {
    bool Valid = false;
    float Y = 0.0f;
    std::vector<TCrossing> Crossings;  // sorted by X
    std::vector<TSpan> Touches;        // sorted, disjoint
    double ErrorBound = 0.0;           // no crossing's X is off by more
  };

  void BuildBands();
  uint64_t CountBandEntries(uint64_t limit) const;
  uint32_t BandOf(float y) const;
  void EdgeEnds(uint32_t edge, TFloatPoint& lower, TFloatPoint& upper) const;
  const TRow& RowAt(float Y) const;
  void AddEdgeToRow(uint32_t edge, TRow& row) const;
  static void MergeTouches(std::vector<TSpan>& touches);
  static bool Touched(const std::vector<TSpan>& touches, float X);
  int8_t LocateOnRow(const TRow& row, const TFloatPoint& P) const;

  TFloatPointArray FVertices;
  float FMinX, FMaxX, FMinY, FMaxY;
  uint32_t FBandCount = 1;
  double FBandScale = 0.0;
  std::vector<uint32_t> FBandStart;  // edges of band b: FBandEdges[FBandStart[b] .. b+1)
  std::vector<uint32_t> FBandEdges;
  mutable TRow FRow;
};

}  // namespace zephra
