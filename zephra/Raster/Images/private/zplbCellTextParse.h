#pragma once
// The cells of a large text raster parsed on every core: the text is cut between tokens into one
// piece per core, each piece's tokens are counted, and then parsed into their own place. The
// cells, the range and the cell a failure names are those of a parse from start to end.

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace zephra {

struct TParsedCells {
  size_t Cells = 0;  // cells the text held, at most cells.size()
  // Of the parsed values above the range bound; unset when none was.
  std::optional<float> Min;
  std::optional<float> Max;
  // The first token that is no number: its cell and the parser's message.
  std::optional<size_t> FailedAt;
  std::string Failure;
};

// The first cells.size() tokens of text (as TCellTokens cuts them) into cells, by ParseCellToken.
// Tokens past them are not looked at. Never raises: a failure is in the result, and the cells
// before it are parsed.
TParsedCells ParseCellText(std::string_view text, std::span<float> cells, float rangeAbove);

}  // namespace zephra
