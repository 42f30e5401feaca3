#pragma once
// The columns of one row that a shape of FillShape holds and fills, as runs, and the scan's walk
// along them.

#include <cstddef>
#include <cstdint>
#include <vector>

#include <zephra/Common/zpPolyMap.h>

namespace zephra {

using TColumnRuns = std::vector<TRingLocator::TRun>;

// Takes from runs every column that cut holds. Both ascend without meeting, and so does the
// result; scratch only lends its memory.
void SubtractRuns(TColumnRuns& runs, const TColumnRuns& cut, TColumnRuns& scratch);

// What the fill keeps of one shape on the row it is on.
class TShapeRow {
 public:
  int32_t Row = -1;   // the row that Held and Fills describe; -1 before the first
  TColumnRuns Held;   // columns whose points the ring holds, edges and vertices included
  TColumnRuns Fills;  // the held columns that no adjacent part of the same feature holds too
  // Each shape's row is kept here rather than in the map, so that the map holds no state of a
  // fill and one map could serve several fills at once.
  TSHPPolygon::TRowCache Cache;

  // The walk starts over from column 0.
  void Rewind() { FNext = 0; }
  // The end of the fill run that holds column c, or c when none does. Between rewinds the
  // columns asked for never go back.
  std::size_t FillEnd(std::size_t c);
  // The first column from c on that a fill run holds, or none.
  std::size_t NextFill(std::size_t c, std::size_t none);

 private:
  void PassRunsBefore(std::size_t c);

  std::size_t FNext = 0;  // the first run of Fills that ends after the columns passed
};

}  // namespace zephra
