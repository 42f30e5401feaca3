#pragma once
// The rows of a text export, formatted on every core and written in order. Where the rows come
// straight from the buffer of an exactly typed image, blocks of rows are formatted by several
// threads at once; any other image (a host's subclass, whose reads need not be thread-safe) is
// read and formatted by the calling thread alone. Either way the calling thread writes the rows
// in order and raises one progress event per row after its text went to the file, so the file
// and the events are those of a plain loop over the rows.

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include <zephra/Common/private/zpTextOutputFile.h>
#include <zephra/Raster/Images/zplbZephraAbstractImage.h>

namespace zephra {

// Appends the text of 0-based row r, whose cells are given as Singles, to text. Called from
// several threads at once, never twice for one row.
using TRowTextFormat =
    std::function<void(int32_t r, std::span<const float> cells, std::string& text)>;

// Every row of Source's buffer grid into file, then rowWritten(r) for it. The cells of a row
// that is not read straight from a typed buffer come from Source->ReadCR(c + 1, r + 1). Raises
// what those reads, format, the file and rowWritten raise.
void WriteRowTexts(TTextOutputFile& file, const TAbstractImage& Source,
                   const TRowTextFormat& format, const std::function<void(int32_t r)>& rowWritten);

}  // namespace zephra
