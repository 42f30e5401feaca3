#pragma once
// The rows of a text file that the tool writes itself (grid, XYZ), formatted in blocks on every
// core and written in order: the file is the one that one thread would write, byte for byte.

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

namespace zephra::cli {

class TProgress;

// Appends the text of row r, its line end included, to text. Called from several threads at
// once, never twice for one row.
using TRowFormatter = std::function<void(int32_t r, std::string& text)>;

// Rows 0 .. rows - 1 to out, in order; progress counts cellsPerRow cells a row. Raises what
// format raises, and std::runtime_error "cannot be written" when out fails.
void WriteTextRows(std::ostream& out, int32_t rows, int64_t cellsPerRow, TProgress& progress,
                   const TRowFormatter& format);

}  // namespace zephra::cli
