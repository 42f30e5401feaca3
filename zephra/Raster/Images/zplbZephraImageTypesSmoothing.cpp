// Smoothed reads of TAbstractImage: the plain mean of the valid cells in a square window that
// wraps around the raster east-west and stops at its north and south edges.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <algorithm>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpSpatialConst.h>
#include <zephra/Raster/Images/zplbSmoothing.h>

namespace zephra {

namespace {

void CheckSmoothLevel(int32_t SmoothLevel) {
  if (SmoothLevel < 0) {
    throw EArgumentException("SmoothingLevel must be >= 0");
  }
}

// The window wraps once: a column west of the raster continues at its east end and the other
// way round. A window more than twice as wide as the raster leaves columns outside the row even
// so; they go to the read as they are, where only the linear index check stands behind them.
int64_t WrapColumn(int64_t column, int64_t width) {
  if (column < 0) {
    return width + column;
  }
  if (column >= width) {
    return column - width;
  }
  return column;
}

}  // namespace

float TAbstractImage::ReadCRWithSmoothing(int32_t c, int32_t r, int32_t SmoothLevel,
                                          TSmoothingIndexList* SmoothingIndexes) const {
  CheckSmoothLevel(SmoothLevel);
  if (SmoothingIndexes != nullptr) {
    SmoothingIndexes->clear();
  }
  if (SmoothLevel == 0) {
    return ReadCR(c, r);  // 1-based, unlike the window below
  }
  const int64_t width = Header()->Width;
  const int64_t level = SmoothLevel;
  // Rows north or south of the raster add nothing to the window, so only those on it are walked.
  const int64_t firstRow = std::max<int64_t>(r - level, 0);
  const int64_t lastRow = std::min<int64_t>(r + level, int64_t{Header()->Height} - 1);
  // The columns of one wrap still fit 32 bits; only a window far wider than the raster leaves
  // them, and then its linear index lies outside the buffer.
  const auto readCell = [&](int64_t column, int64_t row) {
    if (column == static_cast<int32_t>(column)) {
      return ReadCR0(static_cast<int32_t>(column), static_cast<int32_t>(row));
    }
    return BufferRead(ReadIndex(width * row + column));
  };

  TSingleArray values;
  values.reserve(
      static_cast<size_t>(std::max<int64_t>(lastRow - firstRow + 1, 0) * (2 * level + 1)));
  for (int64_t row = firstRow; row <= lastRow; ++row) {
    for (int64_t cc = c - level; cc <= c + level; ++cc) {
      const int64_t column = WrapColumn(cc, width);
      const float value = readCell(column, row);
      if (SmoothingIndexes != nullptr) {
        SmoothingIndexes->emplace_back(static_cast<int32_t>(column), static_cast<int32_t>(row),
                                       value);
      }
      if (TSpatialConst::IsValue(value)) {
        values.push_back(value);
      }
    }
  }
  if (values.empty()) {
    return TSpatialConst::MissingValue;
  }
  return Average(values, static_cast<int32_t>(values.size()));
}

float TAbstractImage::ReadXYWithSmoothing(float x, float y, int32_t SmoothLevel,
                                          TSmoothingIndexList* SmoothingIndexes) const {
  CheckSmoothLevel(SmoothLevel);
  if (SmoothingIndexes != nullptr) {
    SmoothingIndexes->clear();
  }
  if (SmoothLevel == 0) {
    return ReadXY(x, y);
  }
  int32_t c = 0;
  int32_t r = 0;
  XYtoCR(x, y, c, r);
  return ReadCRWithSmoothing(c, r, SmoothLevel, SmoothingIndexes);
}

}  // namespace zephra
