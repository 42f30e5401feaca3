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
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float inf = std::numeric_limits<float>::infinity();
  EXPECT_TRUE(TSpatialConst::IsFlag(nan));
  EXPECT_TRUE(TSpatialConst::IsFlag(-9999.0f));
  EXPECT_TRUE(TSpatialConst::IsFlag(-1e30f));
  EXPECT_TRUE(TSpatialConst::IsFlag(-inf));
  EXPECT_FALSE(TSpatialConst::IsFlag(-9990.0f));
  EXPECT_FALSE(TSpatialConst::IsFlag(std::nextafter(-9999.0f, 0.0f)));

  EXPECT_FALSE(TSpatialConst::IsValue(-9990.0f));
  EXPECT_FALSE(TSpatialConst::IsValue(-9999.0f));
  EXPECT_FALSE(TSpatialConst::IsValue(nan));
  EXPECT_FALSE(TSpatialConst::IsValue(inf));
  EXPECT_TRUE(TSpatialConst::IsValue(std::nextafter(-9990.0f, 0.0f)));
  EXPECT_TRUE(TSpatialConst::IsValue(0.0f));
}

TEST(SpatialConst, AverageTakesTheFirstCountEntries) {
  EXPECT_FLOAT_EQ(Average({1.0f, 2.0f, 6.0f, 100.0f}, 3), 3.0f);
  EXPECT_FLOAT_EQ(Average({16777216.0f, 1.0f, 1.0f}, 3), 5592406.0f);
  EXPECT_THROW(Average({1.0f}, 0), EArgumentException);
  EXPECT_THROW(Average({1.0f}, 2), EArgumentException);
}

TEST(HeaderLineSplitter, SplitsAtTheFirstColonAndTrimsControlCharacters) {
  std::string key = "old";
  std::string value = "old";
  ZephraHeaderProcessLine(" file title  :  a: b \t", key, value);
  EXPECT_EQ(key, "file title");
  EXPECT_EQ(value, "a: b");
  ZephraHeaderProcessLine("  no colon here \x01", key, value);
  EXPECT_EQ(key, "no colon here");
  EXPECT_EQ(value, "");
  ZephraHeaderProcessLine(":value", key, value);
  EXPECT_EQ(key, "");
  EXPECT_EQ(value, "value");
  EXPECT_TRUE(SameText("Min. X", "min. x"));
  EXPECT_FALSE(SameText("min. x", "min.  x"));
}

TEST(Platform, SettingsAndDebugChannel) {
  EXPECT_EQ(ScreenWidth(), 1920);
  SetScreenWidth(800);
  EXPECT_EQ(ScreenWidth(), 800);
  SetScreenWidth(1920);

  std::string seen;
  DebugOutput("dropped");  // no channel yet: nothing happens
  SetDebugOutput([&](const std::string& text) { seen += text; });
  DebugOutput("hello");
  SetDebugOutput([](const std::string&) { throw std::runtime_error("channel down"); });
  EXPECT_NO_THROW(DebugOutput("lost"));
  SetDebugOutput(nullptr);
  EXPECT_EQ(seen, "hello");

  EXPECT_EQ(GeoTiffLibraryPath(), "");
  SetGeoTiffLibraryPath("/opt/x/libtvgeotifflib.so");
  EXPECT_EQ(GeoTiffLibraryPath(), "/opt/x/libtvgeotifflib.so");
  SetGeoTiffLibraryPath("");
}

}  // namespace
}  // namespace zephra
