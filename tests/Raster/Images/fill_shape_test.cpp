// FillShape: which cells the polygons of a shapefile fill, with which value, and what it does to
// the image around the cells.

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <tuple>

#include "support/ImageSupport.h"
#include "support/ShapeSupport.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

using test::Box;

// A 10 x 10 raster over 0 .. 10 in both directions, every cell 0 without counting as new data:
// the cell at zero-based (c, r) is tested at the point (c, 10 - r).
std::unique_ptr<TRealImage> MakeImage(const std::string& fileName = "") {
  return test::MakeImage(test::GridHeader({.Width = 10, .Height = 10}), std::vector<float>(100),
                         fileName);
}

int32_t CountOf(const TAbstractImage& image, float value) {
  int32_t count = 0;
  for (int32_t i = 0; i < image.NumRecs; ++i) {
    count += image.BufferRead(i) == value ? 1 : 0;
  }
  return count;
}

TEST(FillShape, NorthWestCornersOnOrInsideARingAreFilled) {
  const test::TTempDir dir;
  auto image = MakeImage();
  image->FillShape(test::WriteShapefile(dir.File("box"), {{Box(2, 2, 6, 6)}}), {5.0f});
  // x 2 .. 6 is columns 2 .. 6; y 6 .. 2 is rows 4 .. 8, edges included.
  EXPECT_EQ(CountOf(*image, 5.0f), 25);
  EXPECT_EQ(std::tuple(image->ReadCR0(2, 4), image->ReadCR0(6, 8)), std::tuple(5.0f, 5.0f));
  EXPECT_EQ(std::tuple(image->ReadCR0(1, 4), image->ReadCR0(2, 9)), std::tuple(0.0f, 0.0f));

  // A box over most of a cell but not its north-west corner fills nothing.
  auto untouched = MakeImage();
  untouched->FillShape(test::WriteShapefile(dir.File("inner"), {{Box(2.05, 2.05, 2.95, 2.95)}}),
                       {});
  EXPECT_EQ(CountOf(*untouched, 0.0f), 100);
  EXPECT_TRUE(untouched->FirstWrite);

  // The whole extent: the south and east edges are never tested, every cell is.
  auto whole = MakeImage();
  whole->FillShape(test::WriteShapefile(dir.File("all"), {{Box(0, 0, 10, 10)}}), {});
  EXPECT_EQ(CountOf(*whole, -9990.0f), 100);
}

TEST(FillShape, PartsOfOneFeatureMakeHolesAndSeparatePartsFillOnTheirOwn) {
  const test::TTempDir dir;
  auto image = MakeImage();
  image->FillShape(
      test::WriteShapefile(dir.File("holes"), {{Box(1, 1, 9, 9), Box(3, 3, 7, 7), Box(4, 4, 6, 6)},
                                               {Box(0, 9.5, 0.5, 10), Box(0, 0.5, 0.5, 1.5)}}),
      {7.0f, 8.0f, 9.0f, 10.0f, 11.0f});
  // Between the outer and the middle ring: the outer part's value; inside the middle ring,
  // its edge and the innermost ring included: nothing.
  EXPECT_EQ(CountOf(*image, 7.0f), 81 - 25);
  EXPECT_EQ(CountOf(*image, 8.0f) + CountOf(*image, 9.0f), 0);
  EXPECT_EQ(std::tuple(image->ReadCR0(5, 5), image->ReadCR0(3, 5), image->ReadCR0(2, 5)),
            std::tuple(0.0f, 0.0f, 7.0f));
  // The second feature's two parts each fill their own corner cell with their own value.
  EXPECT_EQ(std::tuple(image->ReadCR0(0, 0), image->ReadCR0(0, 9)), std::tuple(10.0f, 11.0f));
  EXPECT_EQ(image->ReadCR0(9, 9), 7.0f);  // (9, 1), the outer ring's corner, counts as inside
}

TEST(FillShape, TheCurrentShapeWinsAnOverlapElseTheLowerIndex) {
  const test::TTempDir dir;
  auto image = MakeImage();
  // Shape 0 lies east, shape 1 west; the scan enters their overlap from the west.
  image->FillShape(
      test::WriteShapefile(dir.File("overlap"), {{Box(4, 0, 8, 5)}, {Box(0, 3, 6, 8)}}),
      {1.0f, 2.0f});
  EXPECT_EQ(image->ReadCR0(4, 5), 2.0f);  // in both: shape 1 is current since column 0
  EXPECT_EQ(image->ReadCR0(7, 5), 1.0f);
  EXPECT_EQ(image->ReadCR0(4, 8), 1.0f);  // below shape 1: the search finds shape 0
  EXPECT_EQ(image->ReadCR0(0, 4), 2.0f);
}

TEST(FillShape, MarksTheHeaderAndNeverReachesTheDisk) {
  const test::TTempDir dir;
  const std::string shapes = test::WriteShapefile(dir.File("box"), {{Box(2, 2, 6, 6)}});
  std::filesystem::create_directory(dir.Path() / "filled");
  auto image = MakeImage(dir.File("filled/f.img"));
  image->Header()->Categories = {"old"};
  image->FillShape(shapes, {});
  const TImageHeader* header = image->Header();
  EXPECT_EQ(std::tuple(header->Flag, header->FlagValue, header->FlagDef, header->Categories.size()),
            std::tuple(true, -9999.0f, "Missing Data", 0u));
  // -9990.0 is above the flag value: it counts as new data and in the range.
  EXPECT_EQ(std::tuple(image->MemOnly, image->FirstWrite, header->MinValue, header->MaxValue),
            std::tuple(true, false, -9990.0f, -9990.0f));
  image->Close();
  EXPECT_TRUE(std::filesystem::is_empty(dir.Path() / "filled"));

  // A flag value is stored but stays out of the range.
  auto flagged = MakeImage();
  flagged->FillShape(shapes, {-9999.0f});
  EXPECT_EQ(CountOf(*flagged, -9999.0f), 25);
  EXPECT_TRUE(flagged->FirstWrite);

  // The header changes come first: a missing file raises after them.
  auto missing = MakeImage(dir.File("missing.img"));
  EXPECT_THROW(missing->FillShape(dir.File("none.shp"), {}), EFOpenError);
  EXPECT_TRUE(missing->MemOnly);
  EXPECT_TRUE(missing->Header()->Flag);

  // A map of NULL shapes only fills nothing; a list too short for the map is refused.
  auto empty = MakeImage();
  empty->FillShape(test::WriteShapefile(dir.File("nulls"), {{}, {}}), {});
  EXPECT_EQ(CountOf(*empty, 0.0f), 100);
  EXPECT_THROW(
      MakeImage()->FillShape(
          test::WriteShapefile(dir.File("two"), {{Box(0, 0, 1, 1)}, {Box(2, 2, 3, 3)}}), {1.0f}),
      EArgumentException);
}

}  // namespace
}  // namespace zephra
