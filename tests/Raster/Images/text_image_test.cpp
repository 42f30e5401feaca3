// Text rasters: the data file of one number per line, and ArcInfo ASCII grids.

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <filesystem>
#include <random>
#include <tuple>

#include "support/RaisedMessage.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

using test::RaisedMessage;

TEST(AsciiImage, WrittenCellsReadBackBitForBit) {
  const test::TTempDir dir;
  const std::string name = dir.File("cells.txt");
  TImageHeader header;
  header.Width = 50;
  header.Height = 40;
  header.DataType = dtByte;  // a text raster is always real
  std::mt19937 random(7);
  std::vector<uint32_t> cells(2000);
  {
    auto image = TAsciiImage::Create(name, &header);
    EXPECT_EQ(image->Header()->FileType, ftAscii);
    for (int32_t i = 0; i < 2000; ++i) {
      const float value = std::bit_cast<float>(static_cast<uint32_t>(random()));
      cells[i] = std::bit_cast<uint32_t>(std::isfinite(value) ? value : i * 0.1f);
      image->BufferWrite(i, std::bit_cast<float>(cells[i]));
    }
    image->Close();
  }
  EXPECT_NE(test::ReadFileBytes(name).find("\r\n"), std::string::npos);
  const auto reopened = TAsciiImage::Open(name, true);
  EXPECT_EQ(std::tuple(reopened->ScaleImage(), reopened->Header()->DataType),
            std::tuple(1, dtReal));
  ASSERT_EQ(reopened->NumRecs, 2000);
  for (int32_t i = 0; i < 2000; ++i) {
    ASSERT_EQ(std::bit_cast<uint32_t>(reopened->BufferRead(i)), cells[i]) << i;
  }
}

TEST(AsciiImage, ReadsOneNumberPerLineWithAPointInEveryLocale) {
  const test::TTempDir dir;
  test::WriteFileBytes(dir.File("t.doc"),
                       "file type : ascii\r\ndata type : real\r\ncolumns : 2\r\nrows : 2\r\n");
  test::WriteFileBytes(dir.File("t.img"), "  1.5 rest of line\n\n-2e3\r\n0.25");
  test::TScopedNumericLocale comma(test::kCommaLocale);
  ASSERT_TRUE(comma.Active());
  const auto image = TAsciiImage::Open(dir.File("t.img"), false);
  EXPECT_EQ(image->ReadRect(1, 1, 2, 2),
            (std::vector<TSingleArray>{{1.5f, -2000.0f}, {0.25f, 0.0f}}));  // the file ended early
  EXPECT_TRUE(image->FirstWrite);

  test::WriteFileBytes(dir.File("t.img"), "1,5\n2\n3\n4\n");
  EXPECT_THROW(TAsciiImage::Open(dir.File("t.img"), false), EConvertError);
  EXPECT_EQ(test::ReadFileBytes(dir.File("t.img")), "1,5\n2\n3\n4\n");  // nothing written
}

TEST(ArcGridImage, ReadsHeaderLinesByPositionAndCellsAsOneTokenStream) {
  const test::TTempDir dir;
  const std::string name = dir.File("grid.asc");
  test::WriteFileBytes(name,
                       "NCOLS 3\r\nZeilen 2\r\nxll 10.5\r\nyll -4\r\nZelle 0.5\r\n"
                       "keinwert -9999\r\n1 2\t-9999\n 4.5e1   5 -6\n");
  const auto grid = TArcGridImage::Open(name, true);
  const TImageHeader* h = grid->Header();
  EXPECT_EQ(std::tuple(h->Width, h->Height, h->Minx, h->Maxx, h->Maxy, h->ResolutionY),
            std::tuple(3, 2, 10.5f, 12.0f, -3.0f, 0.5f));
  EXPECT_EQ(std::tuple(h->FlagValue, h->Flag, h->IsPlane(), h->RefUnits),
            std::tuple(-9999.0f, false, true, "unknown"));
  EXPECT_EQ(std::tuple(h->MinValue, h->MaxValue), std::tuple(-6.0f, 45.0f));  // no-data left out
  EXPECT_EQ(grid->ReadCR(3, 1), -9999.0f);
  EXPECT_EQ(grid->ReadCR(1, 2), 45.0f);
  EXPECT_EQ(std::tuple(grid->FileName(), grid->ScaleImage(), grid->ImageTypeID()),
            std::tuple("", 0, "ARCGRID"));

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
  test::WriteFileBytes(name, "ncols 3\nnrows 2\nx 10.5\ny -4\nc 0.5\nn -9999\n1 2 3\n4 5,6 7\n");
  EXPECT_EQ(RaisedMessage<Exception>([&] { TArcGridImage::Open(name, false); }),
            "Error reading ArcGrid data at 2,2\rMessage: '5,6' is not a valid floating point "
            "value");
  // A tab instead of a blank hides the value; a count that is no number opens an empty grid.
  test::WriteFileBytes(name, "ncols 2\nnrows x\nxllcorner\t5\nyllcorner 0\ncellsize 1\nn 0\n");
  const auto empty = TArcGridImage::Open(name, false);
  EXPECT_EQ(std::tuple(empty->NumRecs, empty->Header()->Minx), std::tuple(0, -999.0f));

  test::WriteFileBytes(name, "ncols -2\nnrows -3\n");
  EXPECT_EQ(RaisedMessage<Exception>([&] { TArcGridImage::Open(name, false); }),
            "Error reading ArcGrid data at -1,-1\rMessage: Error reading Ascii Grid File. Read 0 "
            "record, expected to read 6 records");
  for (const std::string text : {"ncols -2\nnrows 3\n", "ncols 100000\nnrows 100000\n"}) {
    test::WriteFileBytes(name, text);
    EXPECT_THROW(TArcGridImage::Open(name, false), EImageFileError);
  }
  EXPECT_EQ(
      RaisedMessage<EImageFileError>([&] { TArcGridImage::Open(dir.File("none.asc"), false); }),
      dir.File("none.asc") + " does not exist.");
}

// A grid of megabytes is parsed on several cores: every cell, the range above the flag, the
// cells a short text leaves at 0.0, tokens past the cells left unread, and of two bad cells far
// apart the first one named at its column and row.
TEST(ArcGridImage, LargeGridsReadAsOneTokenStream) {
  const test::TTempDir dir;
  const std::string name = dir.File("large.asc");
  const int32_t side = 700, all = side * side;
  const auto cellAt = [](int32_t i) {
    return i % 101 == 0 ? -9999.0f : static_cast<float>(i % 4099) * 0.25f - 400.0f;
  };
  const auto write = [&](int32_t cells, const std::string& tail, std::vector<int32_t> bad = {}) {
    std::string text = "ncols 700\nnrows 700\nxllcorner 0\nyllcorner 0\ncellsize 1\n";
    text += "NODATA_value -9999\n";
    for (int32_t i = 0; i < cells; ++i) {
      text += std::find(bad.begin(), bad.end(), i) != bad.end() ? "1,5" : std::to_string(cellAt(i));
      text += i % side == side - 1 ? "\r\n" : " ";
    }
    test::WriteFileBytes(name, text + tail);
  };
  for (const int32_t cells : {all, all - 1000}) {
    SCOPED_TRACE(cells);
    write(cells, cells == all ? "junk after the cells\n" : "");
    const auto grid = TArcGridImage::Open(name, false);
    ASSERT_EQ(grid->NumRecs, all);
    float lo = cells < all ? 0.0f : INFINITY, hi = cells < all ? 0.0f : -INFINITY;
    for (int32_t i = 0; i < all; ++i) {
      const float expected = i < cells ? cellAt(i) : 0.0f;
      ASSERT_EQ(grid->BufferRead(i), expected) << "cell " << i;
      if (expected > grid->Header()->FlagValue) {
        lo = std::min(lo, expected);
        hi = std::max(hi, expected);
      }
    }
    EXPECT_EQ(std::tuple(grid->Header()->MinValue, grid->Header()->MaxValue), std::tuple(lo, hi));
  }
  for (const auto& [first, second] : {std::pair{1000, all * 3 / 4}, {all * 3 / 4, all - 10}}) {
    write(all, "", {first, second});
    EXPECT_EQ(RaisedMessage<Exception>([&] { TArcGridImage::Open(name, false); }),
              "Error reading ArcGrid data at " + std::to_string(first % side + 1) + "," +
                  std::to_string(first / side + 1) +
                  "\rMessage: '1,5' is not a valid floating point value");
  }
}

}  // namespace
}  // namespace zephra
