// Text rasters: the data file of one number per line, and ArcInfo ASCII grids.

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <filesystem>
#include <random>

#include "support/RaisedMessage.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

const std::string kGridHeader =
    "ncols 3\r\nnrows 2\r\nxllcorner 10.5\r\nyllcorner -4\r\ncellsize 0.5\r\nNODATA_value "
    "-9999\r\n";

TEST(AsciiImage, WrittenCellsReadBackBitForBit) {
  const test::TTempDir dir;
  const std::string name = dir.File("cells.txt");
  TImageHeader header;
  header.Width = 50;
  header.Height = 40;
  header.DataType = dtByte;  // a text raster is always real
  std::mt19937 random(7);
  std::uniform_int_distribution<uint32_t> bits;
  std::vector<float> cells;
  {
    auto image = TAsciiImage::Create(name, &header);
    EXPECT_EQ(image->Header()->FileType, ftAscii);
    for (int32_t i = 0; i < image->NumRecs; ++i) {
      float value = std::bit_cast<float>(bits(random));
      if (!std::isfinite(value)) {
        value = static_cast<float>(i) * 0.1f;
      }
      cells.push_back(value);
      image->BufferWrite(i, value);
    }
    image->Close();
  }
  EXPECT_NE(test::ReadFileBytes(name).find("\r\n"), std::string::npos);
  const auto reopened = TAsciiImage::Open(name, true);
  EXPECT_EQ(reopened->ScaleImage(), 1);
  ASSERT_EQ(reopened->NumRecs, 2000);
  for (int32_t i = 0; i < 2000; ++i) {
    ASSERT_EQ(std::bit_cast<uint32_t>(reopened->BufferRead(i)), std::bit_cast<uint32_t>(cells[i]))
        << i;
  }
  EXPECT_EQ(reopened->Header()->DataType, dtReal);
}

TEST(AsciiImage, ReadsOneNumberPerLineWithAPointInEveryLocale) {
  const test::TTempDir dir;
  test::WriteFileBytes(dir.File("t.doc"),
                       "file type : ascii\r\ndata type : real\r\ncolumns : 2\r\nrows : 2\r\n");
  test::WriteFileBytes(dir.File("t.img"), "  1.5 rest of line\n\n-2e3\r\n0.25");
  test::TScopedNumericLocale comma(test::kCommaLocale);
  ASSERT_TRUE(comma.Active());
  const auto image = TAsciiImage::Open(dir.File("t.img"), false);
  EXPECT_EQ(image->ReadCR0(0, 0), 1.5f);
  EXPECT_EQ(image->ReadCR0(1, 0), -2000.0f);
  EXPECT_EQ(image->ReadCR0(0, 1), 0.25f);
  EXPECT_EQ(image->ReadCR0(1, 1), 0.0f);  // the file ended early
  EXPECT_TRUE(image->FirstWrite);

  test::WriteFileBytes(dir.File("t.img"), "1,5\n2\n3\n4\n");
  EXPECT_THROW(TAsciiImage::Open(dir.File("t.img"), false), EConvertError);
  // Nothing was written by the failed open.
  EXPECT_EQ(test::ReadFileBytes(dir.File("t.img")), "1,5\n2\n3\n4\n");
}

TEST(ArcGridImage, ReadsHeaderLinesByPositionAndCellsAsOneTokenStream) {
  const test::TTempDir dir;
  const std::string name = dir.File("grid.asc");
  test::WriteFileBytes(name,
                       "NCOLS 3\r\nZeilen 2\r\nxll 10.5\r\nyll -4\r\nZelle 0.5\r\n"
                       "keinwert -9999\r\n1 2\t-9999\n 4.5e1   5 -6\n");
  const auto grid = TArcGridImage::Open(name, true);
  const TImageHeader* header = grid->Header();
  EXPECT_EQ(header->Width, 3);
  EXPECT_EQ(header->Height, 2);
  EXPECT_EQ(header->Minx, 10.5f);
  EXPECT_EQ(header->Maxx, 12.0f);
  EXPECT_EQ(header->Maxy, -3.0f);
  EXPECT_EQ(header->ResolutionY, 0.5f);
  EXPECT_EQ(header->FlagValue, -9999.0f);
  EXPECT_FALSE(header->Flag);
  EXPECT_TRUE(header->IsPlane());
  EXPECT_EQ(header->RefUnits, "unknown");
  EXPECT_EQ(header->MinValue, -6.0f);  // the no-data cell stays out of the range
  EXPECT_EQ(header->MaxValue, 45.0f);
  EXPECT_EQ(grid->ReadCR(3, 1), -9999.0f);
  EXPECT_EQ(grid->ReadCR(1, 2), 45.0f);
  EXPECT_EQ(grid->FileName(), "");
  EXPECT_EQ(grid->ScaleImage(), 0);
  EXPECT_EQ(grid->ImageTypeID(), "ARCGRID");

  // Changes stay in memory: the grid never writes, not even a .doc.
  const auto before = test::ReadFileBytes(name);
  grid->WriteCR(1, 1, 100.0f);
  EXPECT_EQ(grid->Header()->MaxValue, 100.0f);
  grid->Close();
  EXPECT_EQ(test::ReadFileBytes(name), before);
  EXPECT_FALSE(std::filesystem::exists(dir.File("grid.doc")));
}

TEST(ArcGridImage, ReportsBadCellsAtTheirPositionAndOddHeadersQuietly) {
  const test::TTempDir dir;
  const std::string name = dir.File("grid.asc");
  test::WriteFileBytes(name, kGridHeader + "1 2 3\n4 5,6 7\n");
  EXPECT_EQ(test::RaisedMessage<Exception>([&] { TArcGridImage::Open(name, false); }),
            "Error reading ArcGrid data at 2,2\rMessage: '5,6' is not a valid floating point "
            "value");

  // A tab instead of a blank hides the value; a count that is no number opens an empty grid.
  test::WriteFileBytes(name,
                       "ncols 2\nnrows x\nxllcorner\t5\nyllcorner 0\ncellsize 1\n"
                       "NODATA_value 0\n");
  const auto empty = TArcGridImage::Open(name, false);
  EXPECT_EQ(empty->NumRecs, 0);
  EXPECT_EQ(empty->Header()->Minx, -999.0f);

  test::WriteFileBytes(name, "ncols -2\nnrows -3\n");
  EXPECT_EQ(test::RaisedMessage<Exception>([&] { TArcGridImage::Open(name, false); }),
            "Error reading ArcGrid data at -1,-1\rMessage: Error reading Ascii Grid File. Read 0 "
            "record, expected to read 6 records");
  test::WriteFileBytes(name, "ncols -2\nnrows 3\n");
  EXPECT_THROW(TArcGridImage::Open(name, false), EImageFileError);
  test::WriteFileBytes(name, "ncols 100000\nnrows 100000\n");
  EXPECT_THROW(TArcGridImage::Open(name, false), EImageFileError);
  EXPECT_EQ(test::RaisedMessage<EImageFileError>(
                [&] { TArcGridImage::Open(dir.File("none.asc"), false); }),
            dir.File("none.asc") + " does not exist.");
}

}  // namespace
}  // namespace zephra
