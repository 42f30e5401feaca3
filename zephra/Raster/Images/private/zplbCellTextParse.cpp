#include <zephra/Raster/Images/private/zplbCellTextParse.h>

#include <algorithm>
#include <exception>
#include <future>
#include <thread>
#include <vector>

#include <zephra/Raster/Images/private/zplbZephraTextCells.h>

namespace zephra {

namespace {

// Below this a second thread costs more than it saves.
constexpr size_t kParallelBytes = size_t{1} << 20;

bool IsBlank(char c) {
  return static_cast<unsigned char>(c) <= ' ';
}

// Pieces of text that each begin and end between tokens.
std::vector<std::string_view> Pieces(std::string_view text, size_t count) {
  std::vector<std::string_view> pieces;
  size_t begin = 0;
  for (size_t k = 1; k <= count; ++k) {
    size_t end = k == count ? text.size() : std::max(begin, text.size() / count * k);
    while (end < text.size() && !IsBlank(text[end])) {
      ++end;
    }
    pieces.push_back(text.substr(begin, end - begin));
    begin = end;
  }
  return pieces;
}

size_t CountTokens(std::string_view text) {
  size_t tokens = 0;
  bool inToken = false;
  for (const char c : text) {
    const bool blank = IsBlank(c);
    tokens += !blank && !inToken;
    inToken = !blank;
  }
  return tokens;
}

// Parses the tokens of piece into cells first .. end - 1.
TParsedCells ParsePiece(std::string_view piece, std::span<float> cells, size_t first, size_t end,
                        float rangeAbove) {
  TParsedCells part;
  TCellTokens tokens(piece);
  float lo = 0.0f, hi = 0.0f;
  bool found = false;
  for (size_t i = first; i < end; ++i) {
    try {
      cells[i] = ParseCellToken(tokens.Next());
    } catch (const std::exception& error) {
      part.FailedAt = i;
      part.Failure = error.what();
      break;
    }
    const float value = cells[i];
    if (value > rangeAbove) {
      lo = found ? std::min(lo, value) : value;
      hi = found ? std::max(hi, value) : value;
      found = true;
    }
  }
  if (found) {
    part.Min = lo;
    part.Max = hi;
  }
  return part;
}

void Merge(TParsedCells& all, const TParsedCells& part) {
  if (part.Min) {
    all.Min = all.Min ? std::min(*all.Min, *part.Min) : *part.Min;
    all.Max = all.Max ? std::max(*all.Max, *part.Max) : *part.Max;
  }
  if (part.FailedAt && !all.FailedAt) {
    all.FailedAt = part.FailedAt;
    all.Failure = part.Failure;
  }
}

}  // namespace

TParsedCells ParseCellText(std::string_view text, std::span<float> cells, float rangeAbove) {
  const size_t lanes =
      text.size() < kParallelBytes ? 1 : std::max(1u, std::thread::hardware_concurrency());
  const std::vector<std::string_view> pieces = Pieces(text, lanes);
  std::vector<std::future<size_t>> counts;
  for (const std::string_view piece : pieces) {
    counts.push_back(
        std::async(lanes > 1 ? std::launch::async : std::launch::deferred, CountTokens, piece));
  }
  std::vector<std::future<TParsedCells>> parts;
  size_t first = 0;
  for (size_t k = 0; k < pieces.size(); ++k) {
    const size_t end = std::min(cells.size(), first + counts[k].get());
    parts.push_back(std::async(lanes > 1 ? std::launch::async : std::launch::deferred, ParsePiece,
                               pieces[k], cells, first, end, rangeAbove));
    first = end;
  }
  TParsedCells all;
  all.Cells = first;
  for (auto& part : parts) {
    Merge(all, part.get());
  }
  return all;
}

}  // namespace zephra
