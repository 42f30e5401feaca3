#include <zephra/Raster/Images/zplbSmoothing.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "support/ImageSupport.h"
#include "support/RaisedMessage.h"

namespace zephra {
namespace {

using test::RaisedMessage;

// A memory-only grid of width x height unit cells over x 0 .. width, y 0 .. height, whose cell i
// holds i.
std::unique_ptr<TRealImage> Grid(int32_t width, int32_t height) {
  return test::MakeImage(test::GridHeader({.Width = width, .Height = height}),
                         test::Iota(width * height));
}

// The window's cells as "col,row" pairs, to compare with a list written out by hand.
std::string Cells(const TSmoothingIndexList& list) {
  std::string text;
  for (const TSmoothingIndex& entry : list) {
    text += std::to_string(entry.Col) + "," + std::to_string(entry.Row) + " ";
  }
  return text;
}

// Corners and edges of a 10 x 5 grid: the columns wrap around east-west, rows off the grid drop
// out, and the mean is that of the cells visited.
TEST(Smoothing, WindowWrapsEastWestAndStopsAtTheNorthAndSouthEdges) {
  const auto image = Grid(10, 5);
  struct TWindow {
    int32_t c, r, level;
    float mean;
    const char* cells;
  };
  TSmoothingIndexList list;
  for (const TWindow& w : {
           TWindow{0, 0, 1, (9 + 0 + 1 + 19 + 10 + 11) / 6.0f, "9,0 0,0 1,0 9,1 0,1 1,1 "},
           TWindow{9, 0, 1, (8 + 9 + 0 + 18 + 19 + 10) / 6.0f, "8,0 9,0 0,0 8,1 9,1 0,1 "},
           TWindow{0, 4, 1, (39 + 30 + 31 + 49 + 40 + 41) / 6.0f, "9,3 0,3 1,3 9,4 0,4 1,4 "},
           TWindow{9, 4, 1, (38 + 39 + 30 + 48 + 49 + 40) / 6.0f, "8,3 9,3 0,3 8,4 9,4 0,4 "},
           TWindow{0, 2, 1, 210 / 9.0f, "9,1 0,1 1,1 9,2 0,2 1,2 9,3 0,3 1,3 "},
           TWindow{5, 0, 2, 15.0f, "3,0 4,0 5,0 6,0 7,0 3,1 4,1 5,1 6,1 7,1 3,2 4,2 5,2 6,2 7,2 "},
       }) {
    EXPECT_FLOAT_EQ(image->ReadCRWithSmoothing(w.c, w.r, w.level, &list), w.mean) << w.cells;
    EXPECT_EQ(Cells(list), w.cells);
  }

  // A full window in mid grid: 25 entries, row-major, the centre thirteenth.
  EXPECT_FLOAT_EQ(image->ReadCRWithSmoothing(4, 2, 2, &list), 24.0f);
  ASSERT_EQ(list.size(), 25u);
  EXPECT_EQ(std::tuple(list[12].Col, list[12].Row, list[12].Value), std::tuple(4, 2, 24.0f));
  EXPECT_EQ(std::tuple(list[24].Col, list[24].Row), std::tuple(6, 4));

  // A window wider than the grid visits columns twice, and they count twice.
  const auto narrow = Grid(3, 1);
  EXPECT_FLOAT_EQ(narrow->ReadCRWithSmoothing(1, 0, 2, &list), (2 + 0 + 1 + 2 + 0) / 5.0f);
  EXPECT_EQ(Cells(list), "2,0 0,0 1,0 2,0 0,0 ");
  // Beyond one wrap the column stays outside the row and the read runs into the row before;
  // only the linear index check stops it.
  const auto tall = Grid(3, 10);
  tall->ReadCRWithSmoothing(0, 6, 4, &list);
  EXPECT_EQ(std::tuple(list[0].Col, list[0].Row, list[0].Value), std::tuple(-1, 2, 5.0f));
  EXPECT_EQ(RaisedMessage<EImageFileError>([&] { tall->ReadCRWithSmoothing(0, 0, 4, &list); }),
            "Failed to read record from image at index -1 (Valid range: 0 - 29).");
}

// Only finite cells above -9990 count: flag values, the fill of a new image, NaN and infinities
// stay in the list but not in the mean.
TEST(Smoothing, NoDataCellsStayInTheListButNotInTheMean) {
  auto image = Grid(4, 3);
  image->WriteCR(1, 1, -9999.0f);
  image->WriteCR(2, 1, -9990.0f);
  image->WriteCR(1, 2, std::numeric_limits<float>::quiet_NaN());
  image->WriteCR(4, 2, std::numeric_limits<float>::infinity());
  image->WriteCR(4, 1, -9989.0f);  // just above the threshold: a value
  TSmoothingIndexList list;
  EXPECT_FLOAT_EQ(image->ReadCRWithSmoothing(0, 0, 1, &list), (-9989.0f + 5.0f) / 2.0f);
  EXPECT_EQ(list.size(), 6u);
  EXPECT_EQ(list[1].Value, -9999.0f);

  for (int32_t i = 0; i < image->NumRecs; ++i) {
    image->BufferWrite(i, i % 2 == 0 ? -9999.0f : -9990.0f);
  }
  EXPECT_EQ(image->ReadCRWithSmoothing(3, 2, 1, &list), -9990.0f);
  EXPECT_EQ(Cells(list), "2,1 3,1 0,1 2,2 3,2 0,2 ");
}

// Level 0 reads ReadCR(c, r), 1-based, and lists nothing; every higher level centres its window
// on the zero-based cell (c, r).
TEST(Smoothing, LevelZeroIsOneBasedAndHigherLevelsAreZeroBased) {
  const auto image = Grid(10, 5);
  TSmoothingIndexList list{TSmoothingIndex(7, 7, 7.0f)};
  EXPECT_EQ(image->ReadCRWithSmoothing(3, 2, 0, &list), 12.0f);
  EXPECT_TRUE(list.empty());
  EXPECT_EQ(list.ToString(), "None");
  EXPECT_FLOAT_EQ(image->ReadCRWithSmoothing(3, 2, 1, &list), 23.0f);
  EXPECT_EQ(std::tuple(list[4].Col, list[4].Row), std::tuple(3, 2));
  EXPECT_EQ(RaisedMessage<EArgumentException>([&] { image->ReadCRWithSmoothing(3, 2, -1, &list); }),
            "SmoothingLevel must be >= 0");
  EXPECT_EQ(
      RaisedMessage<EArgumentException>([&] { image->ReadXYWithSmoothing(3.5f, 2.5f, -1, &list); }),
      "SmoothingLevel must be >= 0");
  EXPECT_EQ(list.size(), 9u);  // left as it was
  EXPECT_EQ(RaisedMessage<EArgumentException>([&] { image->ReadCRWithSmoothing(0, 1, 0, &list); }),
            "ReadCR index values are 1 based");
  EXPECT_TRUE(list.empty());  // cleared before the read failed

  // Through a map point, the window is centred on the cell that ReadXY reads.
  EXPECT_FLOAT_EQ(image->ReadXYWithSmoothing(3.5f, 2.5f, 1, &list), image->ReadXY(3.5f, 2.5f));
  EXPECT_EQ(std::tuple(list[4].Col, list[4].Row, list[4].Value), std::tuple(3, 2, 23.0f));
  EXPECT_EQ(image->ReadXYWithSmoothing(3.5f, 2.5f, 0, &list), image->ReadXY(3.5f, 2.5f));
  EXPECT_TRUE(list.empty());
  list.emplace_back(1, 1, 1.0f);
  EXPECT_EQ(
      RaisedMessage<EArgumentException>([&] { image->ReadXYWithSmoothing(10.5f, 2.5f, 1, &list); }),
      "Lng is outside map bounds");
  EXPECT_TRUE(list.empty());
}

TEST(Smoothing, ListTextHasTwoDecimalsInTheLocalesForm) {
  TSmoothingIndexList list{TSmoothingIndex(9, 0, 1.5f), TSmoothingIndex(0, 12, -9999.0f)};
  EXPECT_EQ(list.ToString(), "(col:9, row:0, value: 1.50), (col:0, row:12, value: -9999.00)");
  test::TScopedNumericLocale comma(test::kCommaLocale);
  ASSERT_TRUE(comma.Active()) << test::kCommaLocale << " is not installed: run setup.sh";
  EXPECT_EQ(TSmoothingIndexList{TSmoothingIndex(1, 2, 0.125f)}.ToString(),
            "(col:1, row:2, value: 0,12)");
}

}  // namespace
}  // namespace zephra
