#pragma once
// Blocks of a raster's cells as Singles, for the scans that pass over every cell. Where the image
// is exactly one of the library's buffered classes, a block comes straight from its buffer (a
// float buffer without a copy); any other image is asked for every cell through BufferRead, so
// that a subclass's own read still sees every call.

#include <cstdint>
#include <span>
#include <vector>

#include <zephra/zephra.h>

namespace zephra::cli {

// Cells first .. first + count - 1 of image's buffer; scratch holds them where a conversion is
// needed. Raises what BufferRead raises for a cell the buffer does not hold.
std::span<const float> CellBlock(const TAbstractImage& image, int64_t first, int64_t count,
                                 std::vector<float>& scratch);

}  // namespace zephra::cli
