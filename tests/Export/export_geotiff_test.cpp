// The GeoTIFF exporter through the real component: cells bit for bit, georeferencing, and a host
// without the component.

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPlatform.h>
#include <zephra/Export/zplGeoTiffExporter.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <bit>
#include <filesystem>
#include <memory>
#include <tuple>

#include "support/ImageSupport.h"
#include "support/RaisedMessage.h"
#include "support/TiffSupport.h"

namespace zephra {
namespace {

// Cells of 0.25 x 0.5 west and south of (-20.5, 60): one cell size stands for both axes, the X one.
std::unique_ptr<TRealImage> MakeImage(int32_t width, int32_t height, const std::string& refSystem,
                                      const std::vector<float>& cells = {}) {
  TImageHeader header =
      test::GridHeader({width, height, -20.5f, 60.0f - 0.5f * height, 0.25f, 0.5f});
  header.SetRefSystem(refSystem);
  return test::MakeImage(header, cells);
}

uint32_t Bits(float value) {
  return std::bit_cast<uint32_t>(value);
}

TEST(GeoTiffExporter, CellsArriveBitForBitWithNoDataAsNaN) {
  const test::TTempDir dir;
  const auto image = MakeImage(4, 3, "latlon",
                               {1.5f, -9000.0f, -9990.0f, -9989.5f, -9999.0f, 0.0f, -0.0f, 3e38f,
                                1e-40f, 42.0f, 7.0f, std::numeric_limits<float>::quiet_NaN()});
  bool fired = false;
  const std::string name = dir.File("out.tif");
  TGeoTiffExporter().ExportImage(image.get(), name, [&](int32_t, int32_t) { fired = true; });
  EXPECT_FALSE(fired);

  const test::TTiff tif = test::OpenTiff(name);
  ASSERT_TRUE(tif);
  EXPECT_EQ(std::tuple(test::Tag<uint32_t>(tif.get(), TIFFTAG_IMAGEWIDTH),
                       test::Tag<uint32_t>(tif.get(), TIFFTAG_IMAGELENGTH),
                       test::Tag<uint16_t>(tif.get(), TIFFTAG_SAMPLEFORMAT)),
            std::tuple(4u, 3u, SAMPLEFORMAT_IEEEFP));
  EXPECT_EQ(test::NoDataText(tif.get()), "nan");
  const uint32_t noData = 0xFFC00000;
  const uint32_t expected[] = {Bits(1.5f),   Bits(-9000.0f), noData,      Bits(-9989.5f),
                               noData,       Bits(0.0f),     Bits(-0.0f), Bits(3e38f),
                               Bits(1e-40f), Bits(42.0f),    Bits(7.0f),  noData};
  for (uint32_t row = 0; row < 3; ++row) {
    EXPECT_EQ(test::ReadRowBits(tif.get(), row, 4),
              std::vector<uint32_t>(expected + 4 * row, expected + 4 * row + 4))
        << "row " << row;
  }
}

TEST(GeoTiffExporter, GeoreferencesTheNorthWestCornerWithTheXCellSize) {
  const test::TTempDir dir;
  const std::string latlon = dir.File("latlon.tif");
  const std::string plane = dir.File("plane.tif");
  TGeoTiffExporter exporter;
  exporter.ExportImage(MakeImage(8, 6, "latlon").get(), latlon, nullptr);
  exporter.ExportImage(MakeImage(8, 6, "utm 33").get(), plane, nullptr);

  const std::string report = test::ListGeo(latlon);
  EXPECT_EQ(test::ListGeoNumbers(report, "ModelTiepointTag", 6),
            (std::vector<double>{0, 0, 0, -20.5, 60, 0}));
  EXPECT_EQ(test::ListGeoNumbers(report, "ModelPixelScaleTag", 3),
            (std::vector<double>{0.25, 0.25, 0}));
  EXPECT_NE(report.find("ModelTypeGeographic"), std::string::npos) << report;
  EXPECT_NE(report.find("4326"), std::string::npos);
  EXPECT_NE(test::ListGeo(plane).find("ModelTypeProjected"), std::string::npos);
}

// libtiff's complaints, here about a full disk, reach the host's debug channel, never its stderr.
TEST(GeoTiffExporter, SendsLibtiffMessagesToTheDebugChannelNotToStderr) {
  const auto image = MakeImage(40, 30, "latlon");
  std::string debugText;
  SetDebugOutput([&](const std::string& text) { debugText += text + '\n'; });
  testing::internal::CaptureStderr();
  EXPECT_NO_THROW(TGeoTiffExporter().ExportImage(image.get(), "/dev/full", {}));
  const std::string printed = testing::internal::GetCapturedStderr();
  SetDebugOutput(nullptr);
  EXPECT_NE(debugText.find("GeoTIFF writer, libtiff error: "), std::string::npos) << debugText;
  EXPECT_EQ(printed, "");
}

TEST(GeoTiffExporter, FailsWithTheLoaderMessageAndNoFileWhenTheComponentIsMissing) {
  const test::TTempDir dir;
  const auto image = MakeImage(2, 2, "");
  const std::string name = dir.File("out.tif");
  TGeoTiffExporter exporter;

  SetGeoTiffLibraryPath(dir.File("missing/libtvgeotifflib.so"));
  const std::string missing =
      test::RaisedMessage<EFOpenError>([&] { exporter.ExportImage(image.get(), name, nullptr); });
  EXPECT_NE(missing.find("libtvgeotifflib.so"), std::string::npos) << missing;

  test::WriteFileBytes(dir.File("fake.so"), "not a library");
  SetGeoTiffLibraryPath(dir.File("fake.so"));
  EXPECT_THROW(exporter.ExportImage(image.get(), name, nullptr), EFOpenError);
  EXPECT_FALSE(std::filesystem::exists(name));

  // A later export with the component in place works: a failed binding is not kept.
  SetGeoTiffLibraryPath("");
  exporter.ExportImage(image.get(), name, nullptr);
  EXPECT_TRUE(std::filesystem::exists(name));

  EXPECT_EQ(test::RaisedMessage<Exception>(
                [&] { exporter.ExportImage(image.get(), dir.File("no/folder.tif"), nullptr); }),
            "Failed create GeoTIFF file.");
  EXPECT_THROW(exporter.ExportImage(nullptr, name, nullptr), EArgumentNullException);
}

}  // namespace
}  // namespace zephra
