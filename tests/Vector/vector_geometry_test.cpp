#include <gtest/gtest.h>

#include <zephra/Vector/zpVectorFile.h>

#include "support/RaisedMessage.h"
#include "support/VectorSupport.h"

namespace zephra {
namespace {

using test::MakeFeature;
using test::RaisedMessage;

TEST(VectorGeometry, AreaAndCentroidFollowTurningSenseHolesAndOpenRings) {
  const TVector layer(ltLine);  // neither operation looks at the layer
  const auto area = [&](std::initializer_list<float> xy) {
    return layer.CalcArea(MakeFeature(1, xy).get());
  };
  // A square turning clockwise with Y growing upward, then reversed.
  const auto square = MakeFeature(1, {1, 1, 1, 3, 3, 3, 3, 1, 1, 1});
  const auto reversed = MakeFeature(1, {1, 1, 3, 1, 3, 3, 1, 3, 1, 1});
  EXPECT_DOUBLE_EQ(layer.CalcArea(square.get()), 4.0);
  EXPECT_DOUBLE_EQ(layer.CalcArea(reversed.get()), -4.0);
  for (const TFeature* f : {square.get(), reversed.get()}) {
    EXPECT_FLOAT_EQ(layer.CalcCentroid(f).X, 2.0f);
    EXPECT_FLOAT_EQ(layer.CalcCentroid(f).Y, 2.0f);
  }
  const auto holed = MakeFeature(
      1, {1, 1, 1, 3, 3, 3, 3, 1, 1, 1, 0, 0, 1.5, 1.5, 1.5, 2.5, 2.5, 2.5, 2.5, 1.5, 1.5, 1.5});
  EXPECT_DOUBLE_EQ(layer.CalcArea(holed.get()), 3.0);
  EXPECT_DOUBLE_EQ(
      area({1, 1, 1, 3, 3, 3, 3, 1, 1, 1, 0, 0, 1.5, 1.5, 2.5, 1.5, 2.5, 2.5, 1.5, 2.5, 1.5, 1.5}),
      5.0);
  // Holes change only the area sum of the centroid, not its moments.
  EXPECT_FLOAT_EQ(layer.CalcCentroid(holed.get()).X, 8.0f / 3.0f);
  EXPECT_DOUBLE_EQ(area({0, 0, 1, 1, 1, 3, 3, 3, 3, 1, 1, 1}), -4.0);
  EXPECT_DOUBLE_EQ(area({1, 1, 1, 3, 3, 3, 3, 1}), 5.0);  // not closed: the last edge is lost
  const auto triangle = MakeFeature(1, {1, 1, 1, 3, 3, 3});
  EXPECT_DOUBLE_EQ(layer.CalcArea(triangle.get()), 2.0);
  EXPECT_FLOAT_EQ(layer.CalcCentroid(triangle.get()).Y, 7.0f / 3.0f);

  const auto line = MakeFeature(1, {1, 1, 2, 2});
  EXPECT_EQ(RaisedMessage<EImageFileError>([&] { layer.CalcArea(line.get()); }),
            "Area can not be calculated. Check file to make sure it includes a closed area.");
  EXPECT_EQ(RaisedMessage<EImageFileError>([&] { layer.CalcCentroid(line.get()); }),
            "The Centroid can not be calculated. make sure the file includes a closed area.");
  const auto flat = MakeFeature(1, {1, 1, 2, 2, 3, 3, 1, 1});
  EXPECT_NE(RaisedMessage<EImageFileError>([&] { layer.CalcCentroid(flat.get()); }).find("no area"),
            std::string::npos);
}

TEST(VectorGeometry, PointInPolyWithHolesInEitherSense) {
  TVector layer(ltPolygon);
  // Outer 1..5, a clockwise hole 2..3 and a counter-clockwise hole 3.5..4.5.
  layer.AddFeature(
      MakeFeature(1, {1, 1, 1, 5, 5, 5, 5, 1,   1,   1,   0,   0,   2,   2,   2,   3,   3,
                      3, 3, 2, 2, 2, 0, 0, 3.5, 3.5, 4.5, 3.5, 4.5, 4.5, 3.5, 4.5, 3.5, 3.5},
                  2));
  EXPECT_TRUE(layer.PointInPoly(4, 2, 0));
  EXPECT_TRUE(layer.PointInPoly(1, 3, 0));  // on the outer edge
  EXPECT_FALSE(layer.PointInPoly(2.5, 2.5, 0));
  EXPECT_FALSE(layer.PointInPoly(4, 4, 0));
  EXPECT_FALSE(layer.PointInPoly(2, 2.5, 0));  // on a hole's edge is in the hole
  EXPECT_FALSE(layer.PointInPoly(0.5, 0.5, 0));

  // Without hole bookkeeping the separator is a vertex like any other and its edges count.
  layer.AddFeature(MakeFeature(2, {1, 1, 1, 5, 5, 5, 5, 1, 1, 1, 0, 0, 2, 2, 2, 3, 3, 3, 2, 2}));
  EXPECT_TRUE(layer.PointInPoly(0.5, 0.5, 1));
  layer.GetFeature(1)->NumOfHoles = 1;
  EXPECT_FALSE(layer.PointInPoly(0.5, 0.5, 1));
  // Bookkeeping that does not match the vertices, and empty rings, hold nothing.
  layer.AddFeature(MakeFeature(3, {1, 1, 1, 5, 5, 5, 5, 1, 1, 1}, 1));
  layer.AddFeature(
      MakeFeature(4, {1, 1, 1, 5, 5, 5, 5, 1, 1, 1, 0, 0, 0, 0, 2, 2, 2, 3, 3, 3, 2, 2}, 2));
  layer.AddFeature(MakeFeature(5, {1, 1, 0, 0, 2, 2}, 1));
  for (const int32_t ind : {2, 3, 4}) {
    EXPECT_FALSE(layer.PointInPoly(2, 1.5, ind)) << ind;
  }

  EXPECT_THROW(layer.PointInPoly(2, 2, 5), EListError);
  layer.GetFeature(0)->Clear();
  EXPECT_EQ(RaisedMessage<EVectorFileError>([&] { layer.PointInPoly(2, 2, 0); }),
            "No points in feature");
  layer.LayerType = ltLine;
  EXPECT_EQ(RaisedMessage<EVectorFileError>([&] { layer.PointInPoly(2, 2, 1); }),
            "Layer type must be polygon for point in polygon test");
}

TEST(VectorGeometry, FindNearestAndSelection) {
  TVector points(ltPoint);
  EXPECT_EQ(points.SelectNearest(1, 1), -1);
  points.AddFeature(MakeFeature(1, {5, 5}));
  points.AddFeature(MakeFeature(2, {9, 9, 1, 0}));  // found by its second vertex
  points.AddFeature(MakeFeature(3, {-1, 0}));       // as near, but later
  EXPECT_EQ(points.FindNearest(0, 0), 1);
  EXPECT_EQ(points.FindNearest(5, 4), 0);
  EXPECT_EQ(points.SelectNearest(-1, 0.1f), 2);
  points.SelectFeature(0);
  EXPECT_TRUE(points[0]->Selected() && points[2]->Selected() && !points[1]->Selected());
  points.SelectAll();
  EXPECT_TRUE(points[1]->Selected());
  points.ClearSelect();
  EXPECT_FALSE(points[0]->Selected() || points[2]->Selected());
  for (const int32_t bad : {-1, 3}) {
    EXPECT_EQ(RaisedMessage<EVectorFileError>([&] { points.SelectFeature(bad); }),
              "Feature index out of range");
  }

  TVector polygons(ltPolygon);
  polygons.AddFeature(MakeFeature(1, {1, 1, 1, 5, 5, 5, 5, 1, 1, 1}));
  polygons.AddFeature(MakeFeature(2, {3, 3, 3, 7, 7, 7, 7, 3, 3, 3}));
  EXPECT_EQ(polygons.FindNearest(4, 4), 1);
  EXPECT_EQ(polygons.FindNearest(2, 2), 0);
  EXPECT_EQ(polygons.FindNearest(6, 6), 1);
  EXPECT_EQ(polygons.SelectNearest(20, 20), 0);
  EXPECT_TRUE(polygons[0]->Selected());
  polygons.LayerType = ltLine;
  EXPECT_EQ(polygons.FindNearest(6, 6), 0);
}

}  // namespace
}  // namespace zephra
