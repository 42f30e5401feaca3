#pragma once
/// @file
/// Number text in the forms every text format of the library uses, with the decimal separator of
/// the C locale in force and never a thousands separator. TNumberFormat captures the separator
/// once, so hot loops format into their own buffers without asking the locale per cell; the free
/// functions ask it on every call.

#include <cstdint>
#include <string>
#include <string_view>

#include <zephra/Common/zpExport.h>

namespace zephra {

/// Writes and parses numbers with one decimal separator, taken when the object is made.
class ZEPHRA_API TNumberFormat {
 public:
  /// Room that any single formatted number needs, sign and exponent included.
  static constexpr size_t MaxLength = 48;

  /// The decimal separator of the C locale in force for the calling thread. Never raises.
  TNumberFormat();
  /// A fixed decimal separator, whatever the locale. Never raises.
  explicit TNumberFormat(char decimalSeparator) : FSeparator(decimalSeparator) {}

  /// The separator this object writes and parses.
  char DecimalSeparator() const { return FSeparator; }

  // Each writer puts its text at out (MaxLength bytes of room) and returns the end; none raises.

  /// The shortest plain text of at most `precision` significant digits; an exponent ("1.5E+20",
  /// at least expDigits digits) only for very large or very small magnitudes. Never raises.
  char* General(char* out, double value, int precision = 15, int expDigits = 0) const;
  /// One digit, the separator, 14 decimals, E, a sign always, at least three exponent digits.
  /// Never raises.
  char* Scientific(char* out, double value) const;
  /// Exactly `decimals` decimals and no exponent. Never raises.
  char* Fixed(char* out, double value, int decimals) const;
  /// Plain decimal digits with a minus sign when negative. Never raises.
  char* Integer(char* out, int64_t value) const;

  /// General() into a new string.
  std::string General(double value, int precision = 15, int expDigits = 0) const;
  /// Scientific() into a new string.
  std::string Scientific(double value) const;
  /// Fixed() into a new string.
  std::string Fixed(double value, int decimals) const;

  /// Parses an optional sign, digits with this separator, an optional exponent (also "inf" and
  /// "nan"), blanks around it allowed. False for anything else, and for a finite number beyond
  /// the range of a 32-bit float; value is then left alone. Never raises.
  bool TryParseFloat(std::string_view text, float& value) const;
  /// TryParseFloat() that raises EConvertError "'<text>' is not a valid floating point value"
  /// where that gives false.
  float ParseFloat(std::string_view text) const;

 private:
  char FSeparator;
};

/// A decimal 32-bit integer with optional sign, blanks around it allowed. False for anything else;
/// never raises.
ZEPHRA_API bool TryParseInt(std::string_view text, int32_t& value);
/// TryParseInt() that raises EConvertError "'<text>' is not a valid integer value" where that
/// gives false.
ZEPHRA_API int32_t ParseInt(std::string_view text);

/// TNumberFormat::General() with the separator of the locale in force. Never raises.
ZEPHRA_API std::string FormatGeneral(double value, int precision = 15, int expDigits = 0);
/// TNumberFormat::Scientific() with the separator of the locale in force. Never raises.
ZEPHRA_API std::string FormatScientific(double value);
/// TNumberFormat::Fixed() with the separator of the locale in force. Never raises.
ZEPHRA_API std::string FormatFixed(double value, int decimals);
/// TNumberFormat::ParseFloat() with the separator of the locale in force; raises EConvertError
/// as that does.
ZEPHRA_API float ParseFloat(std::string_view text);

}  // namespace zephra
