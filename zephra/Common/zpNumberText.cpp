#include <zephra/Common/zpNumberText.h>

#include <langinfo.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <utility>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

namespace {

// The run-time's words for non-finite values, as the text writers put them.
char* WriteNonFinite(char* out, double value) {
  const char* text = std::isnan(value) ? "NAN" : (value < 0 ? "-INF" : "INF");
  const size_t length = std::strlen(text);
  std::memcpy(out, text, length);
  return out + length;
}

char* WriteExponent(char* out, int exponent, int minDigits, bool alwaysSign) {
  if (exponent < 0) {
    *out++ = '-';
  } else if (alwaysSign) {
    *out++ = '+';
  }
  char digits[16];
  const auto result = std::to_chars(digits, digits + sizeof digits, std::abs(exponent));
  const int count = static_cast<int>(result.ptr - digits);
  for (int i = count; i < minDigits; ++i) {
    *out++ = '0';
  }
  std::memcpy(out, digits, static_cast<size_t>(count));
  return out + count;
}

// The significant digits (no leading or trailing zeros) and decimal exponent of |value|,
// rounded to `precision` digits.
struct TDigits {
  char Text[40];
  int Count;
  int Exponent;
};

TDigits SignificantDigits(double value, int precision) {
  char buffer[64];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, std::fabs(value),
                                    std::chars_format::scientific, precision - 1);
  const std::string_view text(buffer, static_cast<size_t>(result.ptr - buffer));
  const size_t e = text.find('e');
  TDigits digits{};
  for (const char c : text.substr(0, e)) {
    if (c != '.') {
      digits.Text[digits.Count++] = c;
    }
  }
  while (digits.Count > 1 && digits.Text[digits.Count - 1] == '0') {
    --digits.Count;
  }
  std::from_chars(text.data() + e + 1 + (text[e + 1] == '+' ? 1 : 0), text.data() + text.size(),
                  digits.Exponent);
  return digits;
}

char* CopyDigits(char* out, const char* from, int count) {
  std::memcpy(out, from, static_cast<size_t>(count));
  return out + count;
}

std::string_view Trim(std::string_view text) {
  const auto blank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
  while (!text.empty() && blank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && blank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

// Two decimal digits per entry, "00" to "99".
constexpr char kDigitPairs[] =
    "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
    "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
    "8081828384858687888990919293949596979899";

constexpr int kMaxExactDecimals = 12;
constexpr double kPowersOfTen[kMaxExactDecimals + 1] = {1e0, 1e1, 1e2, 1e3,  1e4,  1e5, 1e6,
                                                        1e7, 1e8, 1e9, 1e10, 1e11, 1e12};

// Writes the Count lowest decimal digits of value, leading zeros included.
template <int Count>
char* WriteLowDigits(char* out, uint64_t value) {
  char* at = out + Count;
  for (int i = 0; i < Count / 2; ++i) {
    at -= 2;
    std::memcpy(at, kDigitPairs + 2 * (value % 100), 2);
    value /= 100;
  }
  if constexpr (Count % 2 == 1) {
    *out = static_cast<char>('0' + value % 10);
  }
  return out + Count;
}

// Writes value in decimal. Cheaper than the general integer conversion for the short whole
// parts of cell values, which it meets in every cell of a text export.
inline char* WriteUnsigned(char* out, uint64_t value) {
  int count = 1;
  for (uint64_t limit = 10; count < 20 && value >= limit; limit *= 10) {
    ++count;
  }
  char* at = out + count;
  while (value >= 100) {
    at -= 2;
    std::memcpy(at, kDigitPairs + 2 * (value % 100), 2);
    value /= 100;
  }
  if (value >= 10) {
    std::memcpy(at - 2, kDigitPairs + 2 * value, 2);
  } else {
    at[-1] = static_cast<char>('0' + value);
  }
  return out + count;
}

// The fixed form of a value that a float holds exactly, with up to 12 decimals, without the
// general conversion: the float's 24 significant bits times 10^Decimals (at most 28 more bits)
// make an exact double, so rounding that product to an integer rounds the decimal expansion
// itself, ties to even as the general path does, in any rounding mode. The divisors are
// constants, so no division instruction runs. Returns nullptr for values that don't qualify:
// other doubles, products of 2^53 and more, infinities and NaN.
template <int Decimals>
char* FixedFromFloat(char* out, double value, char separator) {
  const double magnitude = std::fabs(value);
  const double scaled = magnitude * kPowersOfTen[Decimals];
  if (!(scaled < 0x1p53) || static_cast<double>(static_cast<float>(magnitude)) != magnitude) {
    return nullptr;
  }
  // Below 2^53 the signed conversion is exact and cheaper than the unsigned one.
  auto units = static_cast<uint64_t>(static_cast<int64_t>(scaled));
  const double rest = scaled - static_cast<double>(static_cast<int64_t>(units));
  if (rest > 0.5 || (rest == 0.5 && (units & 1) != 0)) {
    ++units;
  }
  if (std::signbit(value)) {
    *out++ = '-';
  }
  constexpr auto unit = static_cast<uint64_t>(kPowersOfTen[Decimals]);
  out = WriteUnsigned(out, units / unit);
  if constexpr (Decimals > 0) {
    *out++ = separator;
    out = WriteLowDigits<Decimals>(out, units % unit);
  }
  return out;
}

using TFixedWriter = char* (*)(char*, double, char);

template <size_t... Decimals>
constexpr auto FixedWriters(std::index_sequence<Decimals...>) {
  return std::array<TFixedWriter, sizeof...(Decimals)>{&FixedFromFloat<Decimals>...};
}

// One writer per number of decimals, chosen once per call.
constexpr auto kFixedFromFloat = FixedWriters(std::make_index_sequence<kMaxExactDecimals + 1>());

template <typename Writer>
std::string ToString(Writer write) {
  char buffer[TNumberFormat::MaxLength];
  return std::string(buffer, write(buffer));
}

}  // namespace

TNumberFormat::TNumberFormat() {
  // Not localeconv(): its result is a shared buffer that another thread's setlocale or
  // localeconv may rewrite under us. nl_langinfo is thread-safe and answers for the locale of
  // the calling thread, so a host thread under uselocale() gets its own separator.
  const char* point = nl_langinfo(RADIXCHAR);
  // A locale with a multi-byte separator is not supported; its first byte stands for it.
  FSeparator = (point != nullptr && point[0] != '\0') ? point[0] : '.';
}

char* TNumberFormat::General(char* out, double value, int precision, int expDigits) const {
  if (!std::isfinite(value)) {
    return WriteNonFinite(out, value);
  }
  precision = std::clamp(precision, 1, 17);
  if (value == 0.0) {
    *out++ = '0';
    return out;
  }
  if (value < 0) {
    *out++ = '-';
  }
  const TDigits d = SignificantDigits(value, precision);
  if (d.Exponent < -5 || d.Exponent >= precision) {
    *out++ = d.Text[0];
    if (d.Count > 1) {
      *out++ = FSeparator;
      out = CopyDigits(out, d.Text + 1, d.Count - 1);
    }
    *out++ = 'E';
    return WriteExponent(out, d.Exponent, expDigits, true);
  }
  if (d.Exponent < 0) {
    *out++ = '0';
    *out++ = FSeparator;
    std::memset(out, '0', static_cast<size_t>(-d.Exponent - 1));
    out += -d.Exponent - 1;
    return CopyDigits(out, d.Text, d.Count);
  }
  const int whole = d.Exponent + 1;
  if (d.Count <= whole) {
    out = CopyDigits(out, d.Text, d.Count);
    std::memset(out, '0', static_cast<size_t>(whole - d.Count));
    return out + (whole - d.Count);
  }
  out = CopyDigits(out, d.Text, whole);
  *out++ = FSeparator;
  return CopyDigits(out, d.Text + whole, d.Count - whole);
}

char* TNumberFormat::Scientific(char* out, double value) const {
  if (!std::isfinite(value)) {
    return WriteNonFinite(out, value);
  }
  char buffer[64];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::scientific, 14);
  const std::string_view text(buffer, static_cast<size_t>(result.ptr - buffer));
  const size_t e = text.find('e');
  for (const char c : text.substr(0, e)) {
    *out++ = c == '.' ? FSeparator : c;
  }
  int exponent = 0;
  std::from_chars(text.data() + e + 1 + (text[e + 1] == '+' ? 1 : 0), text.data() + text.size(),
                  exponent);
  *out++ = 'E';
  return WriteExponent(out, exponent, 3, true);
}

char* TNumberFormat::Fixed(char* out, double value, int decimals) const {
  // Every cell of a raster takes this way, in the inner loops of the text exports.
  if (decimals >= 0 && decimals <= kMaxExactDecimals) {
    if (char* end = kFixedFromFloat[static_cast<size_t>(decimals)](out, value, FSeparator)) {
      return end;
    }
  }
  if (!std::isfinite(value)) {
    return WriteNonFinite(out, value);
  }
  char buffer[400];  // room for the integer digits of the largest double
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  const size_t length = static_cast<size_t>(result.ptr - buffer);
  if (length > MaxLength) {
    return General(out, value, 15, 0);  // beyond any magnitude a fixed column can show
  }
  for (size_t i = 0; i < length; ++i) {
    *out++ = buffer[i] == '.' ? FSeparator : buffer[i];
  }
  return out;
}

char* TNumberFormat::Integer(char* out, int64_t value) const {
  return std::to_chars(out, out + MaxLength, value).ptr;
}

std::string TNumberFormat::General(double value, int precision, int expDigits) const {
  return ToString([&](char* out) { return General(out, value, precision, expDigits); });
}

std::string TNumberFormat::Scientific(double value) const {
  return ToString([&](char* out) { return Scientific(out, value); });
}

std::string TNumberFormat::Fixed(double value, int decimals) const {
  return ToString([&](char* out) { return Fixed(out, value, decimals); });
}

bool TNumberFormat::TryParseFloat(std::string_view text, float& value) const {
  text = Trim(text);
  char buffer[128];
  if (text.empty() || text.size() >= sizeof buffer) {
    return false;
  }
  size_t length = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '+' && i == 0) {
      continue;  // from_chars takes no plus sign in front
    }
    if (c == '.' && FSeparator != '.') {
      return false;  // only the locale's separator is a decimal point here
    }
    buffer[length++] = c == FSeparator ? '.' : c;
  }
  if (length == 0 || buffer[0] == '+' || (buffer[0] == '-' && text[0] == '+')) {
    return false;
  }
  double parsed = 0.0;
  const auto result = std::from_chars(buffer, buffer + length, parsed);
  if (result.ec != std::errc() || result.ptr != buffer + length) {
    return false;
  }
  // Beyond the float range means rounding to infinity: at or above the midpoint between the
  // largest float and 2^128. The largest float itself, written with 15 digits, lies a little
  // above its exact value and must still read back.
  if (std::isfinite(parsed) && std::fabs(parsed) >= 0x1.ffffffp127) {
    return false;
  }
  value = static_cast<float>(parsed);
  return true;
}

float TNumberFormat::ParseFloat(std::string_view text) const {
  float value = 0.0f;
  if (!TryParseFloat(text, value)) {
    throw EConvertError("'" + std::string(text) + "' is not a valid floating point value");
  }
  return value;
}

bool TryParseInt(std::string_view text, int32_t& value) {
  text = Trim(text);
  if (!text.empty() && text.front() == '+') {
    text.remove_prefix(1);
    if (!text.empty() && text.front() == '-') {
      return false;
    }
  }
  if (text.empty()) {
    return false;
  }
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

int32_t ParseInt(std::string_view text) {
  int32_t value = 0;
  if (!TryParseInt(text, value)) {
    throw EConvertError("'" + std::string(text) + "' is not a valid integer value");
  }
  return value;
}

std::string FormatGeneral(double value, int precision, int expDigits) {
  return TNumberFormat().General(value, precision, expDigits);
}

std::string FormatScientific(double value) {
  return TNumberFormat().Scientific(value);
}

std::string FormatFixed(double value, int decimals) {
  return TNumberFormat().Fixed(value, decimals);
}

float ParseFloat(std::string_view text) {
  return TNumberFormat().ParseFloat(text);
}

}  // namespace zephra
