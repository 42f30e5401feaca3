#include <zephra/Raster/Header/zplbZephraImageHeader.h>
#include <zephra/Raster/Header/zplnUtils.h>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <tuple>
#include <utility>

#include "support/RaisedMessage.h"

namespace zephra {
namespace {

using test::RaisedMessage;

TImageHeader Grid(float minx, float maxx, float miny, float maxy, int32_t width = 10,
                  int32_t height = 10, const std::string& refSystem = "Latlon") {
  TImageHeader h;
  h.Minx = minx;
  h.Maxx = maxx;
  h.Miny = miny;
  h.Maxy = maxy;
  h.Width = width;
  h.Height = height;
  h.ResolutionX = (maxx - minx) / static_cast<float>(width);
  h.ResolutionY = (maxy - miny) / static_cast<float>(height);
  h.SetRefSystem(refSystem);
  return h;
}

TEST(HeaderGeometry, RangeTestsAndComparisons) {
  const TImageHeader h = Grid(-5.0f, 5.0f, 1.0f, 1000.0f);
  EXPECT_TRUE(h.PointWithin(-5.0f, 1.0f) && h.PointWithin(5.0f, 1000.0f));
  EXPECT_FALSE(h.WithinXRange(std::nextafter(5.0f, 6.0f)));
  EXPECT_FALSE(h.WithinYRange(std::nextafter(1.0f, 0.0f)));
  EXPECT_FALSE(h.PointWithin(0.0f, 0.0f) || h.PointWithin(NAN, 2.0f));
  EXPECT_TRUE(TImageHeader().PointWithin(0.0f, -0.0f));
  EXPECT_FALSE(TImageHeader().PointWithin(1e-45f, 0.0f));

  TImageHeader other = Grid(-5.00005f, 5.0f, 1.0f, 1000.09f);
  other.ResolutionX = 99.0f;  // resolutions are not compared
  EXPECT_TRUE(h.EqualsBounds(&other));
  EXPECT_FALSE(h.CompareDimensions(&other));
  other.Minx = -5.0f;
  other.Maxy = 1000.0f;
  EXPECT_TRUE(h.CompareDimensions(&other));
  other.Maxy = 1000.2f;
  EXPECT_FALSE(h.EqualsBounds(&other));
  other.Maxy = 1000.0f;
  other.Width = 11;
  EXPECT_FALSE(h.CompareDimensions(&other) || h.EqualsBounds(&other));
  RaisedMessage<EArgumentNullException>([&] { (void)h.CompareDimensions(nullptr); });
  RaisedMessage<EArgumentNullException>([&] { (void)h.EqualsBounds(nullptr); });

  TImageHeader range = Grid(0.0f, 180.0f, 0.0f, 1.0f);
  range.SetRange(TRange{-2.5f, 7.0f});
  EXPECT_EQ(range.MinValue + range.MaxValue, 4.5f);
  EXPECT_FALSE(range.RequiresLongitudeTranslation());
  range.Maxx = std::nextafter(180.0f, 181.0f);
  EXPECT_TRUE(range.GetRequiresLongitudeTranslation());
  EXPECT_FALSE(Grid(0.0f, 360.0f, 0.0f, 1.0f, 10, 10, "Plane").RequiresLongitudeTranslation());
}

TEST(HeaderGeometry, GreatCircleDistance) {
  const float halfCircle = static_cast<float>(6371.2 * std::numbers::pi_v<float>);
  EXPECT_NEAR(LatLonDistance(0.0f, 0.0f, 0.0f, 1.0f), 111.2f, 0.005f);
  EXPECT_EQ(LatLonDistance(0.0f, 0.0f, 0.0f, 180.0f), halfCircle);
  EXPECT_NEAR(LatLonDistance(30.0f, 180.0f, 30.0f, -180.0f), 0.0f, 0.05f);
  // Rounding carries the cosine of these points a step past 1 and -1.
  EXPECT_EQ(LatLonDistance(-86.1699753f, -179.0f, -86.1699753f, -179.0f), 0.0f);
  EXPECT_EQ(LatLonDistance(89.5802536f, 0.0f, -89.5802536f, 180.0f), halfCircle);
}

TEST(HeaderGeometry, UnitsInMetres) {
  TImageHeader h = Grid(20.0f, 30.0f, -10.0f, 10.0f);
  h.UnitDistance = 2.0f;
  const std::tuple<const char*, float, float> cases[] = {
      {"M", 2.0f, 1.0f}, {"Km", 2000.0f, 1000.0f}, {"fT", 0.66f, 0.33f}, {"MI", 3218.0f, 1609.0f}};
  for (const auto& [units, metres, factor] : cases) {
    h.RefUnits = h.ValueUnits = units;
    EXPECT_EQ(UnitDistanceM(&h), metres) << units;
    EXPECT_EQ(ValueUnitsM(&h), factor) << units;
  }
  // A degree is measured across the middle latitude of the grid; radians likewise.
  h.UnitDistance = 1.0f;
  h.RefUnits = "deg";
  const float equator = UnitDistanceM(&h);
  EXPECT_NEAR(equator, 111200.0f, 5.0f);
  h.RefUnits = "Rad";
  h.UnitDistance = std::numbers::pi_v<float> / 180.0f;
  EXPECT_NEAR(UnitDistanceM(&h), equator, 0.1f);
  h.RefUnits = "DEG";
  h.UnitDistance = 1.0f;
  h.Miny = 50.0f;
  h.Maxy = 70.0f;
  EXPECT_NEAR(UnitDistanceM(&h), equator / 2.0f, 20.0f);
  h.ValueUnits = "deg";
  EXPECT_EQ(RaisedMessage<EImageHeaderError>([&] { ValueUnitsM(&h); }),
            "Can't convert value units in .doc file to metres");
  for (const char* units : {"metres", "Unspecified", " m"}) {
    h.RefUnits = h.ValueUnits = units;
    EXPECT_EQ(RaisedMessage<EImageHeaderError>([&] { UnitDistanceM(&h); }),
              "Unknown units in .doc file, can't convert to metres");
    EXPECT_THROW(ValueUnitsM(&h), EImageHeaderError);
  }
  RaisedMessage<EArgumentNullException>([] { UnitDistanceM(nullptr); });
  RaisedMessage<EArgumentNullException>([] { ValueUnitsM(nullptr); });
}

// Cells are zero-based from the north-west; points on the east and south edges stay in the last
// cell, and a latlon grid finds a longitude one turn east or west.
TEST(HeaderGeometry, CellUnderAPoint) {
  const TImageHeader h = Grid(0.0f, 10.0f, 0.0f, 10.0f);
  const TImageHeader wide = Grid(0.0f, 360.0f, -90.0f, 90.0f, 36, 18);
  const TImageHeader centred = Grid(-180.0f, 180.0f, -90.0f, 90.0f, 36, 18);
  const TImageHeader narrow = Grid(0.0f, 100.0f, 0.0f, 10.0f);
  const TImageHeader plane = Grid(0.0f, 360.0f, 0.0f, 10.0f, 10, 10, "Plane");
  const struct {
    const TImageHeader* Header;
    float Lat, Lng;
    int32_t Col, Row;  // -1: the longitude is refused, -2: the latitude
  } cases[] = {{&h, 10.0f, 0.0f, 0, 0},         {&h, 0.0f, 10.0f, 9, 9},
               {&h, 9.5f, 0.5f, 0, 0},          {&h, 2.5f, 3.99f, 3, 7},
               {&wide, 0.0f, -0.5f, 35, 9},     {&centred, 0.0f, 190.0f, 1, 9},
               {&narrow, 5.0f, -10.0f, -1, -1}, {&plane, 5.0f, -10.0f, -1, -1},
               {&h, 11.0f, 11.0f, -1, -1},      {&h, -0.1f, 5.0f, -2, -2}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.Lat << ", " << c.Lng);
    int32_t col = 42;
    int32_t row = 43;
    const auto read = [&] { LatLngToColRow(c.Header, c.Lat, c.Lng, col, row); };
    if (c.Col >= 0) {
      read();
      EXPECT_EQ(std::pair(col, row), std::pair(c.Col, c.Row));
    } else {
      EXPECT_EQ(RaisedMessage<EArgumentException>(read),
                c.Col == -1 ? "Lng is outside map bounds" : "Lat is outside map bounds");
      EXPECT_EQ(std::pair(col, row), std::pair(42, 43));
    }
  }
  int32_t col = 42;
  int32_t row = 43;
  EXPECT_EQ(RaisedMessage<EInvalidOpException>([&] { LatLngToColRow(nullptr, 0, 0, col, row); }),
            "Header instance is null");
  TImageHeader flat = h;
  flat.ResolutionY = 0.0f;
  EXPECT_THROW(LatLngToColRow(&flat, 5.0f, 5.0f, col, row), EMathError);
  EXPECT_EQ(std::pair(col, row), std::pair(42, 43));
}

}  // namespace
}  // namespace zephra
