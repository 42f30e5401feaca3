#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

#include "support/RaisedMessage.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

using test::RaisedMessage;

// A memory-only width x height grid over x 10 .. 10 + 2 * width, y 20 - 2 * height .. 20 with
// the given cells.
template <typename TImage = TRealImage>
std::unique_ptr<TImage> Grid(int32_t width, int32_t height, const std::vector<float>& cells) {
  TImageHeader header;
  header.Width = width;
  header.Height = height;
  header.Minx = 10.0f;
  header.Maxx = 10.0f + 2.0f * static_cast<float>(width);
  header.Miny = 20.0f - 2.0f * static_cast<float>(height);
  header.Maxy = 20.0f;
  header.ResolutionX = header.ResolutionY = 2.0f;
  auto image = TImage::Create("", &header);
  image->MemOnly = true;
  for (size_t i = 0; i < cells.size(); ++i) {
    image->BufferWrite(static_cast<int32_t>(i), cells[i]);
  }
  return image;
}

// Every cell as it stands, four decimals, a blank behind each; nullVal only in the header.
TEST(DirectExport, ArcGridHasLowerCaseLabelsFiveDecimalsAndABlankBehindEveryCell) {
  test::TTempDir dir;
  const float nan = std::numeric_limits<float>::quiet_NaN();
  auto image = Grid(3, 2, {1.5f, -9999.0f, 0.0f, 123456.78125f, -0.25f, nan});
  image->ExportARCGrid(dir.File("g.asc"), -9999.0f);
  EXPECT_EQ(test::ReadFileBytes(dir.File("g.asc")),
            "ncols         3\r\nnrows         2\r\nxllcorner     10.00000\r\n"
            "yllcorner     16.00000\r\ncellsize      2.00000\r\nnodata_value  -9999.00000\r\n"
            "1.5000 -9999.0000 0.0000 \r\n123456.7812 -0.2500   NAN \r\n");
  EXPECT_EQ(image->BufferPointer, image->NumRecs);

  auto bytes = Grid<TByteImage>(2, 1, {255.0f, 7.0f});
  test::WriteFileBytes(dir.File("b.asc"), "an older, longer file that must go entirely");
  {
    test::TScopedNumericLocale comma(test::kCommaLocale);
    ASSERT_TRUE(comma.Active()) << test::kCommaLocale << " is not installed: run setup.sh";
    bytes->ExportARCGrid(dir.File("b.asc"), 0.5f);
  }
  EXPECT_EQ(test::ReadFileBytes(dir.File("b.asc")),
            "ncols         2\r\nnrows         1\r\nxllcorner     10,00000\r\n"
            "yllcorner     18,00000\r\ncellsize      2,00000\r\nnodata_value  0,50000\r\n"
            "255,0000 7,0000 \r\n");
}

// One line per cell at its south-west corner, rows from the north; nullVal changes nothing.
TEST(DirectExport, XyzGridGivesEachCellsSouthWestCorner) {
  test::TTempDir dir;
  Grid(1, 1, {0.5f})->ExportXYZGrid(dir.File("one.xyz"), 0.5f);
  EXPECT_EQ(test::ReadFileBytes(dir.File("one.xyz")), "10.0000 18.0000 0.5000\r\n");

  auto image = Grid(2, 2, {1.0f, 2.0f, -9999.0f, 4.25f});
  image->ExportXYZGrid(dir.File("g.xyz"), -9999.0f);
  EXPECT_EQ(test::ReadFileBytes(dir.File("g.xyz")),
            "10.0000 18.0000 1.0000\r\n12.0000 18.0000 2.0000\r\n"
            "10.0000 16.0000 -9999.0000\r\n12.0000 16.0000 4.2500\r\n");
  EXPECT_EQ(image->BufferPointer, 4);
}

TEST(DirectExport, EmptyNamesDoNothingAndFileFailuresPassOn) {
  test::TTempDir dir;
  auto image = Grid(2, 1, {1.0f, 2.0f});
  image->BufferPointer = 1;
  image->ExportARCGrid("", 0.0f);
  image->ExportXYZGrid("", 0.0f);
  image->ExportNodeGrid("", dir.File("out.txt"), 0.0f);
  image->ExportNodeGrid(dir.File("in.txt"), "", 0.0f);
  EXPECT_EQ(image->BufferPointer, 1);
  EXPECT_TRUE(std::filesystem::is_empty(dir.Path()));

  EXPECT_THROW(image->ExportARCGrid(dir.File("no/such/folder.asc"), 0.0f), EInOutError);
  EXPECT_THROW(image->ExportXYZGrid("/dev/full", 0.0f), EInOutError);
  // The output comes first, so a node list that can't be opened leaves it behind, empty.
  EXPECT_THROW(image->ExportNodeGrid(dir.File("missing.txt"), dir.File("out.txt"), 0.0f),
               EFOpenError);
  EXPECT_EQ(test::ReadFileBytes(dir.File("out.txt")), "");
}

// Tabs win over blanks, blanks around a coordinate are allowed, lines without the separator go
// through, lines whose two fields are no coordinates above -9999 are dropped, and a node off
// the map ends the export with the lines before it in the output.
TEST(DirectExport, NodeGridSamplesTheRasterAtEachNodeLine) {
  test::TTempDir dir;
  // 2 x 2 cells of size 2 over x 10 .. 14, y 16 .. 20.
  auto image = Grid(2, 2, {0.1f, 2.0f, 3.0f, -9999.0f});
  test::WriteFileBytes(dir.File("nodes.txt"),
                       "\xEF\xBB\xBFNodes\r\n"
                       "x y\r\n"
                       "\r\n"
                       "10 20\r\n"
                       "13.5\t 19\n"
                       "10\t17\r\n"
                       "a b\t10\r\n"
                       "12   17.5  \r\n"
                       "11 17 5\r\n"
                       "11 -9999\r\n"
                       "-10000 17\r\n"
                       "13\r\n"
                       "Station 4\r\n"
                       "12.5 16.5\r\n"
                       "20 18\r\n"
                       "10 20\r\n");
  image->BufferPointer = 3;
  EXPECT_EQ(RaisedMessage<EArgumentException>(
                [&] { image->ExportNodeGrid(dir.File("nodes.txt"), dir.File("out.txt"), 1.0f); }),
            "Lng is outside map bounds");
  EXPECT_EQ(test::ReadFileBytes(dir.File("out.txt")),
            "Nodes\r\n\r\n"
            "10 20      0.100000001490116\r\n"
            "13.5\t 19      2\r\n"
            "10\t17      3\r\n"
            "12   17.5        -9999\r\n"
            "13\r\n"
            "12.5 16.5      -9999\r\n");
  EXPECT_EQ(image->BufferPointer, 0);

  test::WriteFileBytes(dir.File("comma.txt"), "10,5 19,5\n10.5 19.5\n");
  test::TScopedNumericLocale comma(test::kCommaLocale);
  ASSERT_TRUE(comma.Active()) << test::kCommaLocale << " is not installed: run setup.sh";
  Grid(1, 1, {2.5f})->ExportNodeGrid(dir.File("comma.txt"), dir.File("comma.out"), 0.0f);
  EXPECT_EQ(test::ReadFileBytes(dir.File("comma.out")), "10,5 19,5      2,5\r\n");
}

}  // namespace
}  // namespace zephra
