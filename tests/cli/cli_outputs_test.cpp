// What the writing commands make: a round trip through every format keeps every cell and every
// no-data cell, the PNG of the elevation shows the terrain in the palette's colours with
// transparent no data, and rasterize burns each feature's value over the declared no data.

#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "CliSupport.h"
#include "RasterInput.h"
#include "support/TestSupport.h"

namespace zephra::cli {
namespace {

using test::Sample;
using test::TTempDir;

void ExpectZephra(const std::vector<std::string>& args) {
  const test::TRun run = test::Zephra(args);
  ASSERT_EQ(run.Code, 0) << run.Err;
}

// The sample on cells of about 1/120 degree, which four decimals do not hold, with a no-data value
// that the library's exporters do not know as one; made by header set on a copy.
std::string FineRaster(const TTempDir& dir) {
  for (const char* name : {"sample.doc", "sample.img"}) {
    std::filesystem::copy_file(Sample(name), dir.File(name));
  }
  for (const auto& [key, value] :
       {std::pair{"max. X", "110.033333"}, {"min. Y", "-40.025"}, {"flag value", "-1"}}) {
    ExpectZephra({"header", "set", dir.File("sample.doc"), key, value});
  }
  EXPECT_EQ(OpenRaster(dir.File("sample.img"))->Header()->FlagValue, -1.0f);
  return dir.File("sample.doc");
}

void ExpectSameCells(const std::string& source, const std::string& copy) {
  const auto a = OpenRaster(source);
  const auto b = OpenRaster(copy);
  const TImageHeader &ha = *a->Header(), &hb = *b->Header();
  ASSERT_EQ(hb.Width, ha.Width);
  ASSERT_EQ(hb.Height, ha.Height);
  // Each format keeps one corner and the cell size, and derives the rest in floats.
  EXPECT_EQ(hb.ResolutionX, ha.ResolutionX);
  for (const auto& [b, a] : {std::pair{hb.Minx, ha.Minx}, {hb.Miny, ha.Miny}, {hb.Maxy, ha.Maxy}}) {
    EXPECT_NEAR(b, a, ha.ResolutionX / 100);
  }
  const TNoData noDataA = NoDataOf(ha), noDataB = NoDataOf(hb);
  float lo = INFINITY, hi = -INFINITY;
  for (int32_t i = 0; i < a->NumRecs; ++i) {
    const float va = a->BufferRead(i), vb = b->BufferRead(i);
    ASSERT_EQ(noDataA.Holds(va), noDataB.Holds(vb)) << "cell " << i << ": " << va << " " << vb;
    if (!noDataA.Holds(va)) {
      ASSERT_EQ(va, vb) << "cell " << i;
      lo = std::min(lo, vb);
      hi = std::max(hi, vb);
    }
  }
  // A .doc raster written by the tool declares the range of its cells that hold data.
  if (copy.ends_with(".doc") || copy.ends_with(".img")) {
    EXPECT_EQ(hb.MinValue, lo);
    EXPECT_EQ(hb.MaxValue, hi);
  }
}

// XYZ is read by no raster reader: its lines are compared with the cells, centre by centre.
void ExpectXyzCells(const std::string& source, const std::string& xyz) {
  const auto image = OpenRaster(source);
  const TImageHeader& h = *image->Header();
  std::ifstream in(xyz);
  double x = 0, y = 0, value = 0;
  for (int32_t i = 0; i < image->NumRecs; ++i) {
    ASSERT_TRUE(in >> x >> y >> value) << "line " << i + 1;
    EXPECT_FLOAT_EQ(static_cast<float>(x), h.Minx + (i % h.Width + 0.5f) * h.ResolutionX);
    EXPECT_FLOAT_EQ(static_cast<float>(y), h.Maxy - (i / h.Width + 0.5f) * h.ResolutionY);
    const float cell = image->BufferRead(i);
    EXPECT_EQ(static_cast<float>(value), NoDataOf(h).Holds(cell) ? h.FlagValue : cell);
  }
  EXPECT_FALSE(in >> x);
}

TEST(CliOutputs, RoundTripThroughEveryFormatKeepsCellsAndNoData) {
  const TTempDir dir;
  const std::string fine = FineRaster(dir);
  const struct {
    std::string Source, Out, To;
  } cases[] = {{fine, "f.doc", ""},
               {fine, "text.txt", ""},
               {fine, "f.asc", ""},
               {fine, "f.tif", ""},
               {fine, "f.xyz", ""},
               {Sample("temperature.doc"), "t32.doc", "integer32"},
               {Sample("temperature.doc"), "treal.img", "real"},
               {Sample("landcover.doc"), "l16.doc", "integer"},
               {Sample("landcover.doc"), "l8.img", "byte"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Out);
    std::vector<std::string> args = {"convert", c.Source, dir.File(c.Out)};
    if (!c.To.empty()) {
      args.insert(args.end(), {"--to", c.To});
    }
    ExpectZephra(args);
    if (c.Out.ends_with(".xyz")) {
      ExpectXyzCells(c.Source, dir.File(c.Out));
    } else {
      ExpectSameCells(c.Source, dir.File(c.Out));
    }
  }
}

struct TDecodedPng {
  png_image Image{};
  std::vector<uint8_t> Pixels;
};

TDecodedPng DecodePng(const std::string& file) {
  TDecodedPng png;
  png.Image.version = PNG_IMAGE_VERSION;
  EXPECT_NE(png_image_begin_read_from_file(&png.Image, file.c_str()), 0) << png.Image.message;
  png.Image.format = PNG_FORMAT_RGBA;
  png.Pixels.resize(PNG_IMAGE_SIZE(png.Image));
  EXPECT_NE(png_image_finish_read(&png.Image, nullptr, png.Pixels.data(), 0, nullptr), 0);
  return png;
}

TEST(CliOutputs, RenderedElevationShowsTerrainInPaletteColours) {
  const TTempDir dir;
  ExpectZephra(
      {"render", Sample("elevation.doc"), dir.File("e.png"), "--palette", Sample("terrain.pal")});
  const TDecodedPng png = DecodePng(dir.File("e.png"));
  const auto elevation = OpenRaster(Sample("elevation.doc"));
  ASSERT_EQ(png.Image.width, 40u);
  ASSERT_EQ(png.Image.height, 30u);
  TZephraPalFile palette;
  palette.LoadFromFile(Sample("terrain.pal"));
  const TColorArray& colors = palette.Colors();
  const auto colorAt = [&](size_t i) {
    const uint8_t* p = &png.Pixels[i * 4];
    return static_cast<TColor>(p[0] | p[1] << 8 | p[2] << 16);
  };
  for (int32_t i = 0; i < elevation->NumRecs; ++i) {
    const float value = elevation->BufferRead(i);
    const bool noData = NoDataOf(*elevation->Header()).Holds(value);
    ASSERT_EQ(png.Pixels[i * 4 + 3], noData ? 0 : 255) << "cell " << i;
    if (!noData) {
      // The 16 colours cut the range of the heights, 115.7 to 335.8 m, into equal classes.
      const auto index = static_cast<size_t>((value - 115.7f) * 16.0 / (335.8f - 115.7f));
      ASSERT_EQ(colorAt(i), colors.at(std::min<size_t>(index, 15))) << "cell " << i;
    }
  }
  ExpectZephra({"render", Sample("elevation.doc"), dir.File("small.png"), "--width", "20"});
  EXPECT_EQ(DecodePng(dir.File("small.png")).Image.width, 20u);
}

TEST(CliOutputs, RasterizeBurnsFeatureValuesOverTheDeclaredNoData) {
  const TTempDir dir;
  for (const char* noData : {"-9999", "-1"}) {
    const std::string out = dir.File(std::string("zones") + noData + ".doc");
    ExpectZephra({"rasterize", Sample("zones.shp"), out, "--like", Sample("elevation.doc"),
                  "--field", "ZONE", "--nodata", noData});
    const auto zones = OpenRaster(out);
    EXPECT_EQ(zones->Header()->FlagValue, std::stof(noData));
    const struct {
      float X, Y, Value;
    } cells[] = {{501000, 6102200, 10},
                 {502300, 6102700, 20},
                 {502900, 6102100, std::stof(noData)},  // the lake cut out of the park
                 {503000, 6100500, 30},                 // the farms' second part
                 {500050, 6100050, std::stof(noData)}};
    for (const auto& cell : cells) {
      EXPECT_EQ(zones->ReadXY(cell.X, cell.Y), cell.Value) << noData << " at " << cell.X;
    }
  }
}

TEST(CliOutputs, ReclassKeepsNoDataAndNamesTheLegend) {
  const TTempDir dir;
  ExpectZephra({"reclass", Sample("elevation.doc"), dir.File("bands.doc"), "--key-file",
                Sample("elevation_bands.key")});
  const auto bands = OpenRaster(dir.File("bands.doc"));
  const auto elevation = OpenRaster(Sample("elevation.doc"));
  EXPECT_EQ(bands->Header()->Categories,
            (std::vector<std::string>{"Lowland", "Foothills", "Hills", "Summit"}));
  const TNoData noData = NoDataOf(*elevation->Header());
  for (int32_t i = 0; i < bands->NumRecs; ++i) {
    const float height = elevation->BufferRead(i);
    // The bands end at 150, 200 and 275 m; where two meet, the lower band holds the height.
    const float expected =
        noData.Holds(height) ? -9999.0f : 1.0f + (height > 150) + (height > 200) + (height > 275);
    ASSERT_EQ(bands->BufferRead(i), expected) << "cell " << i << " at " << height;
  }
}

}  // namespace
}  // namespace zephra::cli
