#pragma once
// Number text in the forms every text format of the library uses. All forms take the decimal
// separator of the C locale in force and never write a thousands separator. TNumberFormat
// captures the separator once, so hot loops format into their own buffers without asking the
// locale per cell; the free functions ask it on every call.

#include <cstdint>
#include <string>
#include <string_view>

namespace zephra {

class TNumberFormat {
 public:
  // Room that any single formatted number needs, sign and exponent included.
  static constexpr size_t MaxLength = 48;

  // The decimal separator of the C locale in force.
  TNumberFormat();
  explicit TNumberFormat(char decimalSeparator) : FSeparator(decimalSeparator) {}

  char DecimalSeparator() const { return FSeparator; }

  // Each writer puts its text at out (MaxLength bytes of room) and returns the end.

  // The shortest plain text of at most `precision` significant digits; an exponent
  // ("1.5E+20", at least expDigits digits) only for very large or very small magnitudes.
  char* General(char* out, double value, int precision = 15, int expDigits = 0) const;
  // One digit, the separator, 14 decimals, E, a sign always, at least three exponent digits.
  char* Scientific(char* out, double value) const;
  // Exactly `decimals` decimals and no exponent.
  char* Fixed(char* out, double value, int decimals) const;
  char* Integer(char* out, int64_t value) const;

  std::string General(double value, int precision = 15, int expDigits = 0) const;
  std::string Scientific(double value) const;
  std::string Fixed(double value, int decimals) const;

  // Parses an optional sign, digits with this separator, an optional exponent (also "inf" and
  // "nan"), blanks around it allowed. False for anything else, and for a finite number beyond
  // the range of a 32-bit float.
  bool TryParseFloat(std::string_view text, float& value) const;
  // Raises EConvertError naming the text.
  float ParseFloat(std::string_view text) const;

 private:
  char FSeparator;
};

// A decimal integer with optional sign, blanks around it allowed.
bool TryParseInt(std::string_view text, int32_t& value);
int32_t ParseInt(std::string_view text);  // raises EConvertError naming the text

std::string FormatGeneral(double value, int precision = 15, int expDigits = 0);
std::string FormatScientific(double value);
std::string FormatFixed(double value, int decimals);
float ParseFloat(std::string_view text);

}  // namespace zephra
