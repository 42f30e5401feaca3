// The shape map: one polygon per ring, read through shapelib, and what it refuses.

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPolyMap.h>

#include <gtest/gtest.h>

#include <filesystem>

#include "support/ShapeSupport.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

TEST(PolyMap, EachRingIsAShapeSharingItsRecordIdAndPartCount) {
  const test::TTempDir dir;
  const std::string file = test::WriteShapefile(
      dir.File("map"), {{test::Box(0, 0, 4, 4)},
                        {},  // a NULL shape is skipped
                        {test::Box(10, 20, 30, 40), test::Box(15, 25, 16, 26)}});
  TPolyMap map(file, 0);
  ASSERT_EQ(map.GetShapeCount(), 3);
  EXPECT_EQ(map.GetShape(0)->ShapeId, 0);
  EXPECT_EQ(map.GetShape(0)->PartCount, 1);
  for (const int32_t index : {1, 2}) {
    EXPECT_EQ(map.GetShape(index)->ShapeId, 2);
    EXPECT_EQ(map.GetShape(index)->PartCount, 2);
  }
  const TSHPPolygon* hole = map.GetShape(2);
  EXPECT_EQ(hole->BoundsMinX, 15.0f);
  EXPECT_EQ(hole->BoundsMaxX, 16.0f);
  EXPECT_EQ(hole->BoundsMinY, 25.0f);
  EXPECT_EQ(hole->BoundsMaxY, 26.0f);
  EXPECT_GT(hole->PointInPoly({15.5f, 25.5f}), 0);
  EXPECT_EQ(hole->PointInPoly({15.0f, 25.5f}), 0);  // on the edge
  EXPECT_LT(hole->PointInPoly({14.9f, 25.5f}), 0);
  EXPECT_THROW(map.GetShape(3), EListError);
  EXPECT_THROW(map.GetShape(-1), EListError);

  const std::string z =
      test::WriteShapefile(dir.File("z"), {{test::Box(1, 1, 2, 2)}}, SHPT_POLYGONZ);
  EXPECT_EQ(TPolyMap(z, 0).GetShapeCount(), 1);
}

TEST(PolyMap, RefusesMissingDamagedAndNonPolygonFilesNamingThem) {
  const test::TTempDir dir;
  const std::string missing = dir.File("missing.shp");
  try {
    TPolyMap map(missing, 0);
    FAIL() << "a missing file opened";
  } catch (const EFOpenError& error) {
    EXPECT_NE(error.Message().find(missing), std::string::npos) << error.Message();
  }

  const std::string points = test::WriteShapefile(dir.File("points"), {{{{1.0, 2.0}}}}, SHPT_POINT);
  EXPECT_THROW(TPolyMap(points, 0), Exception);

  const std::string damaged =
      test::WriteShapefile(dir.File("damaged"), {{test::Box(0, 0, 4, 4)}, {test::Box(5, 5, 9, 9)}});
  std::filesystem::resize_file(damaged, std::filesystem::file_size(damaged) - 40);
  try {
    TPolyMap map(damaged, 0);
    FAIL() << "a truncated file read";
  } catch (const Exception& error) {
    EXPECT_NE(error.Message().find("damaged"), std::string::npos) << error.Message();
  }
}

}  // namespace
}  // namespace zephra
