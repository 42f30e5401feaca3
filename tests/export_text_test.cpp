// The text and copy exporters: argument checks, exact formats, progress events, the copy's files.

#include <zephra/Common/zpExceptions.h>
#include <zephra/Export/zplArcInfoGridASCIIExporter.h>
#include <zephra/Export/zplXYZAsciiExporter.h>
#include <zephra/Export/zplZephraImageSaveCopyExporter.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "support/RaisedMessage.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

using test::RaisedMessage;

// A memory-only image of the given size over x 10 .. 10 + Width * 2, y 20 .. 20 + Height.
template <typename TImage>
std::unique_ptr<TImage> MakeImage(int32_t width, int32_t height, const std::string& refSystem) {
  TImageHeader header;
  header.Width = width;
  header.Height = height;
  header.Minx = 10.0f;
  header.Maxx = 10.0f + 2.0f * width;
  header.Miny = 20.0f;
  header.Maxy = 20.0f + height;
  header.ResolutionX = 2.0f;
  header.ResolutionY = 1.0f;
  header.SetRefSystem(refSystem);
  auto image = TImage::Create("", &header);
  image->MemOnly = true;
  return image;
}

using TProgress = std::vector<std::pair<int32_t, int32_t>>;

TProgress Export(IZephraImageExporter& exporter, const TAbstractImage& image,
                 const std::string& fileName) {
  TProgress events;
  exporter.ExportImage(&image, fileName,
                       [&](int32_t pos, int32_t max) { events.emplace_back(pos, max); });
  return events;
}

TEST(Exporters, CheckTheirArgumentsInOrderBeforeTouchingAnyFile) {
  const test::TTempDir dir;
  const auto image = MakeImage<TRealImage>(1, 1, "");
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
  EXPECT_TRUE(std::filesystem::is_empty(dir.Path()));
}

TEST(ArcInfoGridExporter, WritesHeaderFourDecimalsAndFlagsAsMinus9999) {
  const test::TTempDir dir;
  auto image = MakeImage<TRealImage>(3, 2, "");
  image->Header()->ResolutionY = 7.0f;  // cellsize shows the X resolution only
  const float cells[] = {1.5f, -9999.0f, 0.0f, -2.25f, -9990.0f, 12345.678f};
  for (int32_t i = 0; i < 6; ++i) {
    image->BufferWrite(i, cells[i]);
  }
  image->Buffer[1] = std::numeric_limits<float>::quiet_NaN();
  TArcInfoGridASCIIExporter exporter;
  const std::string name = dir.File("out.asc");
  EXPECT_EQ(Export(exporter, *image, name), (TProgress{{0, 1}, {1, 1}}));
  EXPECT_EQ(test::ReadFileBytes(name),
            "ncols        3\r\nnrows        2\r\nxllcorner    10.0000\r\n"
            "yllcorner    20.0000\r\ncellsize     2.0000\r\nNODATA_value -9999\r\n"
            "1.5000 -9999 0.0000\r\n-2.2500 -9990.0000 12345.6777\r\n");

  // Byte cells get four decimals too; a raster of no rows is the header alone, with no event.
  auto bytes = MakeImage<TByteImage>(2, 1, "");
  bytes->WriteCR(1, 1, 7.0f);
  Export(exporter, *bytes, name);
  EXPECT_NE(test::ReadFileBytes(name).find("\r\n7.0000 0.0000\r\n"), std::string::npos);
  EXPECT_TRUE(Export(exporter, *MakeImage<TRealImage>(4, 0, ""), name).empty());
  EXPECT_EQ(test::ReadFileBytes(name).substr(test::ReadFileBytes(name).size() - 20),
            "NODATA_value -9999\r\n");

  test::TScopedNumericLocale comma(test::kCommaLocale);
  ASSERT_TRUE(comma.Active());
  Export(exporter, *image, name);
  EXPECT_NE(test::ReadFileBytes(name).find("\r\n1,5000 -9999 0,0000\r\n"), std::string::npos);
}

TEST(XYZExporter, StepsEdgesByWholeCellsInTheRasterOwnYOrder) {
  const test::TTempDir dir;
  const std::string name = dir.File("out.xyz");
  TXYZAsciiExporter exporter;

  auto plane = MakeImage<TIntegerImage>(2, 2, "utm");
  for (int32_t i = 0; i < 4; ++i) {
    plane->BufferWrite(i, static_cast<float>(i - 1));
  }
  EXPECT_EQ(Export(exporter, *plane, name), (TProgress{{0, 1}, {1, 1}}));
  EXPECT_EQ(test::ReadFileBytes(name),
            "10.0000 20.0000 -1.0000\r\n12.0000 20.0000 0.0000\r\n"
            "10.0000 21.0000 1.0000\r\n12.0000 21.0000 2.0000\r\n");

  auto latlon = MakeImage<TRealImage>(1, 3, "latlon");
  latlon->Header()->Maxy = 90.0f;
  Export(exporter, *latlon, name);
  EXPECT_EQ(test::ReadFileBytes(name),
            "10.0000 90.0000 -9990.0000\r\n10.0000 89.0000 -9990.0000\r\n"
            "10.0000 88.0000 -9990.0000\r\n");

  // No columns: nothing written, but an event for every row; no rows: an empty file.
  EXPECT_EQ(Export(exporter, *MakeImage<TRealImage>(0, 2, ""), name), (TProgress{{0, 1}, {1, 1}}));
  EXPECT_EQ(test::ReadFileBytes(name), "");
  EXPECT_TRUE(Export(exporter, *MakeImage<TRealImage>(3, 0, ""), name).empty());
}

TEST(SaveCopyExporter, WritesTheCellBlockAndABinaryHeaderBesideIt) {
  const test::TTempDir dir;
  auto image = MakeImage<TIntegerImage>(3, 1, "latlon");
  image->Header()->FileType = ftAscii;
  image->Header()->FileTitle = "copied";
  image->WriteCR(1, 1, 5.0f);
  image->WriteCR(3, 1, -300.0f);
  TZephraImageSaveCopyExporter exporter;
  const std::string name = dir.File("copy.dat");
  EXPECT_TRUE(Export(exporter, *image, name).empty());
  EXPECT_EQ(image->Header()->FileType, ftAscii);  // the source's header is not changed

  EXPECT_EQ(test::ReadFileBytes(name), std::string("\x05\x00\x00\x00\xD4\xFE", 6));
  const auto header = TImageHeader::Open(dir.File("copy.doc"));
  EXPECT_EQ(header->FileType, ftBinary);
  EXPECT_EQ(header->DataType, dtInteger);
  EXPECT_EQ(header->FileTitle, "copied");
  EXPECT_TRUE(header->IsLatLon());
  EXPECT_EQ(header->Width, 3);

  const auto reopened = TIntegerImage::Open(name, false);
  EXPECT_EQ(reopened->ReadCR(3, 1), -300.0f);
}

}  // namespace
}  // namespace zephra
