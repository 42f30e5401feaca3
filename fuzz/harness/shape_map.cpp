// A shapefile read into the shape map, the ring test on it, and the shape fill into a small
// raster over the map's extent. Input: the length of the .shp part (32 bits, little-endian), the
// .shp bytes, the .shx bytes.

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <zephra/Common/zpPolyMap.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "../FuzzRaster.h"

using namespace zephra;

namespace {

constexpr int32_t kShapesToLocate = 64;
constexpr int32_t kFillCells = 8;

struct TBox {
  float MinX = INFINITY, MaxX = -INFINITY, MinY = INFINITY, MaxY = -INFINITY;
  bool Usable() const { return std::isfinite(MaxX - MinX) && std::isfinite(MaxY - MinY); }
};

// Every vertex lies on its own ring, so the ring test must answer 0 there.
TBox LocateVertices(const TPolyMap& map) {
  TBox box;
  for (int32_t i = 0; i < std::min(map.GetShapeCount(), kShapesToLocate); ++i) {
    const TSHPPolygon& shape = *map.GetShape(i);
    const TFloatPointArray& vertices = shape.Vertices();
    if (vertices.empty()) {
      continue;
    }
    for (const TFloatPoint& vertex : {vertices.front(), vertices[vertices.size() / 2]}) {
      if (shape.PointInPoly(vertex) != 0) {
        std::abort();
      }
    }
    shape.PointInPoly(TFloatPoint{shape.BoundsMinX / 2 + shape.BoundsMaxX / 2,
                                  shape.BoundsMinY / 2 + shape.BoundsMaxY / 2});
    box.MinX = std::min(box.MinX, shape.BoundsMinX);
    box.MaxX = std::max(box.MaxX, shape.BoundsMaxX);
    box.MinY = std::min(box.MinY, shape.BoundsMinY);
    box.MaxY = std::max(box.MaxY, shape.BoundsMaxY);
  }
  return box;
}

void Fill(const std::string& shp, const TBox& box) {
  TImageHeader header;
  header.Width = header.Height = kFillCells;
  header.Minx = box.MinX;
  header.Maxx = box.MaxX;
  header.Miny = box.MinY;
  header.Maxy = box.MaxY;
  auto image = TByteImage::Create(fuzz::ScratchFile("fill.img"), &header);
  image->MemOnly = true;
  fuzz::Try([&] { image->FillShape(shp, {}); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Setup();
  fuzz::TInputParts input(data, size);
  const auto shpSize = input.Take<uint32_t>();
  static const std::string shp = fuzz::ScratchFile("shapes.shp");
  fuzz::WriteFile(shp, input.TakeBytes(shpSize));
  fuzz::WriteFile(fuzz::ScratchFile("shapes.shx"), input.Rest());

  std::unique_ptr<TPolyMap> map;
  fuzz::Try([&] { map = std::make_unique<TPolyMap>(shp, 0); });
  if (!map) {
    return 0;
  }
  const TBox box = LocateVertices(*map);
  if (box.Usable()) {
    Fill(shp, box);
  }
  return 0;
}
