#include "NumberText.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace zephra::cli {

namespace {

// Plain digits for the magnitudes of maps and cells (a million reads 1000000, not 1e+06), the
// exponent form only beyond them.
template <typename TNumber>
std::string Shortest(TNumber value) {
  if (std::isnan(value)) {
    return "nan";
  }
  const TNumber magnitude = std::fabs(value);
  const bool plain = magnitude == 0 || (magnitude >= TNumber(1e-4) && magnitude < TNumber(1e15));
  char text[400];
  const auto result = plain
                          ? std::to_chars(text, text + sizeof text, value, std::chars_format::fixed)
                          : std::to_chars(text, text + sizeof text, value);
  return std::string(text, result.ptr);
}

}  // namespace

std::string ShortText(float value) {
  return Shortest(value);
}

std::string ShortText(double value) {
  return Shortest(value);
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
