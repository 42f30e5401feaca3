// TRingLocator::HeldRuns: the held points of a row found between the crossings, not one by one.
//
// Between two crossings whose windows hold none of the points, every point has the same crossings
// exactly on its right, so the count's parity decides the whole gap at once. The points whose
// window still holds a crossing are few (those next to it) and take the point test of Locate.

#include <zephra/Common/zpRingLocator.h>

#include <algorithm>

#include <zephra/Common/private/zpRingWindow.h>

namespace zephra {

namespace {

using TRun = TRingLocator::TRun;

// Appends in ascending order, joining a run that meets the last one.
void Append(std::vector<TRun>& runs, std::size_t first, std::size_t last) {
  if (first >= last) {
    return;
  }
  if (!runs.empty() && runs.back().Last >= first) {
    runs.back().Last = std::max(runs.back().Last, last);
  } else {
    runs.push_back({first, last});
  }
}

// Runs [0, middle) and [middle, end) each ascend; afterwards all of them do, none meeting another.
void Coalesce(std::vector<TRun>& runs, std::size_t middle) {
  std::inplace_merge(runs.begin(), runs.begin() + static_cast<std::ptrdiff_t>(middle), runs.end(),
                     [](const TRun& a, const TRun& b) { return a.First < b.First; });
  std::size_t kept = 0;
  for (const TRun& run : runs) {
    if (kept > 0 && run.First <= runs[kept - 1].Last) {
      runs[kept - 1].Last = std::max(runs[kept - 1].Last, run.Last);
    } else {
      runs[kept++] = run;
    }
  }
  runs.resize(kept);
}

// The first index in [from, to) whose point fails the test, which holds for a prefix of them. The
// steps grow from `from` on, as the next crossing of a row usually lies a few points further.
template <typename TTest>
std::size_t FirstFailing(std::span<const float> Xs, std::size_t from, std::size_t to, TTest test) {
  std::size_t step = 1;
  while (step < to - from && test(Xs[from + step - 1])) {
    from += step;
    step *= 2;
  }
  const auto begin = Xs.begin();
  const auto end = begin + static_cast<std::ptrdiff_t>(std::min(from + step, to));
  return static_cast<std::size_t>(
      std::partition_point(begin + static_cast<std::ptrdiff_t>(from), end, test) - begin);
}

}  // namespace

void TRingLocator::HeldRuns(float Y, std::span<const float> Xs, TRowCache& cache,
                            std::vector<TRun>& runs) const {
  runs.clear();
  if (!(Y >= FMinY && Y <= FMaxY)) {
    return;
  }
  // Locate's box test, as a range of the ascending points.
  const std::size_t first = FirstFailing(Xs, 0, Xs.size(), [this](float x) { return x < FMinX; });
  const std::size_t last =
      FirstFailing(Xs, first, Xs.size(), [this](float x) { return x <= FMaxX; });
  if (first >= last) {
    return;
  }
  const TRow& row = RowAt(Y, cache);
  AddCrossingRuns(row, Xs, first, last, runs);
  const std::size_t crossingRuns = runs.size();
  AddTouchRuns(row, Xs, first, last, runs);
  Coalesce(runs, crossingRuns);
}

// Gap k lies between crossings k - 1 and k (the row's ends stand in for the missing ones); its
// points have the crossings from k on exactly on their right.
void TRingLocator::AddCrossingRuns(const TRow& row, std::span<const float> Xs, std::size_t first,
                                   std::size_t last, std::vector<TRun>& runs) const {
  const std::size_t count = row.Crossings.size();
  const double bound = row.ErrorBound;
  std::size_t cell = first;
  for (std::size_t k = 0; k <= count && cell < last; ++k) {
    if (k > 0) {
      const double left = row.Crossings[k - 1].X;
      const std::size_t clear =
          FirstFailing(Xs, cell, last, [=](float x) { return !(left < LowKey(x, bound)); });
      for (; cell < clear; ++cell) {
        if (LocateOnRow(row, TFloatPoint{Xs[cell], row.Y}) >= 0) {
          Append(runs, cell, cell + 1);
        }
      }
    }
    std::size_t end = last;
    if (k < count) {
      const double right = row.Crossings[k].X;
      end = FirstFailing(Xs, cell, last, [=](float x) { return right > HighKey(x, bound); });
    }
    if ((count - k) % 2 == 1) {
      Append(runs, cell, end);
    }
    cell = end;
  }
}

// Points on a touching span are on the ring, whatever the crossings say.
void TRingLocator::AddTouchRuns(const TRow& row, std::span<const float> Xs, std::size_t first,
                                std::size_t last, std::vector<TRun>& runs) {
  std::size_t from = first;
  for (const TSpan& span : row.Touches) {
    const std::size_t lo = FirstFailing(Xs, from, last, [&](float x) { return x < span.Lo; });
    const std::size_t hi = FirstFailing(Xs, lo, last, [&](float x) { return x <= span.Hi; });
    if (lo < hi) {
      runs.push_back({lo, hi});
    }
    from = hi;
  }
}

}  // namespace zephra
