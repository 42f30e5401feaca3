// burn_shapes: burns the polygons of a shapefile into a new float raster that covers them and
// writes it to disk. Each feature gets its record number + 1; holes and cells outside every
// polygon get no data. A .shp holds no reference system, so the raster is marked as a plane.
//
// Usage: burn_shapes SHAPEFILE OUTPUT CELL_SIZE   e.g. burn_shapes examples/zones.shp z.doc 100

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>
#include <stdexcept>
#include <string>

#include <zephra/Common/zpPolyMap.h>
#include <zephra/zephra.h>

namespace {

constexpr float kNoData = -9999.0f;

std::optional<float> ParsePositive(const char* text) {
  float value = 0.0f;
  const char* end = text + std::strlen(text);
  const auto [stop, error] = std::from_chars(text, end, value);
  return error == std::errc() && stop == end && value > 0.0f ? std::optional<float>(value)
                                                             : std::nullopt;
}

// The box of all polygons, widened to whole cells.
zephra::TImageHeader CoveringHeader(const zephra::TPolyMap& map, float cell) {
  const zephra::TSHPPolygon* first = map.GetShape(0);  // raises for a file without polygons
  float minx = first->BoundsMinX, maxx = first->BoundsMaxX;
  float miny = first->BoundsMinY, maxy = first->BoundsMaxY;
  for (int32_t i = 1; i < map.GetShapeCount(); ++i) {
    const zephra::TSHPPolygon* shape = map.GetShape(i);
    minx = std::min(minx, shape->BoundsMinX);
    maxx = std::max(maxx, shape->BoundsMaxX);
    miny = std::min(miny, shape->BoundsMinY);
    maxy = std::max(maxy, shape->BoundsMaxY);
  }
  zephra::TImageHeader header;
  header.Minx = std::floor(minx / cell) * cell;
  header.Maxy = std::ceil(maxy / cell) * cell;
  header.Width = std::max(1, static_cast<int32_t>(std::ceil((maxx - header.Minx) / cell)));
  header.Height = std::max(1, static_cast<int32_t>(std::ceil((header.Maxy - miny) / cell)));
  header.Maxx = header.Minx + static_cast<float>(header.Width) * cell;
  header.Miny = header.Maxy - static_cast<float>(header.Height) * cell;
  header.ResolutionX = header.ResolutionY = cell;
  header.SetRefSystem("plane");
  header.FileTitle = "Polygons of " + map.FileName();
  header.Flag = true;  // so that the no-data background stays out of the value range
  header.FlagValue = kNoData;
  return header;
}

// FillShape takes one value per part; the parts of a feature share its record number.
zephra::TSingleArray FeatureNumbers(const zephra::TPolyMap& map) {
  zephra::TSingleArray values;
  for (int32_t i = 0; i < map.GetShapeCount(); ++i) {
    values.push_back(static_cast<float>(map.GetShape(i)->ShapeId + 1));
  }
  return values;
}

}  // namespace

int main(int argc, char** argv) {
  const auto cell = argc == 4 ? ParsePositive(argv[3]) : std::nullopt;
  if (!cell) {
    std::fprintf(stderr,
                 "usage: burn_shapes SHAPEFILE OUTPUT CELL_SIZE\n"
                 "  burns the polygons of SHAPEFILE into a new raster OUTPUT (.doc and .img)\n"
                 "  with cells of CELL_SIZE map units\n");
    return 2;
  }
  try {
    const zephra::TPolyMap map(argv[1], 0);
    const zephra::TImageHeader header = CoveringHeader(map, *cell);
    const auto image = zephra::TRealImage::Create(argv[2], &header);
    // A new real image holds -9990, which is not the flag value: clear it to no data first.
    for (int32_t i = 0; i < image->NumRecs; ++i) {
      image->BufferWrite(i, kNoData);
    }
    image->FillShape(argv[1], FeatureNumbers(map));
    if (image->FirstWrite) {
      throw std::runtime_error("no cell corner lies in a polygon: try a smaller CELL_SIZE");
    }
    image->MemOnly = false;  // FillShape leaves the image in memory only; this one goes to disk
    image->Close();
    std::printf("wrote %s: %d x %d cells\n", image->FileName().c_str(), header.Width,
                header.Height);
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "burn_shapes: %s\n", error.what());
    return 1;
  }
}
