// make_samples: writes the sample data of examples/, so that it can be made again rather than
// edited by hand. The rasters go through the library's own writer (Create, WriteCR, Close), the
// shapefile through shapelib. Nothing depends on the clock or on chance: the same build writes
// the same bytes, which the example tests check against the committed files.
//
// Usage: make_samples DIR

#include <cmath>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <shapefil.h>

#include <zephra/zephra.h>

namespace fs = std::filesystem;
using zephra::TImageHeader;

namespace {

constexpr float kNoData = -9999.0f;

// The land-cover and elevation samples share one grid: 40 x 30 cells of 100 m on a plane.
constexpr int32_t kGridWidth = 40;
constexpr int32_t kGridHeight = 30;
constexpr float kGridMinX = 500000.0f;
constexpr float kGridMaxY = 6103000.0f;
constexpr float kGridCell = 100.0f;

TImageHeader GridHeader(int32_t width, int32_t height, float minx, float maxy, float cell) {
  TImageHeader header;
  header.Width = width;
  header.Height = height;
  header.Minx = minx;
  header.Maxx = minx + static_cast<float>(width) * cell;
  header.Maxy = maxy;
  header.Miny = maxy - static_cast<float>(height) * cell;
  header.ResolutionX = cell;
  header.ResolutionY = cell;
  return header;
}

TImageHeader PlaneGridHeader() {
  TImageHeader header = GridHeader(kGridWidth, kGridHeight, kGridMinX, kGridMaxY, kGridCell);
  header.SetRefSystem("plane");
  header.RefUnits = "m";
  header.Lineage = "Synthetic, written by examples/make_samples";
  return header;
}

// Every cell goes through WriteCR, so the value range in the .doc is that of the cells written;
// cells at or below a header's flag value stay out of it.
template <typename TImage, typename TCellValue>
void WriteRaster(const fs::path& file, const TImageHeader& header, TCellValue cellValue) {
  const auto image = TImage::Create(file.string(), &header);
  // Create copies the header with TImageHeader::Copy, which leaves these to the new image.
  image->Header()->ValueUnits = header.ValueUnits;
  image->Header()->FlagDef = header.FlagDef;
  image->Header()->UnitDistance = header.UnitDistance;
  for (int32_t r = 0; r < header.Height; ++r) {
    for (int32_t c = 0; c < header.Width; ++c) {
      image->WriteCR(c + 1, r + 1, cellValue(c, r));
    }
  }
  image->Close();
  std::printf("wrote %s\n", file.string().c_str());
}

// tests/header_test.cpp reads this header and expects its size, extent, range and texts as they
// are: change them together.
void WriteTemperature(const fs::path& dir) {
  TImageHeader header = GridHeader(4, 3, 110.0f, -40.0f, 1.0f);
  header.SetRefSystem("latlon");
  header.RefUnits = "deg";
  header.FileTitle = "Annual mean temperature, sample";
  header.ValueUnits = "C";
  header.Flag = true;
  header.FlagValue = kNoData;
  header.FlagDef = "No data";
  header.Comment = "Small sample shipped with the library";
  static constexpr float kCells[3][4] = {{17.25f, 16.5f, 15.75f, 15.0f},
                                         {14.25f, 13.5f, kNoData, 12.0f},
                                         {kNoData, 10.25f, 9.5f, 8.5f}};
  WriteRaster<zephra::TRealImage>(dir / "sample.img", header,
                                  [](int32_t c, int32_t r) { return kCells[r][c]; });
}

// Distances are in cells, from cell centres; only + - * / so that every machine gets the same
// bits.
double SquaredDistance(int32_t c, int32_t r, double cx, double cy) {
  const double dx = c + 0.5 - cx;
  const double dy = r + 0.5 - cy;
  return dx * dx + dy * dy;
}

bool IsLake(int32_t c, int32_t r) {
  return SquaredDistance(c, r, 29.0, 9.0) <= 9.0;
}
bool IsRiver(int32_t c, int32_t r) {
  return r >= 12 && c == 29 + (r - 12) / 4;
}
bool IsForest(int32_t c, int32_t r) {
  return SquaredDistance(c, r, 10.0, 9.0) <= 49.0;
}

// A wooded hill in the west, a lake with its river in the east, fields and a town in the south.
float LandCover(int32_t c, int32_t r) {
  if (IsLake(c, r) || IsRiver(c, r)) {
    return 0.0f;
  }
  if (IsForest(c, r)) {
    return 1.0f;
  }
  if (r >= 21 && c >= 17 && c <= 22) {
    return 4.0f;
  }
  return r >= 20 && (c <= 15 || c >= 24) ? 3.0f : 2.0f;
}

void WriteLandCover(const fs::path& dir) {
  TImageHeader header = PlaneGridHeader();
  header.FileTitle = "Land cover, sample";
  header.ValueUnits = "class";
  // The legend is indexed by the cell value.
  header.Categories = {"Water", "Forest", "Grassland", "Cropland", "Urban"};
  WriteRaster<zephra::TByteImage>(dir / "landcover.img", header, LandCover);
}

// Land falling to the south-east, the hill of the forest on it, a level lake, and a corner that
// the survey did not reach. Heights are kept to a tenth of a metre.
float Elevation(int32_t c, int32_t r) {
  if (c >= 34 && r >= 24) {
    return kNoData;
  }
  if (IsLake(c, r)) {
    return 140.0f;
  }
  const double slope = 105.0 + 1.2 * (40.0 - (c + 0.5)) + 0.8 * (30.0 - (r + 0.5));
  const double hill = 180.0 / (1.0 + SquaredDistance(c, r, 10.0, 9.0) / 30.0);
  return static_cast<float>(std::nearbyint((slope + hill) * 10.0) / 10.0);
}

void WriteElevation(const fs::path& dir) {
  TImageHeader header = PlaneGridHeader();
  header.FileTitle = "Elevation, sample";
  header.ValueUnits = "m";
  header.Flag = true;
  header.FlagValue = kNoData;
  header.FlagDef = "Outside survey";
  WriteRaster<zephra::TRealImage>(dir / "elevation.img", header, Elevation);
}

struct TZone {
  const char* Name;
  int Code;
  // Rings of x, y pairs: outer rings clockwise, holes counter-clockwise, as shapefiles want them.
  std::vector<std::vector<double>> Rings;
};

struct TShpCloser {
  void operator()(SHPInfo* shp) const { SHPClose(shp); }
};
struct TDbfCloser {
  void operator()(DBFInfo* dbf) const { DBFClose(dbf); }
};
struct TObjectDestroyer {
  void operator()(SHPObject* object) const { SHPDestroyObject(object); }
};

void WriteZoneShape(SHPHandle shp, int id, const TZone& zone) {
  std::vector<int> starts;
  std::vector<double> xs;
  std::vector<double> ys;
  for (const auto& ring : zone.Rings) {
    starts.push_back(static_cast<int>(xs.size()));
    // Each ring is closed: its first vertex comes again at its end.
    for (size_t i = 0; i <= ring.size(); i += 2) {
      xs.push_back(ring[i % ring.size()]);
      ys.push_back(ring[i % ring.size() + 1]);
    }
  }
  const std::unique_ptr<SHPObject, TObjectDestroyer> object(
      SHPCreateObject(SHPT_POLYGON, id, static_cast<int>(starts.size()), starts.data(), nullptr,
                      static_cast<int>(xs.size()), xs.data(), ys.data(), nullptr, nullptr));
  if (!object || SHPWriteObject(shp, -1, object.get()) < 0) {
    throw std::runtime_error(std::string("cannot write the shape of ") + zone.Name);
  }
}

// Three zones over the grid of the rasters: a plain polygon, a park with the lake cut out of it,
// and farmland in two separate parts.
std::vector<TZone> SampleZones() {
  return {{"Reserve",
           10,
           {{500300, 6101900, 500400, 6102600, 501600, 6102700, 501800, 6101900, 501000, 6101500}}},
          {"Lake park",
           20,
           {{502100, 6102800, 503700, 6102800, 503700, 6101300, 502100, 6101300},
            {502600, 6102400, 502600, 6101800, 503200, 6101800, 503200, 6102400}}},
          {"Farms",
           30,
           {{500500, 6101000, 501500, 6101000, 501500, 6100300, 500500, 6100300},
            {502500, 6100900, 503700, 6100900, 503700, 6100200, 502500, 6100200}}}};
}

void WriteZones(const fs::path& dir, const std::vector<TZone>& zones) {
  const std::string base = (dir / "zones").string();
  const std::unique_ptr<SHPInfo, TShpCloser> shp(SHPCreate(base.c_str(), SHPT_POLYGON));
  const std::unique_ptr<DBFInfo, TDbfCloser> dbf(DBFCreate(base.c_str()));
  if (!shp || !dbf || DBFAddField(dbf.get(), "NAME", FTString, 20, 0) < 0 ||
      DBFAddField(dbf.get(), "ZONE", FTInteger, 6, 0) < 0) {
    throw std::runtime_error("cannot create " + base + ".shp and .dbf");
  }
  // A fixed date in the .dbf header, not today's, keeps the file the same from run to run.
  DBFSetLastModifiedDate(dbf.get(), 125, 1, 1);
  for (int id = 0; id < static_cast<int>(zones.size()); ++id) {
    WriteZoneShape(shp.get(), id, zones[id]);
    if (!DBFWriteStringAttribute(dbf.get(), id, 0, zones[id].Name) ||
        !DBFWriteIntegerAttribute(dbf.get(), id, 1, zones[id].Code)) {
      throw std::runtime_error("cannot write the attributes of " + base + ".dbf");
    }
  }
  std::printf("wrote %s.shp, .shx, .dbf\n", base.c_str());
}

// A world of 5-degree cells in tenths of a degree Celsius, stored as 16-bit integers: warm at the
// equator, cold at the poles, the east of every continent band a little warmer than its west, and
// a block of the Antarctic interior without stations. A global grid shows the east-west wrap of
// smoothed reads.
float Temperature(int32_t c, int32_t r) {
  if (r >= 34 && c >= 36 && c < 48) {
    return kNoData;
  }
  const double lat = 90.0 - (r + 0.5) * 5.0;
  const double lon = (-180.0 + (c + 0.5) * 5.0) / 180.0;
  const double celsius = 27.5 - 0.0068 * lat * lat + 3.0 * lon * (1.0 - lon * lon);
  return static_cast<float>(std::nearbyint(celsius * 10.0));
}

void WriteWorldTemperature(const fs::path& dir) {
  TImageHeader header = GridHeader(72, 36, -180.0f, 90.0f, 5.0f);
  header.SetRefSystem("latlon");
  header.RefUnits = "deg";
  header.FileTitle = "Annual mean temperature of the world, sample";
  header.ValueUnits = "0.1 C";
  header.Flag = true;
  header.FlagValue = kNoData;
  header.FlagDef = "No station";
  header.Lineage = "Synthetic, written by examples/make_samples";
  WriteRaster<zephra::TIntegerImage>(dir / "temperature.img", header, Temperature);
}

// Rain over the grid of the rasters in cells of 200 m, wetter on the hill and to the west, to
// half a millimetre; the same corner as the elevation was not measured. Written by the library's
// grid exporter, as other programs would hand such a grid over.
float Rainfall(int32_t c, int32_t r) {
  if (c >= 17 && r >= 12) {
    return kNoData;
  }
  const double hill = 220.0 / (1.0 + SquaredDistance(c, r, 5.0, 4.5) / 8.0);
  const double rain = 640.0 + 9.0 * (20.0 - c) + 4.0 * r + hill;
  return static_cast<float>(std::nearbyint(rain * 2.0) / 2.0);
}

void WriteRainfallGrid(const fs::path& dir) {
  TImageHeader header = GridHeader(20, 15, kGridMinX, kGridMaxY, 200.0f);
  header.Flag = true;
  header.FlagValue = kNoData;
  const auto image = zephra::TRealImage::Create("", &header);
  image->MemOnly = true;
  for (int32_t r = 0; r < header.Height; ++r) {
    for (int32_t c = 0; c < header.Width; ++c) {
      image->WriteCR(c + 1, r + 1, Rainfall(c, r));
    }
  }
  const fs::path file = dir / "rainfall.asc";
  zephra::TArcInfoGridASCIIExporter().ExportImage(image.get(), file.string(), nullptr);
  std::printf("wrote %s\n", file.string().c_str());
}

// Rings are stored closed: the first vertex comes again at the end. Every ring of the family
// turns clockwise, holes too: the library takes a hole off by its place after a separator, so a
// hole is written backwards from the shapefile's counter-clockwise form.
void AddVectorRing(zephra::TFeature& feature, const std::vector<double>& ring, bool hole) {
  const size_t points = ring.size() / 2;
  for (size_t k = 0; k <= points; ++k) {
    const size_t i = 2 * ((hole ? points - k % points : k) % points);
    feature.AddPoint(static_cast<float>(ring[i]), static_cast<float>(ring[i + 1]));
  }
}

// A ring turning counter-clockwise, which the shapefile convention makes a hole.
bool IsHole(const std::vector<double>& ring) {
  double sum = 0.0;
  for (size_t i = 0; i < ring.size(); i += 2) {
    const size_t next = (i + 2) % ring.size();
    sum += ring[i] * ring[next + 1] - ring[next] * ring[i + 1];
  }
  return sum > 0.0;
}

// The zones once more as a vector layer of the family: one feature per outer ring with its holes
// after ring separators, so the two parts of the farmland are two features of one id.
void WriteZoneLayer(const fs::path& dir, const std::vector<TZone>& zones) {
  zephra::TVector layer(zephra::ltPolygon);
  layer.Header()->SetTitle("Zones, sample");
  layer.Header()->SetRefSystem("plane");
  layer.Header()->SetRefUnits("m");
  layer.Header()->SetIDType("zone code");
  layer.Header()->SetUnitDist(1.0f);
  for (const TZone& zone : zones) {
    std::unique_ptr<zephra::TFeature> feature;
    for (const auto& ring : zone.Rings) {
      const bool hole = feature && IsHole(ring);
      if (hole) {
        feature->AddPoint(0.0f, 0.0f);  // the ring separator
        ++feature->NumOfHoles;
      } else {
        if (feature) {
          layer.AddFeature(std::move(feature));
        }
        feature = std::make_unique<zephra::TFeature>(static_cast<float>(zone.Code));
      }
      AddVectorRing(*feature, ring, hole);
    }
    layer.AddFeature(std::move(feature));
  }
  layer.SaveAs((dir / "zones.vec").string());
  std::printf("wrote %s, zones.dvc\n", (dir / "zones.vec").string().c_str());
}

// A colour ramp for heights: lowland greens, yellow and brown hills, white tops. The channels are
// on the file's 6-bit scale, so the file holds them exactly.
void WriteTerrainPalette(const fs::path& dir) {
  static constexpr uint8_t kRamp[16][3] = {{0, 24, 8},   {4, 32, 10},  {10, 38, 12}, {18, 44, 14},
                                           {28, 48, 16}, {38, 52, 18}, {48, 54, 20}, {56, 54, 22},
                                           {60, 50, 24}, {58, 44, 22}, {54, 38, 20}, {50, 32, 18},
                                           {46, 28, 18}, {50, 40, 34}, {56, 52, 48}, {63, 63, 63}};
  zephra::TZephraPalFile palette;
  for (int32_t i = 0; i < 16; ++i) {
    palette.SetColor(i, static_cast<zephra::TColor>(kRamp[i][0] * 4 | kRamp[i][1] * 4 << 8 |
                                                    kRamp[i][2] * 4 << 16));
  }
  const fs::path file = dir / "terrain.pal";
  palette.SaveToFile(file.string());
  std::printf("wrote %s\n", file.string().c_str());
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr,
                 "usage: make_samples DIR\n"
                 "  writes the sample rasters, grid, shapefile, vector layer and palette of\n"
                 "  examples/ into DIR\n");
    return 2;
  }
  try {
    const fs::path dir = argv[1];
    WriteTemperature(dir);
    WriteLandCover(dir);
    WriteElevation(dir);
    const std::vector<TZone> zones = SampleZones();
    WriteZones(dir, zones);
    WriteZoneLayer(dir, zones);
    WriteWorldTemperature(dir);
    WriteRainfallGrid(dir);
    WriteTerrainPalette(dir);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_samples: %s\n", error.what());
    return 1;
  }
}
