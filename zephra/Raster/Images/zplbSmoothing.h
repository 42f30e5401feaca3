#pragma once
/// @file
/// The cells that a smoothed read looked at: TSmoothingIndex is one cell of the window, and
/// TSmoothingIndexList the whole window in the order it was read.

#include <cstdint>
#include <string>
#include <vector>

#include <zephra/Common/zpExport.h>

namespace zephra {

/// One cell of a smoothing window.
struct ZEPHRA_API TSmoothingIndex {
  /// Never raises.
  TSmoothingIndex(int32_t aCol, int32_t aRow, float aValue) : Col(aCol), Row(aRow), Value(aValue) {}

  /// Zero-based column after the east-west wrap.
  int32_t Col;
  /// Zero-based row.
  int32_t Row;
  /// The cell as read, no-data values included.
  float Value;
};

/// The cells of a smoothing window in the order they were read.
class ZEPHRA_API TSmoothingIndexList : public std::vector<TSmoothingIndex> {
 public:
  using std::vector<TSmoothingIndex>::vector;

  /// "None" for an empty list, else "(col:c, row:r, value: v)" per entry with two decimals in
  /// the locale's decimal form, joined by ", ". Never raises but std::bad_alloc.
  std::string ToString() const;
};

}  // namespace zephra
