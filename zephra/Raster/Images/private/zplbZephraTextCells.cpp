#include <zephra/Raster/Images/private/zplbZephraTextCells.h>

#include <charconv>
#include <cmath>
#include <string>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

namespace {

bool IsSeparator(char c) {
  return static_cast<unsigned char>(c) <= ' ';
}

// A number too small for a float is no error: it becomes the float nearest to it. Only magnitudes
// beyond the largest float are refused.
bool TakeUnderflow(std::string_view digits, float& value) {
  double wide = 0.0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), wide);
  if ((result.ec != std::errc() && result.ec != std::errc::result_out_of_range) ||
      !(std::fabs(wide) < 1.0)) {
    return false;
  }
  value = static_cast<float>(wide);
  return true;
}

}  // namespace

std::string_view TCellTokens::Next() {
  while (FPos < FText.size() && IsSeparator(FText[FPos])) {
    ++FPos;
  }
  const size_t start = FPos;
  while (FPos < FText.size() && !IsSeparator(FText[FPos])) {
    ++FPos;
  }
  return FText.substr(start, FPos - start);
}

void TCellTokens::SkipLine() {
  const size_t end = FText.find_first_of("\r\n", FPos);
  if (end == std::string_view::npos) {
    FPos = FText.size();
    return;
  }
  FPos = end + ((FText[end] == '\r' && end + 1 < FText.size() && FText[end + 1] == '\n') ? 2 : 1);
}

float ParseCellToken(std::string_view token) {
  if (token.empty()) {
    return 0.0f;
  }
  std::string_view digits = token;
  if (digits.front() == '+') {
    digits.remove_prefix(1);  // from_chars takes no plus sign in front
  }
  // Parsed straight to the nearest float: one correct rounding of the decimal text.
  float value = 0.0f;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  const bool whole = result.ptr == digits.data() + digits.size() &&
                     (result.ec == std::errc() || (result.ec == std::errc::result_out_of_range &&
                                                   TakeUnderflow(digits, value)));
  const bool twoSigns =
      token.front() == '+' && !digits.empty() && (digits.front() == '+' || digits.front() == '-');
  if (!whole || twoSigns) {
    throw EConvertError("'" + std::string(token) + "' is not a valid floating point value");
  }
  return value;
}

}  // namespace zephra
