#include <zephra/Common/zpRingLocator.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include <zephra/Common/private/zpOrientation.h>
#include <zephra/Common/private/zpRingWindow.h>
#include <zephra/Common/zpExceptions.h>

namespace zephra {

namespace {

// Bands are halved until no more than this many band entries per edge remain, so that long edges
// of a wild ring cannot blow the index up.
constexpr uint32_t kMaxEntriesPerEdge = 8;
// Keeps every edge index and band entry within 32 bits; a shape file record holds fewer points.
constexpr std::size_t kMaxVertices = std::size_t{1} << 28;

double Widen(float value) {
  return static_cast<double>(value);
}

}  // namespace

TRingLocator::TRingLocator(TFloatPointArray Vertices)
    : FVertices(std::move(Vertices)),
      FMinX(std::numeric_limits<float>::infinity()),
      FMaxX(-std::numeric_limits<float>::infinity()),
      FMinY(std::numeric_limits<float>::infinity()),
      FMaxY(-std::numeric_limits<float>::infinity()) {
  for (std::size_t i = 0; i < FVertices.size(); ++i) {
    const TFloatPoint& v = FVertices[i];
    if (!std::isfinite(v.X) || !std::isfinite(v.Y)) {
      throw EArgumentException("Vertex " + std::to_string(i) + " of a ring is not a finite point");
    }
    FMinX = std::min(FMinX, v.X);
    FMaxX = std::max(FMaxX, v.X);
    FMinY = std::min(FMinY, v.Y);
    FMaxY = std::max(FMaxY, v.Y);
  }
  if (FVertices.size() > kMaxVertices) {
    throw EArgumentException("A ring of " + std::to_string(FVertices.size()) +
                             " vertices is too large");
  }
  BuildBands();
}

// BandOf only has to be monotone in y: an edge is listed in every band from that of its lower
// end to that of its upper end, so any Y between the ends falls into one of them, however the
// band arithmetic rounds.
uint32_t TRingLocator::BandOf(float y) const {
  const double position = (Widen(y) - Widen(FMinY)) * FBandScale;
  if (!(position > 0.0)) {
    return 0;
  }
  if (position >= static_cast<double>(FBandCount - 1)) {
    return FBandCount - 1;
  }
  return static_cast<uint32_t>(position);
}

void TRingLocator::EdgeEnds(uint32_t edge, TFloatPoint& lower, TFloatPoint& upper) const {
  const TFloatPoint& a = FVertices[edge];
  const TFloatPoint& b = FVertices[edge + 1 == FVertices.size() ? 0 : edge + 1];
  const bool ascending = a.Y <= b.Y;
  lower = ascending ? a : b;
  upper = ascending ? b : a;
}

// Stops counting once the limit is passed.
uint64_t TRingLocator::CountBandEntries(uint64_t limit) const {
  uint64_t entries = 0;
  TFloatPoint lower{}, upper{};
  for (uint32_t e = 0; e < FVertices.size() && entries <= limit; ++e) {
    EdgeEnds(e, lower, upper);
    entries += BandOf(upper.Y) - BandOf(lower.Y) + 1;
  }
  return entries;
}

void TRingLocator::BuildBands() {
  const auto edgeCount = static_cast<uint32_t>(FVertices.size());
  const double height = Widen(FMaxY) - Widen(FMinY);
  FBandCount = height > 0.0 ? std::max<uint32_t>(edgeCount, 1) : 1;
  for (;;) {
    FBandScale = height > 0.0 ? FBandCount / height : 0.0;
    const uint64_t limit = uint64_t{kMaxEntriesPerEdge} * edgeCount;
    if (FBandCount == 1 || CountBandEntries(limit) <= limit) {
      break;
    }
    FBandCount = (FBandCount + 1) / 2;
  }
  FBandStart.assign(FBandCount + 1, 0);
  TFloatPoint lower{}, upper{};
  for (uint32_t e = 0; e < edgeCount; ++e) {
    EdgeEnds(e, lower, upper);
    for (uint32_t b = BandOf(lower.Y), last = BandOf(upper.Y); b <= last; ++b) {
      ++FBandStart[b + 1];
    }
  }
  for (uint32_t b = 0; b < FBandCount; ++b) {
    FBandStart[b + 1] += FBandStart[b];
  }
  FBandEdges.resize(FBandStart[FBandCount]);
  std::vector<uint32_t> fill(FBandStart.begin(), FBandStart.end() - 1);
  for (uint32_t e = 0; e < edgeCount; ++e) {
    EdgeEnds(e, lower, upper);
    for (uint32_t b = BandOf(lower.Y), last = BandOf(upper.Y); b <= last; ++b) {
      FBandEdges[fill[b]++] = e;
    }
  }
}

// The crossing of an edge with lower end L and upper end U is L.x + (U.x - L.x)(Y - L.y)/(U.y -
// L.y). Every input is a float, so no step under- or overflows in doubles and each of the six
// operations errs by at most u = 2^-53 relatively. As (Y - L.y)/(U.y - L.y) lies in [0, 1), the
// quotient term is off by at most about 5u(|L.x| + |U.x|) and the final sum adds at most
// 2u(|L.x| + |U.x|): 16u(|L.x| + |U.x|) bounds the error with room for the rounding of the bound.
void TRingLocator::AddEdgeToRow(uint32_t edge, TRow& row) const {
  TFloatPoint lower{}, upper{};
  EdgeEnds(edge, lower, upper);
  if (row.Y < lower.Y || row.Y > upper.Y) {
    return;
  }
  if (lower.Y == upper.Y) {
    row.Touches.push_back({std::min(lower.X, upper.X), std::max(lower.X, upper.X)});
    return;
  }
  if (row.Y == upper.Y) {
    row.Touches.push_back({upper.X, upper.X});
    return;
  }
  const double dx = Widen(upper.X) - Widen(lower.X);
  const double dy = Widen(upper.Y) - Widen(lower.Y);
  const double rise = Widen(row.Y) - Widen(lower.Y);
  const double shift = dx * rise;
  const double x = Widen(lower.X) + shift / dy;
  const double bound = std::ldexp(std::fabs(Widen(lower.X)) + std::fabs(Widen(upper.X)), -49);
  row.Crossings.push_back({x, edge});
  row.ErrorBound = std::max(row.ErrorBound, bound);
}

void TRingLocator::MergeTouches(std::vector<TSpan>& touches) {
  std::sort(touches.begin(), touches.end(),
            [](const TSpan& a, const TSpan& b) { return a.Lo < b.Lo; });
  std::size_t kept = 0;
  for (const TSpan& span : touches) {
    if (kept > 0 && span.Lo <= touches[kept - 1].Hi) {
      touches[kept - 1].Hi = std::max(touches[kept - 1].Hi, span.Hi);
    } else {
      touches[kept++] = span;
    }
  }
  touches.resize(kept);
}

void TRingLocator::FillRow(float Y, TRow& row) const {
  row.Owner = nullptr;
  row.Y = Y;
  row.Crossings.clear();
  row.Touches.clear();
  row.ErrorBound = 0.0;
  const uint32_t band = BandOf(Y);
  for (uint32_t i = FBandStart[band]; i < FBandStart[band + 1]; ++i) {
    AddEdgeToRow(FBandEdges[i], row);
  }
  std::sort(row.Crossings.begin(), row.Crossings.end(),
            [](const TCrossing& a, const TCrossing& b) { return a.X < b.X; });
  MergeTouches(row.Touches);
  row.Owner = this;
}

bool TRingLocator::Touched(const std::vector<TSpan>& touches, float X) {
  const auto after = std::upper_bound(touches.begin(), touches.end(), X,
                                      [](float x, const TSpan& span) { return x < span.Lo; });
  return after != touches.begin() && X <= std::prev(after)->Hi;
}

// Crossings outside the window around X lie exactly on their side of it; only those inside need
// the exact turn of the point against their edge.
int8_t TRingLocator::LocateOnRow(const TRow& row, const TFloatPoint& P) const {
  if (Touched(row.Touches, P.X)) {
    return 0;
  }
  const double lowKey = LowKey(P.X, row.ErrorBound);
  const double highKey = HighKey(P.X, row.ErrorBound);
  const auto first = std::partition_point(row.Crossings.begin(), row.Crossings.end(),
                                          [lowKey](const TCrossing& c) { return c.X < lowKey; });
  const auto last = std::partition_point(first, row.Crossings.end(),
                                         [highKey](const TCrossing& c) { return c.X <= highKey; });
  auto right = static_cast<std::size_t>(row.Crossings.end() - last);
  TFloatPoint lower{}, upper{};
  for (auto it = first; it != last; ++it) {
    EdgeEnds(it->Edge, lower, upper);
    const int turn = Orientation(lower, upper, P);
    if (turn == 0) {
      return 0;
    }
    right += turn > 0 ? 1 : 0;
  }
  return (right % 2 == 1) ? 1 : -1;
}

int8_t TRingLocator::Locate(const TFloatPoint& P) const {
  TRowCache cache;
  return Locate(P, cache);
}

int8_t TRingLocator::Locate(const TFloatPoint& P, TRowCache& cache) const {
  if (!(P.X >= FMinX && P.X <= FMaxX && P.Y >= FMinY && P.Y <= FMaxY)) {
    return -1;
  }
  return LocateOnRow(RowAt(P.Y, cache), P);
}

const TRingLocator::TRow& TRingLocator::RowAt(float Y, TRowCache& cache) const {
  TRow& row = cache.FRow;
  if (row.Owner != this || row.Y != Y) {
    FillRow(Y, row);
  }
  return row;
}

}  // namespace zephra
