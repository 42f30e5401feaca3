#pragma once
// The shape fill as it was before it went by runs: every cell tested on its own through the point
// test, the current shape first, then the shapes whose box holds the point, in map order. Faster
// fills must give the same raster.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <zephra/Common/zpPolyMap.h>
#include <zephra/Common/zpSpatialConst.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

namespace zephra::test {

class TReferenceFill {
 public:
  TReferenceFill(TAbstractImage& image, const std::string& shpFile, const TSingleArray& values)
      : FImage(image),
        FMap(shpFile, 0),
        FValues(values),
        FRows(static_cast<std::size_t>(Count())) {}

  // Fills the image on the grid of its header, as FillShape does; the header stays as it was.
  void Run() {
    const TImageHeader& grid = *FImage.Header();
    const double spanX = static_cast<double>(grid.Maxx) - grid.Minx;
    const double spanY = static_cast<double>(grid.Maxy) - grid.Miny;
    for (int32_t r = 0; r < grid.Height && Count() > 0; ++r) {
      const auto y = static_cast<float>(grid.Maxy - r * spanY / grid.Height);
      StartRow(y);
      for (int32_t c = 0; c < grid.Width; ++c) {
        FillCell({static_cast<float>(c * spanX / grid.Width + grid.Minx), y}, c, r);
      }
    }
  }

 private:
  int32_t Count() const { return FMap.GetShapeCount(); }

  // The search looks only at shapes whose box spans the row: the others fail its box test.
  void StartRow(float y) {
    FRowShapes.clear();
    for (int32_t i = 0; i < Count(); ++i) {
      if (y >= FMap.GetShape(i)->BoundsMinY && y <= FMap.GetShape(i)->BoundsMaxY) {
        FRowShapes.push_back(i);
      }
    }
  }

  // A search that fills nothing leaves the last shape of the map current.
  void FillCell(const TFloatPoint& P, int32_t c, int32_t r) {
    if (TryShape(FCurrent, P, c, r)) {
      return;
    }
    for (const int32_t i : FRowShapes) {
      const TSHPPolygon& s = *FMap.GetShape(i);
      if (P.X >= s.BoundsMinX && P.X <= s.BoundsMaxX && TryShape(i, P, c, r)) {
        FCurrent = i;
        return;
      }
    }
    FCurrent = Count() - 1;
  }

  // A part of a multi-part feature fills only where no adjacent part of the feature holds too.
  bool TryShape(int32_t i, const TFloatPoint& P, int32_t c, int32_t r) {
    const TSHPPolygon& shape = *FMap.GetShape(i);
    if (shape.PointInPoly(P, FRows[static_cast<std::size_t>(i)]) < 0) {
      return false;
    }
    if (shape.PartCount != 1 && (SiblingHolds(i, -1, P) || SiblingHolds(i, +1, P))) {
      return false;
    }
    FImage.WriteCR(
        c + 1, r + 1,
        FValues.empty() ? TSpatialConst::MissingValue : FValues[static_cast<std::size_t>(i)]);
    return true;
  }

  bool SiblingHolds(int32_t i, int32_t step, const TFloatPoint& P) {
    const int32_t shapeId = FMap.GetShape(i)->ShapeId;
    for (int32_t k = i + step; k >= 0 && k < Count(); k += step) {
      const TSHPPolygon& sibling = *FMap.GetShape(k);
      if (sibling.ShapeId != shapeId) {
        return false;
      }
      if (sibling.PointInPoly(P, FRows[static_cast<std::size_t>(k)]) >= 0) {
        return true;
      }
    }
    return false;
  }

  TAbstractImage& FImage;
  const TPolyMap FMap;
  const TSingleArray& FValues;
  std::vector<TSHPPolygon::TRowCache> FRows;
  int32_t FCurrent = 0;
  std::vector<int32_t> FRowShapes;
};

}  // namespace zephra::test
