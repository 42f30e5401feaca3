// GeoTIFF images: files as other tools write them, the library's own export read back, and the
// files that must be refused.

#include <zephra/Common/zpPlatform.h>
#include <zephra/Export/zplGeoTiffExporter.h>
#include <zephra/Raster/Images/zplbZephraGeoTiffImage.h>
#include <zephra/Raster/Images/zplbZephraImageFactory.h>

#include <gtest/gtest.h>

#include <filesystem>

#include "support/GeoTiffFiles.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

using test::TGeoref;
using test::TTiffSpec;
constexpr uint16_t kUInt = SAMPLEFORMAT_UINT;
constexpr uint16_t kInt = SAMPLEFORMAT_INT;

// The image's cells are the file's cells (col0 + c * step, row0 + r * step) of band.
void ExpectCells(const TAbstractImage& image, const TTiffSpec& request, uint32_t band,
                 uint32_t col0 = 0, uint32_t row0 = 0, uint32_t step = 1) {
  for (int32_t r = 0; r < image.Header()->Height; ++r) {
    for (int32_t c = 0; c < image.Header()->Width; ++c) {
      ASSERT_EQ(image.ReadCR0(c, r),
                test::CellValue(request, band, col0 + c * step, row0 + r * step))
          << c << "," << r;
    }
  }
}

TEST(GeoTiffImage, ReadsEveryLayoutSampleTypeAndCompression) {
  struct TCase {
    TTiffSpec Tiff;
    int32_t Band;
    const char* TypeID;
  };
  std::vector<TCase> cases = {
      {{.Bits = 8, .Format = kUInt}, 1, "BYTE"},
      {{.Bits = 8, .Format = kInt}, 1, "INT"},
      {{.Bits = 16, .Format = kInt, .Compression = COMPRESSION_LZW, .Predictor = 2, .Mode = "wb"},
       1,
       "INT"},
      {{.Bits = 16, .Format = kUInt}, 1, "INT32"},
      {{.Format = kInt, .Tile = 16}, 1, "INT32"},
      {{.Compression = COMPRESSION_ADOBE_DEFLATE, .Predictor = 3, .Tile = 16, .Mode = "w8"},
       1,
       "REAL"},
      {{.Bands = 3, .Planar = true}, 2, "REAL"},
      {{.Bands = 3, .Tile = 16, .Planar = true}, 3, "REAL"},
      {{.Bands = 3, .Bits = 8, .Format = kUInt, .Tile = 16}, 3, "BYTE"},
  };
  for (const uint16_t codec :
       {COMPRESSION_PACKBITS, COMPRESSION_ZSTD, COMPRESSION_LZMA, COMPRESSION_LERC}) {
    if (TIFFIsCODECConfigured(codec)) {
      cases.push_back({{.Compression = codec, .Tile = 16}, 1, "REAL"});
    }
  }
  const test::TTempDir dir;
  for (const TCase& item : cases) {
    SCOPED_TRACE(testing::Message() << "case " << &item - cases.data());
    test::WriteGeoTiff(dir.File("t.tif"), item.Tiff);
    const auto image = OpenGeoTiff(dir.File("t.tif"), {.Band = item.Band});
    EXPECT_EQ(image->ImageTypeID(), item.TypeID);
    ASSERT_EQ(image->NumRecs, 37 * 29);
    ExpectCells(*image, item.Tiff, item.Band);
  }
}

TEST(GeoTiffImage, GeoreferencingAndNoDataBecomeTheHeader) {
  struct TCase {
    TTiffSpec Tiff;
    float Minx, Maxy, ResX, ResY;
    const char* Lineage;
    float FlagValue;  // 0: no flag
  };
  const TCase cases[] = {
      {{.Format = kInt}, 100, 50, 0.5f, 0.25f, "EPSG:32633", 0},
      {{.Georef = TGeoref::Matrix}, 100, 50, 0.5f, 0.25f, "EPSG:32633", -9990},
      {{.PixelIsPoint = true}, 99.75f, 50.125f, 0.5f, 0.25f, "EPSG:32633", -9990},
      {{.LatLong = true}, 100, 50, 0.5f, 0.25f, "EPSG:4326", -9990},
      {{.Georef = TGeoref::None}, 0, 29, 1, 1, "", -9990},
      {{.NoData = " -7 "}, 100, 50, 0.5f, 0.25f, "", -7},
  };
  const test::TTempDir dir;
  for (const TCase& item : cases) {
    SCOPED_TRACE(testing::Message() << "case " << &item - cases);
    test::WriteGeoTiff(dir.File("g.tif"), item.Tiff);
    const auto image = OpenGeoTiff(dir.File("g.tif"));
    const TImageHeader& header = *image->Header();
    EXPECT_FLOAT_EQ(header.Minx, item.Minx);
    EXPECT_FLOAT_EQ(header.Maxy, item.Maxy);
    EXPECT_FLOAT_EQ(header.Miny, item.Maxy - 29 * item.ResY);
    EXPECT_FLOAT_EQ(header.Maxx, item.Minx + 37 * item.ResX);
    EXPECT_EQ(header.RefSystem(), item.Tiff.LatLong ? "latlon" : "plane");
    EXPECT_EQ(header.RefUnits, item.Tiff.LatLong ? "deg" : "m");
    EXPECT_NE(header.Lineage.find(item.Lineage), std::string::npos) << header.Lineage;
    EXPECT_EQ(header.FlagValue, item.FlagValue);
    EXPECT_EQ(header.Flag, item.FlagValue != 0);
    // The flag value -7 lies inside the cells' -60 .. 59 and stays out of the range.
    EXPECT_EQ(header.MinValue, -60);
    EXPECT_EQ(header.MaxValue, 59);
  }
}

// Overwrites the stored bytes of the last strip or tile with bytes that no codec takes.
void SpoilLastChunk(const std::string& fileName) {
  TIFF* tif = TIFFOpen(fileName.c_str(), "r");
  const uint32_t last = TIFFNumberOfStrips(tif) - 1;
  const uint64_t offset = TIFFGetStrileOffset(tif, last);
  const uint64_t size = TIFFGetStrileByteCount(tif, last);
  TIFFClose(tif);
  std::string bytes = test::ReadFileBytes(fileName);
  test::WriteFileBytes(fileName, bytes.replace(offset, size, std::string(size, '\xff')));
}

TEST(GeoTiffImage, ThinnedAndWindowedOpensDecodeOnlyTheChunksTheyKeep) {
  const test::TTempDir dir;
  const std::string name = dir.File("big.tif");
  for (const uint32_t tile : {0u, 16u}) {
    SCOPED_TRACE(tile);
    const TTiffSpec request{.Width = 400, .Height = 300, .Compression = 8, .Tile = tile};
    test::WriteGeoTiff(name, request);
    const auto thinned = OpenGeoTiff(name, {.RequestedRes = 2.0f});
    ASSERT_EQ(thinned->ScaleImage(), 4);
    ExpectCells(*thinned, request, 1, 0, 0, 4);

    SpoilLastChunk(name);
    // Columns 20 .. 59 and rows 8 .. 47, far from the spoilt south-east corner.
    const auto window = OpenGeoTiff(name, {.Window = std::array{110.0f, 130.0f, 38.0f, 48.0f}});
    ASSERT_EQ(window->Header()->Width, 40);
    ExpectCells(*window, request, 1, 20, 8, window->ScaleImage());
    EXPECT_THROW(window->ReOpen(0, 0, 0, 0), EImageFileError);
    EXPECT_EQ(window->Header()->Width, 40);  // the failed ReOpen left the window
  }
}

TEST(GeoTiffImage, RefusedAndBrokenFilesRaiseNamingTheFileAndKeepStderrQuiet) {
  struct TCase {
    TTiffSpec Tiff;
    int32_t Band;
    const char* Reason;
    void (*Spoil)(const std::string&);
  };
  const auto halve = [](const std::string& name) {
    std::filesystem::resize_file(name, std::filesystem::file_size(name) / 2);
  };
  const auto text = [](const std::string& name) { test::WriteFileBytes(name, "II*\0no"); };
  const TCase cases[] = {
      {{.Georef = TGeoref::Rotated}, 1, "rotated", nullptr},
      {{.Format = kUInt}, 1, "32-bit unsigned integer samples fit none", nullptr},
      {{.Bits = 64}, 1, "64-bit floating-point", nullptr},
      {{.Bands = 3}, 4, "Band 4", nullptr},
      {{.Compression = COMPRESSION_LZW}, 1, "Decoding strip 9 of", SpoilLastChunk},
      {{.Compression = COMPRESSION_ADOBE_DEFLATE}, 1, "failed", halve},
      {{}, 1, "failed", text},
  };
  std::vector<std::string> debug;
  SetDebugOutput([&](const std::string& line) { debug.push_back(line); });
  const test::TTempDir dir;
  const std::string name = dir.File("bad.tif");
  for (const TCase& item : cases) {
    SCOPED_TRACE(item.Reason);
    test::WriteGeoTiff(name, item.Tiff);
    if (item.Spoil != nullptr) {
      item.Spoil(name);
    }
    testing::internal::CaptureStderr();
    std::string message;
    try {
      OpenGeoTiff(name, {.RequestedRes = 0.1f, .Band = item.Band});
    } catch (const Exception& error) {
      message = error.Message();
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_NE(message.find(name), std::string::npos) << message;
    EXPECT_NE(message.find(item.Reason), std::string::npos) << message;
  }
  SetDebugOutput(nullptr);
  EXPECT_NE(debug.size(), 0u);
}

// Cells of each type through the library's export and back, and the image then taken by the
// other operations without a file written beside the .tif.
template <typename TCell>
void RoundTrip(const test::TTempDir& dir, const char* refSystem) {
  TImageHeader header;
  header.Width = 23;
  header.Height = 17;
  header.Minx = -12.5f;
  header.Maxx = header.Minx + 23 * 0.1f;
  header.Maxy = 61.25f;
  header.Miny = header.Maxy - 17 * 0.1f;
  header.ResolutionX = header.ResolutionY = 0.1f;
  header.SetRefSystem(refSystem);
  const auto source = TTypedImage<TCell>::Create(dir.File("source.img"), &header);
  source->MemOnly = true;
  for (int32_t i = 0; i < source->NumRecs; ++i) {
    source->BufferWrite(i, i == 5 ? -9990.0f : static_cast<float>(i % 200) * 1.25f);
  }
  const std::string name = dir.File("out.tif");
  TGeoTiffExporter().ExportImage(source.get(), name, nullptr);
  const std::string bytes = test::ReadFileBytes(name);
  auto image = OpenGeoTiff(name);
  EXPECT_TRUE(image->Header()->EqualsBounds(source->Header()));
  EXPECT_EQ(image->Header()->IsLatLon(), source->Header()->IsLatLon());
  for (int32_t i = 0; i < source->NumRecs; ++i) {
    ASSERT_EQ(image->BufferRead(i), source->BufferRead(i)) << i;
  }
  image->WriteCR(1, 1, 500.0f);
  EXPECT_EQ(TImageFactory::Copy(image.get())->GetRange().Max, 500.0f);
  image->ExportARCGrid(dir.File("out.asc"), -9999.0f);
  image->Close();
  EXPECT_EQ(test::ReadFileBytes(name), bytes);
  EXPECT_FALSE(std::filesystem::exists(dir.File("out.doc")));
}

TEST(GeoTiffImage, ReadsBackTheLibrarysOwnExportOfEachCellType) {
  const test::TTempDir dir;
  RoundTrip<float>(dir, "latlon");
  RoundTrip<uint8_t>(dir, "plane");
  RoundTrip<int16_t>(dir, "latlon");
  RoundTrip<int32_t>(dir, "plane");
}

}  // namespace
}  // namespace zephra
