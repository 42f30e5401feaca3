// The shape map: one polygon per ring, read through shapelib, and what it refuses.

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPolyMap.h>

#include <gtest/gtest.h>

#include <array>
#include <filesystem>

#include "support/RaisedMessage.h"
#include "support/ShapeSupport.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

using test::Box;

TEST(PolyMap, EachRingIsAShapeSharingItsRecordIdAndPartCount) {
  const test::TTempDir dir;
  const TPolyMap map(
      test::WriteShapefile(dir.File("map"), {{Box(0, 0, 4, 4)},
                                             {},  // a NULL shape is skipped
                                             {Box(10, 20, 30, 40), Box(15, 25, 16, 26)}}),
      0);
  ASSERT_EQ(map.GetShapeCount(), 3);
  const int32_t ids[] = {0, 2, 2}, parts[] = {1, 2, 2};
  for (const int32_t i : {0, 1, 2}) {
    EXPECT_EQ(map.GetShape(i)->ShapeId, ids[i]) << i;
    EXPECT_EQ(map.GetShape(i)->PartCount, parts[i]) << i;
  }
  const TSHPPolygon* hole = map.GetShape(2);
  EXPECT_EQ((std::array{hole->BoundsMinX, hole->BoundsMaxX, hole->BoundsMinY, hole->BoundsMaxY}),
            (std::array{15.0f, 16.0f, 25.0f, 26.0f}));
  EXPECT_EQ(hole->PointInPoly({15.5f, 25.5f}), 1);
  EXPECT_EQ(hole->PointInPoly({15.0f, 25.5f}), 0);
  EXPECT_THROW(map.GetShape(3), EListError);
  EXPECT_THROW(map.GetShape(-1), EListError);
  EXPECT_EQ(TPolyMap(test::WriteShapefile(dir.File("z"), {{Box(1, 1, 2, 2)}}, SHPT_POLYGONZ), 0)
                .GetShapeCount(),
            1);
}

TEST(PolyMap, RefusesMissingDamagedAndNonPolygonFilesNamingThem) {
  const test::TTempDir dir;
  const std::string missing = dir.File("missing.shp");
  EXPECT_NE(test::RaisedMessage<EFOpenError>([&] { TPolyMap(missing, 0); }).find(missing),
            std::string::npos);
  const std::string points = test::WriteShapefile(dir.File("points"), {{{{1.0, 2.0}}}}, SHPT_POINT);
  EXPECT_THROW(TPolyMap(points, 0), Exception);
  const std::string damaged =
      test::WriteShapefile(dir.File("damaged"), {{Box(0, 0, 4, 4)}, {Box(5, 5, 9, 9)}});
  std::filesystem::resize_file(damaged, std::filesystem::file_size(damaged) - 40);
  EXPECT_NE(test::RaisedMessage<EInOutError>([&] { TPolyMap(damaged, 0); }).find("damaged"),
            std::string::npos);
}

}  // namespace
}  // namespace zephra
