#include <zephra/Raster/Images/private/zplbShapeFillRow.h>

#include <algorithm>

namespace zephra {

void SubtractRuns(TColumnRuns& runs, const TColumnRuns& cut, TColumnRuns& scratch) {
  scratch.clear();
  std::size_t next = 0;
  for (const TRingLocator::TRun& run : runs) {
    while (next < cut.size() && cut[next].Last <= run.First) {
      ++next;
    }
    std::size_t from = run.First;
    for (std::size_t k = next; k < cut.size() && cut[k].First < run.Last; ++k) {
      if (cut[k].First > from) {
        scratch.push_back({from, cut[k].First});
      }
      from = std::max(from, cut[k].Last);
    }
    if (from < run.Last) {
      scratch.push_back({from, run.Last});
    }
  }
  runs.swap(scratch);
}

void TShapeRow::PassRunsBefore(std::size_t c) {
  while (FNext < Fills.size() && Fills[FNext].Last <= c) {
    ++FNext;
  }
}

std::size_t TShapeRow::FillEnd(std::size_t c) {
  PassRunsBefore(c);
  return FNext < Fills.size() && Fills[FNext].First <= c ? Fills[FNext].Last : c;
}

std::size_t TShapeRow::NextFill(std::size_t c, std::size_t none) {
  PassRunsBefore(c);
  return FNext < Fills.size() ? std::max(Fills[FNext].First, c) : none;
}

}  // namespace zephra
