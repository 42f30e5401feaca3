#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPlatform.h>
#include <zephra/Common/zpSpatialConst.h>
#include <zephra/Raster/Header/zpHeaderUtils.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace zephra {
namespace {

TEST(SpatialConst, FlagsAndValuesSeparateTheTwoNoDataNumbers) {
  const float inf = std::numeric_limits<float>::infinity();
  const struct {
    float Value;
    bool Flag, IsValue;
  } cases[] = {
      {std::numeric_limits<float>::quiet_NaN(), true, false},
      {-inf, true, false},
      {-1e30f, true, false},
      {-9999.0f, true, false},
      {std::nextafter(-9999.0f, 0.0f), false, false},
      {-9990.0f, false, false},
      {std::nextafter(-9990.0f, 0.0f), false, true},
      {0.0f, false, true},
      {inf, false, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(TSpatialConst::IsFlag(c.Value), c.Flag) << c.Value;
    EXPECT_EQ(TSpatialConst::IsValue(c.Value), c.IsValue) << c.Value;
  }
  EXPECT_FLOAT_EQ(Average({1.0f, 2.0f, 6.0f, 100.0f}, 3), 3.0f);
  EXPECT_FLOAT_EQ(Average({16777216.0f, 1.0f, 1.0f}, 3), 5592406.0f);  // summed wider than float
  EXPECT_THROW(Average({1.0f}, 0), EArgumentException);
  EXPECT_THROW(Average({1.0f}, 2), EArgumentException);
}

TEST(HeaderLineSplitter, SplitsAtTheFirstColonAndTrimsControlCharacters) {
  const struct {
    const char *Line, *Key, *Value;
  } cases[] = {{" file title  :  a: b \t", "file title", "a: b"},
               {"  no colon here \x01", "no colon here", ""},
               {":value", "", "value"}};
  for (const auto& c : cases) {
    std::string key = "old", value = "old";
    ZephraHeaderProcessLine(c.Line, key, value);
    EXPECT_EQ(key, c.Key) << c.Line;
    EXPECT_EQ(value, c.Value) << c.Line;
  }
  EXPECT_TRUE(SameText("Min. X", "min. x"));
  EXPECT_FALSE(SameText("min. x", "min.  x"));
}

TEST(Platform, DefaultScreenWidthAndADebugChannelThatNeverThrows) {
  EXPECT_EQ(ScreenWidth(), 1920);
  std::string seen;
  DebugOutput("dropped");  // no channel yet: nothing happens
  SetDebugOutput([&](const std::string& text) { seen += text; });
  DebugOutput("hello");
  SetDebugOutput([](const std::string&) { throw std::runtime_error("channel down"); });
  EXPECT_NO_THROW(DebugOutput("lost"));
  SetDebugOutput(nullptr);
  EXPECT_EQ(seen, "hello");
}

}  // namespace
}  // namespace zephra
