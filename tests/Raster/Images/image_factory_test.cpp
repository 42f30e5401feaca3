// Opening by file name alone, the range refresh, and the image factory's class table.

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <tuple>

#include "support/ImageSupport.h"
#include "support/RaisedMessage.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

// A 4 x 3 real raster with cells -5000, -1, 0, 1 .. 9, a range of 100 .. 200 and the given flag
// line, last written an hour ago, or four and a half minutes ago if fresh.
std::string WriteAged(const test::TTempDir& dir, const std::string& base,
                      const std::string& flagLine, bool fresh = false) {
  std::vector<float> cells = test::Iota(10);
  cells.insert(cells.begin(), {-5000.0f, -1.0f});
  const std::string name = test::WriteRaster(
      dir, base, cells, {.Extra = "min. value : 100\r\nmax. value : 200\r\n" + flagLine});
  std::filesystem::last_write_time(name,
                                   std::filesystem::file_time_type::clock::now() -
                                       (fresh ? std::chrono::seconds(270) : std::chrono::hours(1)));
  return name;
}

void ExpectRange(const TAbstractImage& image, float min, float max) {
  EXPECT_EQ(image.Header()->MinValue, min);
  EXPECT_EQ(image.Header()->MaxValue, max);
}

TEST(GenericImage, RefreshesTheRangeAboveTheRightLowerBound) {
  const test::TTempDir dir;
  const std::string plain = WriteAged(dir, "plain", "");
  ExpectRange(*TGenericImage::Open(plain, false), -5000.0f, 9.0f);  // bound -9990
  // With no flag line FlagValue is 0: the zoomed open leaves zero and negatives out.
  ExpectRange(*TGenericImage::OpenZoomed(plain, 0, 4, 0, 3), 1.0f, 9.0f);

  const std::string none = WriteAged(dir, "none", "flag value : none\r\n");
  ExpectRange(*TGenericImage::OpenZoomed(none, 0, 4, 0, 3), -1.0f, 9.0f);  // bound -999
  const std::string flagged = WriteAged(dir, "flagged", "flag value : -9999\r\n");
  ExpectRange(*TGenericImage::Open(flagged, false), -5000.0f, 9.0f);

  // A zoomed image's refreshed range reaches the file's header too.
  const auto zoomed = TGenericImage::OpenZoomed(flagged, 0, 2, 1, 3);
  EXPECT_TRUE(zoomed->Zoomed());
  ExpectRange(*zoomed, -5000.0f, 3.0f);

  // No refresh for a hillshade anywhere in the path, nor for a file written lately.
  std::filesystem::create_directory(dir.File("HillShades"));
  const std::string shade = WriteAged(dir, "HillShades/a", "");
  ExpectRange(*TGenericImage::Open(shade, false), 100.0f, 200.0f);
  ExpectRange(*TGenericImage::Open(WriteAged(dir, "fresh", "", true), false), 100.0f, 200.0f);
}

TEST(GenericImage, TheHeaderChoosesTheClass) {
  const test::TTempDir dir;
  const std::string int32 = test::WriteRaster(dir, "i32", std::vector<int32_t>(12, 7));
  const auto image = TGenericImage::Open(dir.File("i32.doc"), false);
  EXPECT_EQ(image->ImageTypeID(), "INT32");
  EXPECT_EQ(TImageFactory::GetImageClassFromHeader(int32), TInteger32Image::ClassRef());

  test::WriteFileBytes(dir.File("t.doc"),
                       "file type : ascii\r\ndata type : byte\r\ncolumns : 4000\r\nrows : 1\r\n");
  test::WriteFileBytes(dir.File("t.img"), "3\n");
  SetScreenWidth(100);
  const auto text = TGenericImage::Open(dir.File("t.img"), true);
  SetScreenWidth(1920);
  EXPECT_EQ(std::tuple(text->ImageTypeID(), text->ScaleImage(), text->NumRecs),
            std::tuple("ASCII", 1, 4000));

  const std::string message = test::RaisedMessage<EFOpenError>(
      [&] { TGenericImage::Open(dir.File("missing.img"), false); });
  EXPECT_NE(message.find("missing.doc"), std::string::npos) << message;
}

TEST(ImageFactory, ClassTableAndCopies) {
  EXPECT_EQ(TImageFactory::GetImageClass(std::string("real")), TRealImage::ClassRef());
  EXPECT_EQ(TImageFactory::GetImageClass(std::string("Int32")), TInteger32Image::ClassRef());
  EXPECT_EQ(TImageFactory::GetImageClass(std::string("ArcGrid")), TArcGridImage::ClassRef());
  EXPECT_EQ(TImageFactory::GetImageClass(std::string("")), nullptr);
  EXPECT_EQ(TImageFactory::GetImageClass(dtByte), TByteImage::ClassRef());
  EXPECT_EQ(test::RaisedMessage<Exception>(
                [] { TImageFactory::GetImageClass(static_cast<TDataType>(9)); }),
            "Unknown Image Class");
  EXPECT_EQ(test::RaisedMessage<EInvalidOpException>([] { TImageFactory::Copy(nullptr); }),
            "Unable to copy image, unsupported image type");

  const test::TTempDir dir;
  test::WriteFileBytes(dir.File("g.asc"), "ncols 2\nnrows 1\nx 0\ny 0\nc 1\nn -9999\n1 2\n");
  const auto grid = TArcGridImage::Open(dir.File("g.asc"), false);
  const auto copy = TImageFactory::Copy(grid.get());
  EXPECT_EQ(copy->ImageTypeID(), "ARCGRID");
  copy->WriteCR(1, 1, 50.0f);
  EXPECT_EQ(grid->ReadCR(1, 1), 1.0f);

  const auto bytes = test::MakeImage<TByteImage>(test::GridHeader({.Width = 2, .Height = 2}));
  bytes->WriteCR(2, 2, 9.0f);
  const auto byteCopy = TImageFactory::Copy(bytes.get());
  EXPECT_EQ(byteCopy->ImageTypeID(), "BYTE");
  EXPECT_EQ(byteCopy->ReadCR(2, 2), 9.0f);
  EXPECT_TRUE(byteCopy->MemOnly);
}

}  // namespace
}  // namespace zephra
