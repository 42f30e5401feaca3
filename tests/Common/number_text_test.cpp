#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpNumberText.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cfenv>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/RaisedMessage.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

// Each form against its text, for the fixed cases whose digits matter one by one.
TEST(NumberText, EachFormWritesTheExpectedDigits) {
  const TNumberFormat point('.'), comma(',');
  const float tenth = 0.1f, biggest = std::numeric_limits<float>::max();
  const std::pair<std::string, const char*> cases[] = {
      // Fifteen digits, a sign and three exponent digits.
      {point.Scientific(0.0), "0.00000000000000E+000"},
      {point.Scientific(-999.0), "-9.99000000000000E+002"},
      {point.Scientific(tenth), "1.00000001490116E-001"},
      {point.Scientific(biggest), "3.40282346638529E+038"},
      {point.Scientific(1e-300), "1.00000000000000E-300"},
      {comma.Scientific(-2.5), "-2,50000000000000E+000"},
      // The shortest plain text up to the precision, else an exponent of at least the digits given.
      {point.General(1000.0), "1000"},
      {point.General(tenth), "0.100000001490116"},
      {point.General(0.0), "0"},
      {point.General(0.0001), "0.0001"},
      {point.General(1e20), "1E+20"},
      {point.General(1.5e-7, 7, 2), "1.5E-07"},
      {point.General(123456789.0, 6, 6), "1.23457E+000008"},
      {point.General(999999.5, 6, 0), "1E+6"},
      {point.General(-9999.0, 7, 2), "-9999"},
      {comma.General(3.75), "3,75"},
      // Exactly the decimals asked, ties to even like the run-time's printf.
      {point.Fixed(2.0, 4), "2.0000"},
      {point.Fixed(-0.125, 2), "-0.12"},
      {point.Fixed(1234567.891, 2), "1234567.89"},
  };
  for (const auto& [actual, expected] : cases) {
    EXPECT_EQ(actual, expected);
  }
}

// Values a float holds take a shortcut through integer arithmetic; its text must be the text of
// the general conversion to the letter, ties, signed zeros and the rounding mode included.
TEST(NumberText, FixedFormOfEveryFloatIsTheTextOfTheGeneralConversion) {
  std::vector<float> values = {0.0f,     -0.0f,       0.03125f, -0.03125f,  2.5f,  -3.5f,
                               0.00005f, -0.00001f,   1e-40f,   8388607.5f, 1e15f, 9.0071993e15f,
                               0.99995f, 123456.789f, -9999.0f, 0.015625f};
  std::mt19937 random(4242);
  std::uniform_int_distribution<uint32_t> bits;
  std::uniform_int_distribution<int32_t> sixteenths(-160000000, 160000000);
  for (int i = 0; i < 100000; ++i) {
    values.push_back(std::bit_cast<float>(bits(random)));
    values.push_back(static_cast<float>(sixteenths(random)) / 16.0f);  // many exact ties
  }
  const TNumberFormat comma(',');
  const int mode = std::fegetround();
  std::fesetround(FE_UPWARD);  // the shortcut must not round the way the mode says
  int mismatches = 0;
  for (const float value : values) {
    for (const int decimals : {0, 1, 2, 4, 5, 12}) {
      char reference[400];
      const auto end =
          std::to_chars(reference, reference + sizeof reference, static_cast<double>(value),
                        std::chars_format::fixed, decimals);
      std::string expected(reference, end.ptr);
      if (!std::isfinite(value) || expected.size() > TNumberFormat::MaxLength) {
        continue;
      }
      std::replace(expected.begin(), expected.end(), '.', ',');
      const std::string actual = comma.Fixed(value, decimals);
      if (actual != expected && ++mismatches <= 5) {
        ADD_FAILURE() << std::hexfloat << value << " with " << decimals << " decimals: " << actual
                      << " instead of " << expected;
      }
    }
  }
  std::fesetround(mode);
  EXPECT_EQ(mismatches, 0);
}

TEST(NumberText, EveryScientificTextReadsBackBitIdentical) {
  const TNumberFormat point('.');
  std::mt19937 random(12345);
  std::uniform_int_distribution<uint32_t> bits;
  int checked = 0;
  while (checked < 20000) {
    const float value = std::bit_cast<float>(bits(random));
    if (!std::isfinite(value)) {
      continue;
    }
    const float back = point.ParseFloat(point.Scientific(value));
    ASSERT_EQ(std::bit_cast<uint32_t>(back), std::bit_cast<uint32_t>(value)) << value;
    ++checked;
  }
  for (const float edge : {std::numeric_limits<float>::denorm_min(),
                           std::numeric_limits<float>::min(), -0.0f, 16777217.0f}) {
    EXPECT_EQ(std::bit_cast<uint32_t>(point.ParseFloat(point.Scientific(edge))),
              std::bit_cast<uint32_t>(edge));
  }
}

TEST(NumberText, ParsingHonoursOnlyTheLocaleSeparatorAndRejectsGarbage) {
  const TNumberFormat point('.');
  const TNumberFormat comma(',');
  EXPECT_FLOAT_EQ(point.ParseFloat(" +1.5E+002 "), 150.0f);
  EXPECT_FLOAT_EQ(comma.ParseFloat("-2,25"), -2.25f);
  EXPECT_THROW(comma.ParseFloat("2.25"), EConvertError);
  EXPECT_THROW(point.ParseFloat("2,25"), EConvertError);
  EXPECT_THROW(point.ParseFloat(""), EConvertError);
  EXPECT_THROW(point.ParseFloat("12abc"), EConvertError);
  EXPECT_THROW(point.ParseFloat("+-1"), EConvertError);
  EXPECT_THROW(point.ParseFloat("1e300"), EConvertError);  // beyond a 32-bit float
  EXPECT_TRUE(std::isnan(point.ParseFloat("NAN")));
  EXPECT_EQ(point.ParseFloat("-INF"), -std::numeric_limits<float>::infinity());
  EXPECT_NE(test::RaisedMessage<EConvertError>([&] { point.ParseFloat("x1"); }).find("'x1'"),
            std::string::npos);
}

TEST(NumberText, IntegersTakeAnOptionalSignAndNothingElse) {
  EXPECT_EQ(ParseInt("+42"), 42);
  EXPECT_EQ(ParseInt(" -7 "), -7);
  EXPECT_EQ(ParseInt("2147483647"), 2147483647);
  EXPECT_THROW(ParseInt("2147483648"), EConvertError);
  EXPECT_THROW(ParseInt("3.0"), EConvertError);
  EXPECT_THROW(ParseInt("+-3"), EConvertError);
  EXPECT_THROW(ParseInt(""), EConvertError);
}

TEST(NumberText, FreeFunctionsFollowTheLocaleInForce) {
  EXPECT_EQ(FormatFixed(1.5, 2), "1.50");
  test::TScopedNumericLocale comma(test::kCommaLocale);
  ASSERT_TRUE(comma.Active()) << test::kCommaLocale << " is not installed: run setup.sh";
  EXPECT_EQ(FormatFixed(1.5, 2), "1,50");
  EXPECT_EQ(FormatScientific(1.0), "1,00000000000000E+000");
  EXPECT_EQ(FormatGeneral(0.25), "0,25");
  EXPECT_FLOAT_EQ(ParseFloat("0,25"), 0.25f);
  EXPECT_EQ(FormatFixed(1234567.0, 2), "1234567,00");  // never a thousands separator
}

}  // namespace
}  // namespace zephra
