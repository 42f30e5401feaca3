#include "NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace zephra::cli {

namespace {

// Plain digits for the magnitudes of maps and cells (a million reads 1000000, not 1e+06), the
// exponent form only beyond them.
// Within these magnitudes the plain form of a double has at most 15 integer digits and 17
// significant ones, well inside kShortTextRoom.
template <typename TNumber>
char* Shortest(char* out, TNumber value) {
  if (std::isnan(value)) {
    return std::copy_n("nan", 3, out);
  }
  const TNumber magnitude = std::fabs(value);
  const bool plain = magnitude == 0 || (magnitude >= TNumber(1e-4) && magnitude < TNumber(1e15));
  char* const end = out + kShortTextRoom;
  return plain ? std::to_chars(out, end, value, std::chars_format::fixed).ptr
               : std::to_chars(out, end, value).ptr;
}

template <typename TNumber>
std::string Shortest(TNumber value) {
  char text[kShortTextRoom];
  return std::string(text, Shortest(text, value));
}

}  // namespace

std::string ShortText(float value) {
  return Shortest(value);
}

std::string ShortText(double value) {
  return Shortest(value);
}

char* WriteShortText(char* out, float value) {
  return Shortest(out, value);
}

char* WriteShortText(char* out, double value) {
  return Shortest(out, value);
}

bool ParseNumber(const std::string& text, double& value) {
  const char* begin = text.data();
  const char* end = begin + text.size();
  if (begin != end && *begin == '+') {
    ++begin;  // from_chars takes no plus sign
  }
  const auto result = std::from_chars(begin, end, value);
  return result.ec == std::errc() && result.ptr == end && begin != end;
}

}  // namespace zephra::cli
