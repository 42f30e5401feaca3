// Writes the seed corpora of the harnesses from files that the library itself writes (shape files
// through shapelib, binary vector files by hand, as the library only reads that form), framed as
// each harness takes its input. Usage: zephra_fuzz_seeds CORPUS_DIR

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include <shapefil.h>

#include <zephra/zephra.h>

#include "FuzzRaster.h"
#include "support/GeoTiffFiles.h"

using namespace zephra;
namespace fs = std::filesystem;

namespace {

fs::path gCorpus;

std::string ReadBytes(const std::string& fileName) {
  std::ifstream file(fileName, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void Seed(const std::string& harness, const std::string& name, const std::string& bytes) {
  fs::create_directories(gCorpus / harness);
  fuzz::WriteFile((gCorpus / harness / name).string(), bytes);
}

template <typename T>
std::string Raw(const T& value) {
  return std::string(reinterpret_cast<const char*>(&value), sizeof value);
}

std::string OpenParams(uint8_t how, uint8_t options, uint8_t screen, float b0 = 0, float b1 = 0,
                       float b2 = 0, float b3 = 0) {
  return Raw(how) + Raw(options) + Raw(screen) + Raw(b0) + Raw(b1) + Raw(b2) + Raw(b3);
}

TImageHeader Grid(int32_t width, int32_t height) {
  TImageHeader header;
  header.FileTitle = "seed";
  header.Width = width;
  header.Height = height;
  header.Minx = 100.0f;
  header.Maxx = 100.0f + 2.0f * width;
  header.Miny = -50.0f;
  header.Maxy = -50.0f + 2.0f * height;
  header.ResolutionX = header.ResolutionY = 2.0f;
  header.SetRefSystem("plane");
  header.RefUnits = "m";
  header.Flag = true;
  header.FlagValue = -9999.0f;
  return header;
}

// Writes an image of class TImage through its own write-back; returns the .doc and data bytes.
template <typename TImage>
std::pair<std::string, std::string> Written(const std::string& name, TImageHeader header) {
  const std::string img = fuzz::ScratchFile(name + ".img");
  auto image = TImage::Create(img, &header);
  for (int32_t r = 1; r <= header.Height; ++r) {
    for (int32_t c = 1; c <= header.Width; ++c) {
      image->WriteCR(c, r, (c * 7 + r * 3) % 20 == 0 ? -9999.0f : static_cast<float>(c * r % 97));
    }
  }
  image->Close();
  return {ReadBytes(fuzz::ScratchFile(name + ".doc")), ReadBytes(img)};
}

void RasterSeeds() {
  const auto real = Written<TRealImage>("real", Grid(9, 7));
  const auto byte = Written<TByteImage>("byte", Grid(16, 4));
  const auto integer = Written<TIntegerImage>("int", Grid(5, 12));
  const auto int32 = Written<TInteger32Image>("int32", Grid(6, 6));
  const std::string sep(1, '\0');
  Seed("raster_open", "real_whole", OpenParams(0, 0, 200) + real.first + sep + real.second);
  Seed("raster_open", "byte_thinned", OpenParams(1, 2, 3) + byte.first + sep + byte.second);
  Seed("raster_open", "int_resolution",
       OpenParams(2, 4, 200, 4.0f) + integer.first + sep + integer.second);
  Seed("raster_open", "int32_window",
       OpenParams(3, 6 | 32, 2, 102.0f, 110.0f, -48.0f, -40.0f) + int32.first + sep + int32.second);
  Seed("raster_open", "real_generic_old", OpenParams(1, 1 | 8, 4) + real.first + sep + real.second);
  Seed("raster_open", "byte_generic_zoomed",
       OpenParams(3, 1 | 8 | 16, 8, 104.0f, 120.0f, -50.0f, -46.0f) + byte.first + sep +
           byte.second);
  Seed("image_header", "real", real.first);
  Seed("image_header", "int32", int32.first);

  TImageHeader legend = Grid(3, 2);
  legend.DataType = dtByte;
  legend.FileType = ftBinary;
  legend.SetRefSystem("lat/long");
  legend.RefUnits = "deg";
  legend.ValueUnits = "km";
  legend.Categories = {"water", "forest: mixed", "urban"};
  legend.Comment = "three classes";
  legend.Flag = false;
  std::ostringstream text;
  legend.SaveToStream(text);
  Seed("image_header", "legend_latlong", text.str());

  const auto ascii = Written<TAsciiImage>("ascii", Grid(4, 5));
  Seed("text_raster", "whole", OpenParams(0, 0, 200) + ascii.first + sep + ascii.second);
  Seed("text_raster", "generic_old", OpenParams(0, 1 | 8, 200) + ascii.first + sep + ascii.second);
  Seed("text_raster", "window",
       OpenParams(3, 0, 2, 100.0f, 104.0f, -50.0f, -46.0f) + ascii.first + sep + ascii.second);

  struct TReads {
    int32_t Cells[4][2];
    float Lat, Lng;
  };
  const TReads reads{{{0, 0}, {8, 6}, {3, 2}, {-1, 9}}, -45.0f, 105.0f};
  Seed("stream_raster", "real_stream",
       Raw(uint8_t{4}) + Raw(reads) + real.first + sep + real.second);
  Seed("stream_raster", "int_files",
       Raw(uint8_t{4 | 8}) + Raw(reads) + integer.first + sep + integer.second);
  Seed("stream_raster", "byte_stream",
       Raw(uint8_t{dtByte}) + Raw(reads) + byte.first + sep + byte.second);
}

void GridSeeds() {
  TImageHeader header = Grid(7, 5);
  const std::string img = fuzz::ScratchFile("grid.img");
  auto image = TRealImage::Create(img, &header);
  image->MemOnly = true;
  for (int32_t i = 0; i < image->NumRecs; ++i) {
    image->BufferWrite(i, i % 4 == 0 ? -9999.0f : 0.25f * static_cast<float>(i));
  }
  const std::string grid = fuzz::ScratchFile("grid.asc");
  image->ExportARCGrid(grid, -9999.0f);
  Seed("arc_grid", "export", ReadBytes(grid));
}

// GeoTIFFs as the library exports them and as libtiff writes other layouts, each behind the
// open parameters and the band of the geotiff harness.
void GeoTiffSeeds() {
  TImageHeader header = Grid(9, 6);
  auto image = TRealImage::Create(fuzz::ScratchFile("export.img"), &header);
  image->MemOnly = true;
  for (int32_t i = 0; i < image->NumRecs; ++i) {
    image->BufferWrite(i, i % 5 == 0 ? -9990.0f : 1.5f * static_cast<float>(i));
  }
  const std::string exported = fuzz::ScratchFile("export.tif");
  TGeoTiffExporter().ExportImage(image.get(), exported, nullptr);
  Seed("geotiff", "export", OpenParams(0, 0, 64) + Raw(uint8_t{1}) + ReadBytes(exported));

  using test::TTiffSpec;
  struct TSeed {
    const char* Name;
    TTiffSpec Tiff;
    std::string Params;
  };
  const TSeed seeds[] = {
      {"int16_lzw_tiled_planar",
       {.Width = 20,
        .Height = 18,
        .Bands = 2,
        .Bits = 16,
        .Format = SAMPLEFORMAT_INT,
        .Compression = COMPRESSION_LZW,
        .Predictor = PREDICTOR_HORIZONTAL,
        .Tile = 16,
        .Planar = true},
       OpenParams(fuzz::TOpenParams::hThinned, 32, 4)},
      {"float_deflate_bigtiff_nodata",
       {.Width = 12,
        .Height = 7,
        .Compression = COMPRESSION_ADOBE_DEFLATE,
        .Predictor = PREDICTOR_FLOATINGPOINT,
        .Mode = "w8",
        .NoData = "-7"},
       OpenParams(fuzz::TOpenParams::hResolution, 1, 64, 1.0f)},
      {"byte_packbits_point_latlong_bigendian",
       {.Width = 10,
        .Height = 9,
        .Bands = 3,
        .Bits = 8,
        .Format = SAMPLEFORMAT_UINT,
        .Compression = COMPRESSION_PACKBITS,
        .Mode = "wb",
        .Georef = test::TGeoref::Matrix,
        .PixelIsPoint = true,
        .LatLong = true},
       OpenParams(fuzz::TOpenParams::hWindow, 33, 64, 101, 104, 48, 49.5f)},
  };
  const std::string written = fuzz::ScratchFile("written.tif");
  for (const TSeed& seed : seeds) {
    test::WriteGeoTiff(written, seed.Tiff);
    Seed("geotiff", seed.Name,
         seed.Params + Raw(static_cast<uint8_t>(seed.Tiff.Bands)) + ReadBytes(written));
  }
}

// The vertices come as x0, y0, x1, y1, ...
std::unique_ptr<TFeature> Feature(float id, std::initializer_list<float> coordinates) {
  auto feature = std::make_unique<TFeature>(id);
  for (auto it = coordinates.begin(); it + 1 < coordinates.end(); it += 2) {
    feature->AddPoint(it[0], it[1]);
  }
  return feature;
}

void VectorSeeds() {
  TVector polygons(ltPolygon);
  // A square with a square hole behind the (0, 0) separator, and a triangle.
  polygons.AddFeature(Feature(
      1.0f, {10, 10, 10, 20, 20, 20, 20, 10, 10, 10, 0, 0, 12, 12, 12, 14, 14, 14, 12, 12}));
  polygons.AddFeature(Feature(2.0f, {30, 5, 35.5f, 15.25f, 40, 5, 30, 5}));
  std::ostringstream text;
  polygons.SaveToStream(text);
  Seed("vector_file", "polygons_text", Raw(uint8_t{3}) + text.str());
  Seed("vector_file", "polygons_files_latlong", Raw(uint8_t{3 | 8 | 16}) + text.str());

  // The binary form: id, vertex count, then the vertices, all 32-bit little-endian.
  std::string binary;
  for (int32_t id = 1; id <= 3; ++id) {
    binary += Raw(id) + Raw(int32_t{id + 1});
    for (int32_t k = 0; k <= id; ++k) {
      binary += Raw(static_cast<float>(id * 10 + k)) + Raw(static_cast<float>(k * k) - 2.5f);
    }
  }
  Seed("vector_file", "lines_binary", Raw(uint8_t{2 | 4}) + binary);
  Seed("vector_file", "points_binary", Raw(uint8_t{1 | 4}) + binary);

  std::ostringstream header;
  polygons.Header()->SetTitle("seed layer");
  polygons.Header()->SetIDType("integer");
  polygons.Header()->SetRefUnits("m");
  polygons.Header()->SetUnitDist(1.0f);
  polygons.Header()->SetPosNError("unknown");
  polygons.Header()->SetResolution("unknown");
  polygons.Header()->SaveToStream(header);
  Seed("vector_header", "polygons", header.str());
}

void PaletteSeeds() {
  TZephraPalFile palette;
  const std::string name = fuzz::ScratchFile("seed.pal");
  palette.SaveToFile(name);
  Seed("palette", "builtin", ReadBytes(name));
  palette.SetCount(40);
  palette.Blend(16, 39);
  palette.SaveToFile(name);
  Seed("palette", "blended", ReadBytes(name));
}

void AddPolygon(SHPHandle file, std::initializer_list<int> starts,
                std::initializer_list<std::pair<double, double>> points) {
  std::vector<double> x;
  std::vector<double> y;
  for (const auto& [px, py] : points) {
    x.push_back(px);
    y.push_back(py);
  }
  const std::vector<int> partStarts(starts);
  SHPObject* object =
      SHPCreateObject(SHPT_POLYGON, -1, static_cast<int>(partStarts.size()), partStarts.data(),
                      nullptr, static_cast<int>(x.size()), x.data(), y.data(), nullptr, nullptr);
  SHPWriteObject(file, -1, object);
  SHPDestroyObject(object);
}

void ShapeSeeds() {
  const std::string base = fuzz::ScratchFile("seed");
  SHPHandle file = SHPCreate(base.c_str(), SHPT_POLYGON);
  AddPolygon(file, {0}, {{0, 0}, {0, 10}, {10, 10}, {10, 0}, {0, 0}});
  AddPolygon(
      file, {0, 5},
      {{20, 0}, {20, 8}, {28, 8}, {28, 0}, {20, 0}, {22, 2}, {26, 2}, {26, 6}, {22, 6}, {22, 2}});
  AddPolygon(file, {0, 4}, {{-5, -5}, {-4, -1}, {-1, -5}, {-5, -5}, {30, 10}, {31, 12}, {32, 10}});
  SHPClose(file);
  const std::string shp = ReadBytes(base + ".shp");
  Seed("shape_map", "three_polygons",
       Raw(static_cast<uint32_t>(shp.size())) + shp + ReadBytes(base + ".shx"));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s CORPUS_DIR\n", argv[0]);
    return 2;
  }
  gCorpus = argv[1];
  fuzz::Setup();
  RasterSeeds();
  GridSeeds();
  GeoTiffSeeds();
  VectorSeeds();
  PaletteSeeds();
  ShapeSeeds();
  return 0;
}
