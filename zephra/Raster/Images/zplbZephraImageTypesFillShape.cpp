// FillShape: burns the polygons of a shapefile into the cells of an image, in memory only. Each
// cell stands for its north-west corner; the first polygon that holds that point fills it.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <vector>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPolyMap.h>
#include <zephra/Common/zpSpatialConst.h>

namespace zephra {

namespace {

class TShapeFill {
 public:
  TShapeFill(TAbstractImage& image, const TPolyMap& map, const TSingleArray& values)
      : FImage(image),
        FMap(map),
        FValues(values),
        FCount(map.GetShapeCount()),
        FRows(static_cast<size_t>(FCount)) {}

  // Shapes whose box spans the row's Y, in map order. The search tests only these: every other
  // shape fails its box test on this row anyway, so the result is the same.
  void StartRow(float y) {
    FRowShapes.clear();
    for (int32_t i = 0; i < FCount; ++i) {
      const TSHPPolygon* shape = FMap.GetShape(i);
      if (y >= shape->BoundsMinY && y <= shape->BoundsMaxY) {
        FRowShapes.push_back(i);
      }
    }
  }

  // The current shape first, as the scan has it from the cell before; else the first shape in
  // map order whose box and rings take the point. A search that fills nothing leaves the last
  // shape of the map current.
  void FillCell(const TFloatPoint& P, int32_t c, int32_t r) {
    if (TryShape(FCurrent, P, c, r)) {
      return;
    }
    for (const int32_t i : FRowShapes) {
      const TSHPPolygon* shape = FMap.GetShape(i);
      if (P.X < shape->BoundsMinX || P.X > shape->BoundsMaxX) {
        continue;
      }
      if (TryShape(i, P, c, r)) {
        FCurrent = i;
        return;
      }
    }
    FCurrent = FCount - 1;
  }

 private:
  // The shape test: a point inside one part of a feature is filled only if no adjacent part of
  // the same feature also holds it, which is how a ring inside a ring becomes a hole.
  bool TryShape(int32_t index, const TFloatPoint& P, int32_t c, int32_t r) {
    const TSHPPolygon* shape = FMap.GetShape(index);
    if (shape->PointInPoly(P, FRows[static_cast<size_t>(index)]) < 0) {
      return false;
    }
    if (shape->PartCount != 1 && (SiblingHolds(index, -1, P) || SiblingHolds(index, +1, P))) {
      return false;
    }
    FImage.WriteCR(c + 1, r + 1, FValues.empty() ? TSpatialConst::MissingValue : FValues[index]);
    return true;
  }

  bool SiblingHolds(int32_t index, int32_t direction, const TFloatPoint& P) {
    const int32_t shapeId = FMap.GetShape(index)->ShapeId;
    for (int32_t i = index + direction; i >= 0 && i < FCount; i += direction) {
      const TSHPPolygon* sibling = FMap.GetShape(i);
      if (sibling->ShapeId != shapeId) {
        return false;
      }
      if (sibling->PointInPoly(P, FRows[static_cast<size_t>(i)]) >= 0) {
        return true;
      }
    }
    return false;
  }

  TAbstractImage& FImage;
  const TPolyMap& FMap;
  const TSingleArray& FValues;
  const int32_t FCount;
  int32_t FCurrent = 0;
  std::vector<int32_t> FRowShapes;
  // Each shape's row, kept here rather than in the map, so that the map holds no state of a
  // fill and one map could serve several fills at once.
  std::vector<TSHPPolygon::TRowCache> FRows;
};

}  // namespace

void TAbstractImage::FillShape(const std::string& ShpFile, const TSingleArray& dataarr) {
  // Cell points come from the file's grid and WriteCR addresses the buffer's, so a thinned or
  // windowed image would get its cells from the wrong points: it is refused before any change.
  if (IsReduced()) {
    throw EInvalidOpException("FillShape needs an image opened whole, not thinned or windowed (" +
                              FFileName + ")");
  }
  FHeader->Flag = true;
  FHeader->FlagValue = TSpatialConst::FlagValue;
  FHeader->FlagDef = "Missing Data";
  FHeader->Categories.clear();
  MemOnly = true;

  TPolyMap map(ShpFile, 0);
  const int32_t count = map.GetShapeCount();
  if (count == 0) {
    return;  // a map with no shapes fills nothing
  }
  // One value per shape, or none at all; a short list would be read past its end.
  if (!dataarr.empty() && dataarr.size() < static_cast<size_t>(count)) {
    throw EArgumentException("FillShape needs one value for each of the " + std::to_string(count) +
                             " shapes of " + ShpFile + ", got " + std::to_string(dataarr.size()));
  }

  const TImageHeader& grid = *FHeader;
  const double spanX = static_cast<double>(grid.Maxx) - grid.Minx;
  const double spanY = static_cast<double>(grid.Maxy) - grid.Miny;
  TShapeFill fill(*this, map, dataarr);
  for (int32_t r = 0; r < grid.Height; ++r) {
    const auto y = static_cast<float>(grid.Maxy - r * spanY / grid.Height);
    fill.StartRow(y);
    for (int32_t c = 0; c < grid.Width; ++c) {
      const auto x = static_cast<float>(c * spanX / grid.Width + grid.Minx);
      fill.FillCell(TFloatPoint{x, y}, c, r);
    }
  }
}

}  // namespace zephra
