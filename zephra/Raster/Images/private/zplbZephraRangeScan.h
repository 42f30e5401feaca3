#pragma once
// The range scan over raw cells, for the image classes that know their cell type: one pass over
// the buffer with no virtual call per cell.

#include <cstddef>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Raster/Images/zplbZephraAbstractImage.h>

namespace zephra {

// Widens range by the count values that read(i) gives, as far as they count: all of them when
// minVal equals maxVal, else those strictly between the bounds. Returns whether any counted; the
// first one sets both ends.
template <typename TRead>
bool ScanRange(size_t count, TRead read, float minVal, float maxVal, TRange& range) {
  const bool bounded = minVal != maxVal;
  bool found = false;
  for (size_t i = 0; i < count; ++i) {
    const float value = read(i);
    if (bounded && !(value > minVal && value < maxVal)) {
      continue;
    }
    if (!found) {
      range = TRange{value, value};
      found = true;
    } else if (value < range.Min) {
      range.Min = value;
    } else if (value > range.Max) {
      range.Max = value;
    }
  }
  return found;
}

template <typename TCells>
TRange TAbstractImage::ScanBuffer(const TCells& cells, float minVal, float maxVal, bool silent) {
  return ScanCells(
      static_cast<size_t>(NumRecs), [&cells](size_t i) { return static_cast<float>(cells[i]); },
      minVal, maxVal, silent);
}

template <typename TRead>
TRange TAbstractImage::ScanCells(size_t count, TRead read, float minVal, float maxVal,
                                 bool silent) {
  BufferPointer = 0;
  TRange range{minVal, maxVal};
  if (EndOfFile()) {
    return range;
  }
  const bool found = ScanRange(count, read, minVal, maxVal, range);
  BufferPointer = NumRecs;
  return FinishRangeScan(range, found, silent);
}

}  // namespace zephra
