#pragma once
// The range scan over raw cells, for the image classes that know their cell type: one pass over
// the buffer with no virtual call per cell.

#include <algorithm>
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
  const auto counts = [&](float value) { return !bounded || (value > minVal && value < maxVal); };
  size_t i = 0;
  while (i < count && !counts(read(i))) {
    ++i;
  }
  if (i == count) {
    return false;
  }
  float lo = read(i), hi = lo;
  // std::min and std::max keep the kept end on equals and on NaN, as a comparison per cell
  // would, and without a branch per cell the compiler can use vector instructions.
  if (bounded) {
    for (++i; i < count; ++i) {
      const float value = read(i);
      const bool in = value > minVal && value < maxVal;
      lo = in ? std::min(lo, value) : lo;
      hi = in ? std::max(hi, value) : hi;
    }
  } else {
    for (++i; i < count; ++i) {
      const float value = read(i);
      lo = std::min(lo, value);
      hi = std::max(hi, value);
    }
  }
  range = TRange{lo, hi};
  return true;
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
