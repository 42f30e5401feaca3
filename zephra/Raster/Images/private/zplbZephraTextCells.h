#pragma once
// Cell numbers in text rasters: tokens end at a blank or a control character, and numbers use a
// decimal point in every locale (a comma joins two numbers into one bad token).

#include <string_view>

namespace zephra {

class TCellTokens {
 public:
  explicit TCellTokens(std::string_view text) : FText(text) {}

  // The next token after blanks, tabs and line ends; empty at the end of the text.
  std::string_view Next();
  // Passes over the rest of the current line, its line end included.
  void SkipLine();

 private:
  std::string_view FText;
  size_t FPos = 0;
};

// A cell token as a 32-bit float: optional sign, digits with a decimal point, optional exponent,
// also "inf" and "nan". The empty token of a text that ended early is 0.0. Anything else, and a
// finite number beyond the range of a float, raises EConvertError naming the token.
float ParseCellToken(std::string_view token);

}  // namespace zephra
