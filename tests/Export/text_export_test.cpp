// The text writers of a raster, its own direct exports and the exporters: exact formats, progress
// events, argument checks, and the copy exporter's files.

#include <zephra/Common/zpExceptions.h>
#include <zephra/Export/zplArcInfoGridASCIIExporter.h>
#include <zephra/Export/zplXYZAsciiExporter.h>
#include <zephra/Export/zplZephraImageSaveCopyExporter.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <initializer_list>
#include <limits>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "support/ImageSupport.h"
#include "support/RaisedMessage.h"

namespace zephra {
namespace {

using test::RaisedMessage;
using TProgress = std::vector<std::pair<int32_t, int32_t>>;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// Square cells of 2 over x 10 .. 10 + 2 width, y 20 - 2 height .. 20.
template <typename TImage = TRealImage>
std::unique_ptr<TImage> Square(int32_t width, int32_t height, const std::vector<float>& cells) {
  return test::MakeImage<TImage>(
      test::GridHeader({width, height, 10.0f, 20.0f - 2.0f * height, 2.0f, 2.0f}), cells);
}

// Cells of 2 x 1 over x 10 .. 10 + 2 width, y 20 .. 20 + height.
template <typename TImage = TRealImage>
std::unique_ptr<TImage> Oblong(int32_t width, int32_t height, const std::vector<float>& cells = {},
                               const std::string& refSystem = "") {
  TImageHeader header = test::GridHeader({width, height, 10.0f, 20.0f, 2.0f, 1.0f});
  header.SetRefSystem(refSystem);
  return test::MakeImage<TImage>(header, cells);
}

TProgress Export(IZephraImageExporter& exporter, const TAbstractImage& image,
                 const std::string& fileName) {
  TProgress events;
  exporter.ExportImage(&image, fileName,
                       [&](int32_t pos, int32_t max) { events.emplace_back(pos, max); });
  return events;
}

// The direct exports write every cell as it stands; the grid exporter writes flags as -9999 and
// its cellsize is the X resolution. Each full text is a golden file.
TEST(TextExport, FullTextsOfTheGridAndXyzWriters) {
  const test::TTempDir dir;
  const std::string name = dir.File("out.txt");
  auto direct = Square(3, 2, {1.5f, -9999.0f, 0.0f, 123456.78125f, -0.25f, kNaN});
  direct->ExportARCGrid(name, -9999.0f);
  EXPECT_EQ(test::ReadFileBytes(name), test::GoldenText("grid_direct.asc"));
  EXPECT_EQ(direct->BufferPointer, direct->NumRecs);
  auto xyz = Square(2, 2, {1.0f, 2.0f, -9999.0f, 4.25f});
  xyz->ExportXYZGrid(name, -9999.0f);  // the cells' south-west corners; nullVal changes nothing
  EXPECT_EQ(test::ReadFileBytes(name), test::GoldenText("xyz_direct.xyz"));
  EXPECT_EQ(xyz->BufferPointer, 4);

  auto grid = Oblong(3, 2, {1.5f, kNaN, 0.0f, -2.25f, -9990.0f, 12345.678f});
  grid->Header()->ResolutionY = 7.0f;
  TArcInfoGridASCIIExporter gridExporter;
  EXPECT_EQ(Export(gridExporter, *grid, name), (TProgress{{0, 1}, {1, 1}}));
  EXPECT_EQ(test::ReadFileBytes(name), test::GoldenText("grid_exporter.asc"));
  // The XYZ exporter steps by whole cells from the edge in the raster's own Y order.
  TXYZAsciiExporter xyzExporter;
  EXPECT_EQ(Export(xyzExporter, *Oblong<TIntegerImage>(2, 2, {-1, 0, 1, 2}, "utm"), name),
            (TProgress{{0, 1}, {1, 1}}));
  EXPECT_EQ(test::ReadFileBytes(name), test::GoldenText("xyz_plane.xyz"));
  auto latlon = Oblong(1, 3, {}, "latlon");
  latlon->Header()->Maxy = 90.0f;
  Export(xyzExporter, *latlon, name);
  EXPECT_EQ(test::ReadFileBytes(name), test::GoldenText("xyz_latlon.xyz"));

  // Byte cells get four decimals too; no rows: the header alone, or an empty file, and no event.
  auto bytes = Oblong<TByteImage>(2, 1, {7.0f, 0.0f});
  Export(gridExporter, *bytes, name);
  EXPECT_NE(test::ReadFileBytes(name).find("\r\n7.0000 0.0000\r\n"), std::string::npos);
  EXPECT_TRUE(Export(gridExporter, *Oblong(4, 0), name).empty());
  EXPECT_EQ(test::ReadFileBytes(name).substr(test::ReadFileBytes(name).size() - 20),
            "NODATA_value -9999\r\n");
  EXPECT_TRUE(Export(xyzExporter, *Oblong(3, 0), name).empty());
  // No columns: nothing written, but an event for every row.
  EXPECT_EQ(Export(xyzExporter, *Oblong(0, 2), name), (TProgress{{0, 1}, {1, 1}}));
  EXPECT_EQ(test::ReadFileBytes(name), "");
}

// A typed raster of many blocks is formatted on several cores; a text raster, which is not
// typed, on the calling thread alone: the same cells give the same files and the same events.
TEST(TextExport, RowsFormattedOnSeveralCoresMatchOneThread) {
  const test::TTempDir dir;
  const int32_t width = 500, height = 400;
  std::vector<float> cells(static_cast<size_t>(width) * height);
  for (size_t i = 0; i < cells.size(); ++i) {
    cells[i] = i % 89 == 0 ? -9999.0f : static_cast<float>(i % 7919) / 8.0f - 300.0f;
  }
  TProgress expected;
  for (int32_t r = 0; r < height; ++r) {
    expected.emplace_back(r, height - 1);
  }
  const auto typed = Square(width, height, cells);
  const auto text = Square<TAsciiImage>(width, height, cells);
  TArcInfoGridASCIIExporter grid;
  TXYZAsciiExporter xyz;
  for (IZephraImageExporter* exporter : std::initializer_list<IZephraImageExporter*>{&grid, &xyz}) {
    EXPECT_EQ(Export(*exporter, *typed, dir.File("typed.txt")), expected);
    EXPECT_EQ(Export(*exporter, *text, dir.File("text.txt")), expected);
    EXPECT_EQ(test::ReadFileBytes(dir.File("typed.txt")),
              test::ReadFileBytes(dir.File("text.txt")));
  }
}

TEST(TextExport, NumbersFollowTheLocaleSeparator) {
  const test::TTempDir dir;
  const std::string name = dir.File("out.txt");
  test::WriteFileBytes(dir.File("nodes.txt"), "10,5 19,5\n10.5 19.5\n");
  test::WriteFileBytes(name, "an older, longer file that must go entirely");
  const test::TScopedNumericLocale comma(test::kCommaLocale);
  ASSERT_TRUE(comma.Active()) << test::kCommaLocale << " is not installed: run setup.sh";
  Square<TByteImage>(2, 1, {255.0f, 7.0f})->ExportARCGrid(name, 0.5f);
  EXPECT_EQ(test::ReadFileBytes(name),
            "ncols         2\r\nnrows         1\r\nxllcorner     10,00000\r\n"
            "yllcorner     18,00000\r\ncellsize      2,00000\r\nnodata_value  0,50000\r\n"
            "255,0000 7,0000 \r\n");
  TArcInfoGridASCIIExporter exporter;
  Export(exporter, *Oblong(3, 1, {1.5f, kNaN, 0.0f}), name);
  EXPECT_NE(test::ReadFileBytes(name).find("\r\n1,5000 -9999 0,0000\r\n"), std::string::npos);
  Square(1, 1, {2.5f})->ExportNodeGrid(dir.File("nodes.txt"), name, 0.0f);
  EXPECT_EQ(test::ReadFileBytes(name), "10,5 19,5      2,5\r\n");
}

// Tabs win over blanks, blanks around a coordinate are allowed, lines without the separator go
// through, lines whose two fields are no coordinates above -9999 are dropped, and a node off
// the map ends the export with the lines before it in the output.
TEST(TextExport, NodeGridSamplesTheRasterAtEachNodeLine) {
  const test::TTempDir dir;
  const std::string nodes = std::string(ZEPHRA_TEST_DATA_DIR) + "/nodes_in.txt";
  auto image = Square(2, 2, {0.1f, 2.0f, 3.0f, -9999.0f});
  image->BufferPointer = 3;
  EXPECT_EQ(RaisedMessage<EArgumentException>(
                [&] { image->ExportNodeGrid(nodes, dir.File("out.txt"), 1.0f); }),
            "Lng is outside map bounds");
  EXPECT_EQ(test::ReadFileBytes(dir.File("out.txt")), test::GoldenText("nodes_out.txt"));
  EXPECT_EQ(image->BufferPointer, 0);
}

TEST(TextExport, BadArgumentsAndFileFailures) {
  const test::TTempDir dir;
  const auto image = Square(2, 1, {1.0f, 2.0f});
  TArcInfoGridASCIIExporter grid;
  TXYZAsciiExporter xyz;
  TZephraImageSaveCopyExporter copy;
  for (IZephraImageExporter* exporter : std::vector<IZephraImageExporter*>{&grid, &xyz, &copy}) {
    EXPECT_EQ(
        RaisedMessage<EArgumentNullException>([&] { exporter->ExportImage(nullptr, "", nullptr); }),
        "Source");
    EXPECT_EQ(
        RaisedMessage<EArgumentException>([&] { exporter->ExportImage(image.get(), "", nullptr); }),
        "FileName");
  }
  // The direct exports do nothing for an empty name.
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

TEST(SaveCopyExporter, WritesTheCellBlockAndABinaryHeaderBesideIt) {
  const test::TTempDir dir;
  auto image = Oblong<TIntegerImage>(3, 1, {5.0f, 0.0f, -300.0f}, "latlon");
  image->Header()->FileType = ftAscii;
  image->Header()->FileTitle = "copied";
  TZephraImageSaveCopyExporter exporter;
  const std::string name = dir.File("copy.dat");
  EXPECT_TRUE(Export(exporter, *image, name).empty());
  EXPECT_EQ(image->Header()->FileType, ftAscii);  // the source's header is not changed

  EXPECT_EQ(test::ReadFileBytes(name), std::string("\x05\x00\x00\x00\xD4\xFE", 6));
  const auto header = TImageHeader::Open(dir.File("copy.doc"));
  EXPECT_EQ(std::tuple(header->FileType, header->DataType, header->Width),
            std::tuple(ftBinary, dtInteger, 3));
  EXPECT_EQ(header->FileTitle, "copied");
  EXPECT_TRUE(header->IsLatLon());
  EXPECT_EQ(TIntegerImage::Open(name, false)->ReadCR(3, 1), -300.0f);
}

}  // namespace
}  // namespace zephra
