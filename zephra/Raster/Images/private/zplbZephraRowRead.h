#pragma once
// A row of an image as Singles, for the loops that pass over every cell (the exporters). Where
// the image is exactly one of the four typed classes, the row comes straight from its buffer,
// converted as BufferRead converts a cell; any other image, a host's subclass of a typed class
// included, is asked for every cell through the read the caller names, so that an override of
// that read still sees every call.

#include <cstdint>
#include <span>

#include <zephra/Raster/Images/zplbZephraAbstractImage.h>

namespace zephra {

// Row r (0-based) of the buffer's grid into row, from the buffer of an exactly typed image;
// false, with nothing read, for any other image or a row whose cells the buffer does not hold
// (the per-cell reads then raise what they raise).
bool ReadTypedRow(const TAbstractImage& Source, int32_t r, std::span<float> row);

// Row r into row: typed where ReadTypedRow can, else readCell(c) for every 0-based column c.
template <typename TReadCell>
void ReadRowSingles(const TAbstractImage& Source, int32_t r, std::span<float> row,
                    TReadCell readCell) {
  if (!ReadTypedRow(Source, r, row)) {
    for (size_t c = 0; c < row.size(); ++c) {
      row[c] = readCell(static_cast<int32_t>(c));
    }
  }
}

}  // namespace zephra
