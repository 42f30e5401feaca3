#include <zephra/Common/zpExceptions.h>
#include <zephra/Palette/zplbPaletteRamp.h>

#include <gtest/gtest.h>

#include <limits>

namespace zephra {
namespace {

constexpr TColor kNoData = 0xFF00FF;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

TEST(PaletteRamp, CutsTheRangeIntoOneClassPerEntryAndClampsBeyondIt) {
  TZephraPalFile palette;
  palette.SetCount(4);
  const TPaletteRamp ramp(&palette, TRange{0.0f, 100.0f}, kNoData);
  palette.SetCount(2);  // the ramp keeps the table it was given
  EXPECT_EQ(ramp.ColorOf(24.99f), 0xFCFCFCu);
  EXPECT_EQ(ramp.ColorOf(25.0f), 0xFCF8ACu);
  EXPECT_EQ(ramp.IndexOf(74.9f), 2);
  EXPECT_EQ(ramp.IndexOf(100.0f), 3);
  EXPECT_EQ(ramp.IndexOf(-500.0f), 0);
  EXPECT_EQ(ramp.IndexOf(std::numeric_limits<float>::max()), 3);
  EXPECT_EQ(TPaletteRamp(&palette, TRange{5.0f, 5.0f}, kNoData).IndexOf(1e30f), 0);

  EXPECT_THROW(TPaletteRamp(&palette, TRange{2.0f, 1.0f}, 0), EArgumentException);
  EXPECT_THROW(TPaletteRamp(&palette, TRange{kNaN, 1.0f}, 0), EArgumentException);
  EXPECT_THROW(TPaletteRamp(nullptr, TRange{0.0f, 1.0f}, 0), EArgumentNullException);
}

TEST(PaletteRamp, NoDataTakesItsOwnColour) {
  const TZephraPalFile palette;
  const TPaletteRamp flagged(&palette, TRange{-16.0f, 0.0f}, kNoData, -1.0f);
  for (const float value : {kNaN, std::numeric_limits<float>::infinity(), -9999.0f, -1.0f}) {
    EXPECT_EQ(flagged.IndexOf(value), -1) << value;
    EXPECT_EQ(flagged.ColorOf(value), kNoData) << value;
  }
  EXPECT_EQ(flagged.IndexOf(-0.5f), 15);

  const TPaletteRamp unflagged(&palette, TRange{-16000.0f, 0.0f}, kNoData);
  EXPECT_EQ(unflagged.IndexOf(-9989.0f), 6);
  EXPECT_EQ(unflagged.ColorOf(-9990.0f), kNoData);
}

}  // namespace
}  // namespace zephra
