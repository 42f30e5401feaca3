#pragma once
// The rows of a text file that the tool writes itself (grid, XYZ), formatted in blocks on every
// core and written in order: the file is the one that one thread would write, byte for byte.

#include <cstdint>
#include <fstream>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>

#include "RasterInput.h"

namespace zephra::cli {

class TProgress;

// Appends the text of row r, its line end included, to text. Called from several threads at
// once, never twice for one row.
using TRowFormatter = std::function<void(int32_t r, std::string& text)>;

// Rows 0 .. rows - 1 to out, in order; progress counts cellsPerRow cells a row. Raises what
// format raises, and std::runtime_error "cannot be written" when out fails.
void WriteTextRows(std::ostream& out, int32_t rows, int64_t cellsPerRow, TProgress& progress,
                   const TRowFormatter& format);

// The text of one cell at at: noDataText where noData holds the value, else its shortest text.
// Returns the end; at needs kShortTextRoom bytes and the length of noDataText.
char* WriteCellText(char* at, float value, const TNoData& noData, std::string_view noDataText);

// Closes out. Raises std::runtime_error "cannot be written" when any write or the close failed.
void CloseChecked(std::ofstream& out);

}  // namespace zephra::cli
