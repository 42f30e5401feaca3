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
void WriteZones(const fs::path& dir) {
  const std::vector<TZone> zones = {
      {"Reserve",
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

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr,
                 "usage: make_samples DIR\n"
                 "  writes the sample rasters and the sample shapefile of examples/ into DIR\n");
    return 2;
  }
  try {
    const fs::path dir = argv[1];
    WriteTemperature(dir);
    WriteLandCover(dir);
    WriteElevation(dir);
    WriteZones(dir);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_samples: %s\n", error.what());
    return 1;
  }
}
