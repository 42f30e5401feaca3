#pragma once
/// @file
/// TRingLocator: where a point lies against one closed ring, fast enough to be asked for every
/// cell of a raster.
//
// The ring's edges are indexed by horizontal bands; a scan along a row keeps the sorted crossings
// of that row in a cache of its own, so that it answers each point by a binary search and decides
// exactly only the few edges that pass within rounding distance of the point. A scan that wants a
// whole row at once gets the held points as runs between the crossings instead, with the exact
// test kept for the points next to a crossing. The locator itself never changes after
// construction, so any number of threads may ask it at once.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExport.h>

namespace zephra {

/// One closed ring, indexed for fast point location. Never changes after construction, so any
/// number of threads may ask it at once.
class ZEPHRA_API TRingLocator {
 public:
  /// The edge from the last vertex back to the first always belongs to the ring, so a closing
  /// repeat of the first vertex only adds an edge of length zero. Raises EArgumentException for
  /// a vertex that is not finite, or more vertices than the index can hold.
  explicit TRingLocator(TFloatPointArray Vertices);

  /// The vertices as given. Never raises.
  const TFloatPointArray& Vertices() const { return FVertices; }
  // The box of the vertices; an empty ring has +inf minima and -inf maxima, so no box holds it.
  /// West edge of the vertices' box. Never raises.
  float MinX() const { return FMinX; }
  /// East edge of the vertices' box. Never raises.
  float MaxX() const { return FMaxX; }
  /// South edge of the vertices' box. Never raises.
  float MinY() const { return FMinY; }
  /// North edge of the vertices' box. Never raises.
  float MaxY() const { return FMaxY; }

  class TRowCache;

  /// 1 inside by the even-odd rule, 0 exactly on an edge or vertex, -1 outside (also for NaN).
  /// This form works out the row through P for this one call. Never raises but std::bad_alloc.
  int8_t Locate(const TFloatPoint& P) const;
  /// The same answer, reusing the row kept in cache while P.Y stays the same. The cache belongs
  /// to its caller, one per thread and ring; handed another ring it refills itself, as long as
  /// the ring it last served is still alive (it is known by its address). Never raises but
  /// std::bad_alloc.
  int8_t Locate(const TFloatPoint& P, TRowCache& cache) const;

  /// Points Xs[First] .. Xs[Last - 1] of one row.
  struct TRun {
    std::size_t First;  ///< the index of the run's first point
    std::size_t Last;   ///< one past the index of its last point
  };
  /// The points (Xs[i], Y) that Locate holds (answers 0 or 1), as ascending runs that neither
  /// overlap nor touch, written over runs. Xs must ascend (equal neighbours are fine) and hold no
  /// NaN; for other values the runs are unspecified but still lie within Xs. The cache is Locate's.
  /// Never raises but std::bad_alloc.
  void HeldRuns(float Y, std::span<const float> Xs, TRowCache& cache,
                std::vector<TRun>& runs) const;

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
    const TRingLocator* Owner = nullptr;  // null until filled
    float Y = 0.0f;
    std::vector<TCrossing> Crossings;  // sorted by X
    std::vector<TSpan> Touches;        // sorted, disjoint
    double ErrorBound = 0.0;           // no crossing's X is off by more
  };

  void BuildBands();
  uint64_t CountBandEntries(uint64_t limit) const;
  uint32_t BandOf(float y) const;
  void EdgeEnds(uint32_t edge, TFloatPoint& lower, TFloatPoint& upper) const;
  void FillRow(float Y, TRow& row) const;
  void AddEdgeToRow(uint32_t edge, TRow& row) const;
  static void MergeTouches(std::vector<TSpan>& touches);
  static bool Touched(const std::vector<TSpan>& touches, float X);
  int8_t LocateOnRow(const TRow& row, const TFloatPoint& P) const;
  const TRow& RowAt(float Y, TRowCache& cache) const;
  void AddCrossingRuns(const TRow& row, std::span<const float> Xs, std::size_t first,
                       std::size_t last, std::vector<TRun>& runs) const;
  static void AddTouchRuns(const TRow& row, std::span<const float> Xs, std::size_t first,
                           std::size_t last, std::vector<TRun>& runs);

  TFloatPointArray FVertices;
  float FMinX, FMaxX, FMinY, FMaxY;
  uint32_t FBandCount = 1;
  double FBandScale = 0.0;
  std::vector<uint32_t> FBandStart;  // edges of band b: FBandEdges[FBandStart[b] .. b+1)
  std::vector<uint32_t> FBandEdges;
};

/// The row a scan is on, for one ring. Cheap to make empty; it grows to the ring's widest row.
class ZEPHRA_API TRingLocator::TRowCache {
 private:
  friend class TRingLocator;
  TRow FRow;
};

}  // namespace zephra
