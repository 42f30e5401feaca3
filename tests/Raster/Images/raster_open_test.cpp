// OpenAnyRaster: the content of the file chooses the class, the options choose the open.

#include <zephra/Raster/Images/zplbRasterOpen.h>
#include <zephra/Raster/Images/zplbZephraTypedImage.h>

#include <gtest/gtest.h>

#include <filesystem>

#include "support/GeoTiffFiles.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

// r.img with its .doc (64 x 32 cells), t.tif (two bands of bytes), g.asc, x.tif (text).
void WriteRasters(const test::TTempDir& dir) {
  TImageHeader header;
  header.Width = header.Height = 64;
  header.Maxx = header.Maxy = 64;
  header.SetRefSystem("plane");
  TIntegerImage::Create(dir.File("r.img"), &header)->WriteCR(1, 1, 7);
  test::WriteGeoTiff(dir.File("t.tif"), {.Bands = 2, .Bits = 8, .Format = SAMPLEFORMAT_UINT});
  test::WriteFileBytes(dir.File("g.asc"),
                       "NCOLS 3\nnrows 1\nxllcorner 0\nyllcorner 0\ncellsize 1\n1 2 3\n");
  test::WriteFileBytes(dir.File("x.tif"), "ncols\n");
}

TEST(RasterOpen, TheContentChoosesTheClassAndTheOptionsTheOpen) {
  struct TCase {
    const char* File;
    TRasterOpenOptions Options;
    const char* Expected;  // the type word, or a part of what is raised
    int32_t Width;         // of the buffer's grid; 0 when the open fails
  };
  const TCase cases[] = {
      {"r.img", {}, "INT", 64},
      {"r.doc", {}, "INT", 64},
      {"r.img", {.Window = std::array{0.0f, 16.0f, 0.0f, 32.0f}}, "INT", 16},
      {"r.img", {.RequestedRes = 4.0f}, "INT", 16},
      {"r.img", {.Band = 2}, "Band 2", 0},
      {"t.tif", {.Band = 0}, "Band 0", 0},
      {"t.tif", {.Band = 2}, "BYTE", 37},
      {"g.asc", {}, "ARCGRID", 3},
      {"x.tif", {}, "x.tif is not a raster", 0},
      {"none.tif", {}, "none.tif does not exist", 0},
  };
  const test::TTempDir dir;
  WriteRasters(dir);
  for (const TCase& item : cases) {
    SCOPED_TRACE(item.File);
    try {
      const auto image = OpenAnyRaster(dir.File(item.File), item.Options);
      EXPECT_EQ(image->ImageTypeID(), item.Expected);
      EXPECT_EQ(image->Header()->Width, item.Width);
    } catch (const Exception& error) {
      EXPECT_EQ(item.Width, 0) << error.Message();
      EXPECT_NE(error.Message().find(item.Expected), std::string::npos) << error.Message();
    }
  }
  // The TIFF content wins over a .doc beside it.
  std::filesystem::copy_file(dir.File("t.tif"), dir.File("r.img"),
                             std::filesystem::copy_options::overwrite_existing);
  EXPECT_EQ(OpenAnyRaster(dir.File("r.img"))->ImageTypeID(), "BYTE");
}

}  // namespace
}  // namespace zephra
