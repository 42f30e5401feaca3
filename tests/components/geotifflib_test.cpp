// The GeoTIFF writer component through its C interface. Files are read back with libtiff and
// their georeferencing with listgeo.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <tiffio.h>

#include <array>
#include <bit>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "gtwLayout.h"
#include "support/TestSupport.h"
#include "support/TiffSupport.h"
#include "tvgeotifflib.h"

namespace {

using zephra::test::ListGeo;
using zephra::test::ListGeoNumbers;
using zephra::test::NoDataText;
using zephra::test::OpenTiff;
using zephra::test::ReadFileBytes;
using zephra::test::ReadRowBits;
using zephra::test::Tag;
using zephra::test::TTempDir;
using zephra::test::TTiff;

constexpr auto kNpos = std::string::npos;

constexpr uint32_t kMinusNaN = 0xFFC00000;  // the NaN that callers pass for no-data

// Cell values a float file must keep to the bit: NaNs of both signs, -0, infinities,
// subnormals, the extremes, and ordinary values that vary along both axes.
uint32_t CellBits(int32_t row, int32_t col) {
  static constexpr uint32_t kSpecial[] = {kMinusNaN,  0x7FC00000, 0x7F800001, 0x80000000,
                                          0x7F800000, 0xFF800000, 0x00000001, 0x7F7FFFFF};
  if ((row * 7 + col) % 13 == 0) {
    return kSpecial[(row + col) % std::size(kSpecial)];
  }
  return std::bit_cast<uint32_t>(static_cast<float>(row) * 1.25f - static_cast<float>(col) / 3);
}

std::vector<float> MakeRow(int32_t row, int32_t width) {
  std::vector<float> cells(width);
  for (int32_t col = 0; col < width; ++col) {
    cells[col] = std::bit_cast<float>(CellBits(row, col));
  }
  return cells;
}

// Writes every row through the C interface; the rows stay the caller's and must come back from
// the writer unchanged, also once the strips are compressed at the end.
int32_t WriteRaster(const std::string& fileName, int32_t width, int32_t height, uint32_t latLong,
                    const char* mode = "w", float x = -20.5f, float y = 60.25f,
                    float cellSize = 0.1f) {
  const gtw_handle handle = gtw_create(fileName.c_str(), mode);
  EXPECT_NE(handle, nullptr);
  EXPECT_EQ(gtw_init_data(handle, width, height, x, y, cellSize, latLong), 1);
  std::vector<std::vector<float>> rows;
  for (int32_t row = 0; row < height; ++row) {
    rows.push_back(MakeRow(row, width));
    EXPECT_EQ(gtw_write_row(handle, row, rows.back().data()), 1);
  }
  const int32_t done = gtw_free(handle);
  for (int32_t row = 0; row < height; ++row) {
    EXPECT_EQ(std::memcmp(rows[row].data(), MakeRow(row, width).data(), width * sizeof(float)), 0)
        << "the caller's row " << row << " was changed";
  }
  return done;
}

void ExpectCells(TIFF* tif, int32_t width, int32_t height) {
  for (int32_t row = 0; row < height; ++row) {
    const std::vector<uint32_t> bits = ReadRowBits(tif, row, width);
    for (int32_t col = 0; col < width; ++col) {
      ASSERT_EQ(bits[col], CellBits(row, col)) << "row " << row << " column " << col;
    }
  }
}

TEST(GeoTiffWriter, CellsReadBackBitForBitInACompressedFloatTiff) {
  const TTempDir dir;
  const std::string fileName = dir.File("cells.tif");
  constexpr int32_t kWidth = 300, kHeight = 1000;  // five strips

  ASSERT_EQ(WriteRaster(fileName, kWidth, kHeight, 1), 1);
  const TTiff tif = OpenTiff(fileName);
  ASSERT_TRUE(tif);
  EXPECT_EQ(Tag<uint32_t>(tif.get(), TIFFTAG_IMAGEWIDTH), uint32_t{kWidth});
  EXPECT_EQ(Tag<uint32_t>(tif.get(), TIFFTAG_IMAGELENGTH), uint32_t{kHeight});
  EXPECT_EQ(Tag<uint16_t>(tif.get(), TIFFTAG_SAMPLESPERPIXEL), 1);
  EXPECT_EQ(Tag<uint16_t>(tif.get(), TIFFTAG_BITSPERSAMPLE), 32);
  EXPECT_EQ(Tag<uint16_t>(tif.get(), TIFFTAG_SAMPLEFORMAT), SAMPLEFORMAT_IEEEFP);
  EXPECT_EQ(Tag<uint16_t>(tif.get(), TIFFTAG_COMPRESSION), COMPRESSION_ADOBE_DEFLATE);
  EXPECT_EQ(Tag<uint16_t>(tif.get(), TIFFTAG_PREDICTOR), PREDICTOR_FLOATINGPOINT);
  EXPECT_GT(TIFFNumberOfStrips(tif.get()), 1u);
  EXPECT_FALSE(TIFFIsBigTIFF(tif.get()));
  EXPECT_EQ(NoDataText(tif.get()), "nan");
  ExpectCells(tif.get(), kWidth, kHeight);
  EXPECT_LT(std::filesystem::file_size(fileName), uint64_t{kWidth} * kHeight * sizeof(float))
      << "the cells were not compressed";

  // Strips compressed on one thread or on several make the same file.
  for (const char* threads : {"1", "3"}) {
    setenv("GTW_THREADS", threads, 1);
    const std::string again = dir.File(std::string("threads") + threads + ".tif");
    ASSERT_EQ(WriteRaster(again, kWidth, kHeight, 1), 1);
    EXPECT_EQ(ReadFileBytes(again), ReadFileBytes(fileName)) << threads << " threads";
  }
  unsetenv("GTW_THREADS");
}

TEST(GeoTiffWriter, GeoreferencesLatLongAsWgs84AndOtherwiseAsUserDefinedProjected) {
  const TTempDir dir;
  const auto report = [&dir](uint32_t latLong, float x, float y, float cellSize) {
    const std::string fileName = dir.File("georef.tif");
    EXPECT_EQ(WriteRaster(fileName, 4, 3, latLong, "w", x, y, cellSize), 1);
    const std::string text = ListGeo(fileName);
    EXPECT_EQ(ListGeoNumbers(text, "ModelTiepointTag", 6), (std::vector<double>{0, 0, 0, x, y, 0}));
    EXPECT_NE(text.find("GTRasterTypeGeoKey (Short,1): RasterPixelIsArea"), kNpos) << text;
    return text;
  };
  const std::string geographic = report(1, -20.5f, 60.25f, 0.1f);
  // 0.1f must arrive as the 0.1 the caller meant, not as its binary neighbour.
  EXPECT_EQ(ListGeoNumbers(geographic, "ModelPixelScaleTag", 3),
            (std::vector<double>{0.1, 0.1, 0}));
  EXPECT_NE(geographic.find("GTModelTypeGeoKey (Short,1): ModelTypeGeographic"), kNpos);
  EXPECT_NE(geographic.find("GCS: 4326/WGS 84"), kNpos);
  EXPECT_EQ(geographic.find("ProjectedCSTypeGeoKey"), kNpos);

  const std::string projected = report(0, 350000.0f, 5800000.0f, 30.0f);
  EXPECT_EQ(ListGeoNumbers(projected, "ModelPixelScaleTag", 3), (std::vector<double>{30, 30, 0}));
  EXPECT_NE(projected.find("GTModelTypeGeoKey (Short,1): ModelTypeProjected"), kNpos);
  EXPECT_NE(projected.find("ProjectedCSTypeGeoKey (Short,1): User-Defined"), kNpos);
  EXPECT_EQ(projected.find("GeographicTypeGeoKey"), kNpos);
}

TEST(GeoTiffWriter, ChoosesBigTiffWhenAskedOrWhenTheWorstCaseWouldPassFourGiB) {
  const TTempDir dir;
  const std::string fileName = dir.File("big.tif");
  ASSERT_EQ(WriteRaster(fileName, 20, 30, 1, "w8"), 1);
  const TTiff tif = OpenTiff(fileName);
  ASSERT_TRUE(tif);
  EXPECT_TRUE(TIFFIsBigTIFF(tif.get()));
  ExpectCells(tif.get(), 20, 30);

  using tvgeotifflib::NeedsBigTiff;
  EXPECT_FALSE(NeedsBigTiff(4000, 4000));
  EXPECT_FALSE(NeedsBigTiff(32768, 32000));  // 3.9 GiB of cells plus all overhead still fits
  // Cells alone just under 4 GiB: the growth DEFLATE may add to incompressible strips does not.
  EXPECT_TRUE(NeedsBigTiff(32768, 32767));
  EXPECT_TRUE(NeedsBigTiff(32768, 32768));
  EXPECT_TRUE(NeedsBigTiff(65536, 65536));  // 2^32 cells: a 32-bit product would read 0
  EXPECT_TRUE(NeedsBigTiff(1, 1u << 30));   // one column, a billion strips' worth of rows

  using tvgeotifflib::RowsPerStrip;
  EXPECT_EQ(RowsPerStrip(10, 3), 3u);          // never more rows than the raster has
  EXPECT_EQ(RowsPerStrip(1u << 20, 100), 1u);  // a row above the strip target is a strip
  const uint64_t rowBytes = 4000 * sizeof(float);
  EXPECT_LE(RowsPerStrip(4000, 4000) * rowBytes, tvgeotifflib::kStripTargetBytes);
  EXPECT_GT((RowsPerStrip(4000, 4000) + 1) * rowBytes, tvgeotifflib::kStripTargetBytes);
}

TEST(GeoTiffWriter, RefusesWhatItCannotWriteAndKeepsTheOldFile) {
  const TTempDir dir;
  EXPECT_EQ(gtw_create(dir.File("no such folder/a.tif").c_str(), "w"), nullptr);
  EXPECT_EQ(gtw_create(nullptr, "w"), nullptr);
  for (const char* mode : {"r", "a", "", "w+", "wx"}) {
    EXPECT_EQ(gtw_create(dir.File("mode.tif").c_str(), mode), nullptr) << mode;
  }
  EXPECT_EQ(gtw_create(dir.File("mode.tif").c_str(), nullptr), nullptr);
  EXPECT_FALSE(std::filesystem::exists(dir.File("mode.tif")));
  EXPECT_EQ(gtw_free(nullptr), 0);

  // A failed write leaves the file it would have replaced as it was, and no temporary.
  const std::string fileName = dir.File("old.tif");
  zephra::test::WriteFileBytes(fileName, "old");
  const gtw_handle handle = gtw_create(fileName.c_str(), "w");
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(gtw_write_row(handle, 0, MakeRow(0, 3).data()), 0);  // before the size is known
  const float nan = std::bit_cast<float>(kMinusNaN);
  const struct {
    int32_t Width, Height;
    float X, CellSize;
  } badInits[] = {{0, 4, 0, 1}, {3, 0, 0, 1},  {-3, 4, 0, 1},
                  {3, 4, 0, 0}, {3, 4, 0, -1}, {3, 4, nan, 1}};
  for (const auto& bad : badInits) {
    EXPECT_EQ(gtw_init_data(handle, bad.Width, bad.Height, bad.X, 0, bad.CellSize, 0), 0);
  }
  EXPECT_EQ(gtw_free(handle), 0);
  EXPECT_EQ(zephra::test::ReadFileBytes(fileName), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.Path()), {}), 1);
}

TEST(GeoTiffWriter, TakesRowsInAscendingOrderAndFillsTheOnesNeverWrittenWithNaN) {
  const TTempDir dir;
  const std::string fileName = dir.File("gaps.tif");
  constexpr int32_t kWidth = 6, kHeight = 5;
  const gtw_handle handle = gtw_create(fileName.c_str(), "w");
  ASSERT_NE(handle, nullptr);
  ASSERT_EQ(gtw_init_data(handle, kWidth, kHeight, 0, 0, 1, 0), 1);
  EXPECT_EQ(gtw_init_data(handle, kWidth, kHeight, 0, 0, 1, 0), 0);  // only once
  EXPECT_EQ(gtw_write_row(handle, 1, MakeRow(1, kWidth).data()), 1);
  EXPECT_EQ(gtw_write_row(handle, 1, MakeRow(0, kWidth).data()), 0);  // already written
  EXPECT_EQ(gtw_write_row(handle, 0, MakeRow(0, kWidth).data()), 0);  // behind
  EXPECT_EQ(gtw_write_row(handle, kHeight, MakeRow(0, kWidth).data()), 0);
  EXPECT_EQ(gtw_write_row(handle, -1, MakeRow(0, kWidth).data()), 0);
  EXPECT_EQ(gtw_write_row(handle, 2, nullptr), 0);
  EXPECT_EQ(gtw_write_row(handle, 3, MakeRow(3, kWidth).data()), 1);
  ASSERT_EQ(gtw_free(handle), 1);

  const TTiff tif = OpenTiff(fileName);
  ASSERT_TRUE(tif);
  for (int32_t row = 0; row < kHeight; ++row) {  // in order: strips are read forward only
    const std::vector<uint32_t> bits = ReadRowBits(tif.get(), row, kWidth);
    const bool written = row == 1 || row == 3;
    for (int32_t col = 0; col < kWidth; ++col) {
      if (written) {
        EXPECT_EQ(bits[col], CellBits(row, col)) << "row " << row << " column " << col;
      } else {
        EXPECT_TRUE(std::isnan(std::bit_cast<float>(bits[col]))) << "row " << row;
      }
    }
  }
}

// A full disk, played by a file size limit in a child process: the writer must report the
// failure and take the broken file away, leaving the folder empty.
TEST(GeoTiffWriterDeathTest, ReportsAFailingDiskAndRemovesTheBrokenFile) {
  const TTempDir dir;
  const std::string fileName = dir.File("full.tif");
  const auto writeUnderLimit = [&dir, &fileName] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{4096, 4096};
    setrlimit(RLIMIT_FSIZE, &limit);
    const gtw_handle handle = gtw_create(fileName.c_str(), "w");
    if (handle == nullptr || gtw_init_data(handle, 300, 400, 0, 0, 1, 0) != 1) {
      std::exit(2);  // the limit is meant to hit the cells, not the start
    }
    bool failed = false;
    for (int32_t row = 0; row < 400 && !failed; ++row) {
      failed = gtw_write_row(handle, row, MakeRow(row, 300).data()) != 1;
    }
    failed = gtw_free(handle) != 1 || failed;
    std::exit(!failed ? 3 : !std::filesystem::is_empty(dir.Path()) ? 4 : 0);
  };
  EXPECT_EXIT(writeUnderLimit(), testing::ExitedWithCode(0), "");
}

}  // namespace
