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
}

TEST(HeaderGeometry, RangeAndLongitudeTranslation) {
  TImageHeader h = Grid(0.0f, 180.0f, 0.0f, 1.0f);
  h.SetRange(TRange{-2.5f, 7.0f});
  EXPECT_EQ(h.MinValue + h.MaxValue, 4.5f);
  EXPECT_FALSE(h.RequiresLongitudeTranslation());
  h.Maxx = std::nextafter(180.0f, 181.0f);
  EXPECT_TRUE(h.GetRequiresLongitudeTranslation());
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
  for (const auto& [units, metres, factor] : {std::tuple{"M", 2.0f, 1.0f},
                                              {"km", 2000.0f, 1000.0f},
                                              {"Km", 2000.0f, 1000.0f},
                                              {"fT", 0.66f, 0.33f},
                                              {"MI", 3218.0f, 1609.0f}}) {
    h.RefUnits = h.ValueUnits = units;
    EXPECT_EQ(UnitDistanceM(&h), metres) << units;
    EXPECT_EQ(ValueUnitsM(&h), factor) << units;
  }
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

std::pair<int32_t, int32_t> CellAt(const TImageHeader* h, float lat, float lng) {
  int32_t col = -1;
  int32_t row = -1;
  LatLngToColRow(h, lat, lng, col, row);
  return {col, row};
}

TEST(HeaderGeometry, CellUnderAPoint) {
  using Cell = std::pair<int32_t, int32_t>;
  const TImageHeader h = Grid(0.0f, 10.0f, 0.0f, 10.0f);
  EXPECT_EQ(CellAt(&h, 10.0f, 0.0f), Cell(0, 0));
  EXPECT_EQ(CellAt(&h, 0.0f, 10.0f), Cell(9, 9));
  EXPECT_EQ(CellAt(&h, 9.5f, 0.5f), Cell(0, 0));
  EXPECT_EQ(CellAt(&h, 2.5f, 3.99f), Cell(3, 7));
  const TImageHeader wide = Grid(0.0f, 360.0f, -90.0f, 90.0f, 36, 18);
  EXPECT_EQ(CellAt(&wide, 0.0f, -10.0f), Cell(35, 9));
  const TImageHeader centred = Grid(-180.0f, 180.0f, -90.0f, 90.0f, 36, 18);
  EXPECT_EQ(CellAt(&centred, 0.0f, 190.0f), Cell(1, 9));

  const std::string lng = "Lng is outside map bounds";
  const TImageHeader narrow = Grid(0.0f, 100.0f, 0.0f, 10.0f);
  const TImageHeader plane = Grid(0.0f, 360.0f, 0.0f, 10.0f, 10, 10, "Plane");
  EXPECT_EQ(RaisedMessage<EArgumentException>([&] { CellAt(&narrow, 5.0f, -10.0f); }), lng);
  EXPECT_EQ(RaisedMessage<EArgumentException>([&] { CellAt(&plane, 5.0f, -10.0f); }), lng);
  EXPECT_EQ(RaisedMessage<EArgumentException>([&] { CellAt(&h, 11.0f, 11.0f); }), lng);
  EXPECT_EQ(RaisedMessage<EArgumentException>([&] { CellAt(&h, -0.1f, 5.0f); }),
            "Lat is outside map bounds");
  EXPECT_EQ(RaisedMessage<EInvalidOpException>([] { CellAt(nullptr, 0.0f, 0.0f); }),
            "Header instance is null");
  int32_t col = 42;
  int32_t row = 43;
  EXPECT_THROW(LatLngToColRow(&h, 20.0f, 5.0f, col, row), EArgumentException);
  TImageHeader flat = h;
  flat.ResolutionY = 0.0f;
  EXPECT_THROW(LatLngToColRow(&flat, 5.0f, 5.0f, col, row), EMathError);
  EXPECT_EQ(std::pair(col, row), Cell(42, 43));
}

}  // namespace
}  // namespace zephra
