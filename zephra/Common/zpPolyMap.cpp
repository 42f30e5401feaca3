#include <zephra/Common/zpPolyMap.h>

#include <utility>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

TSHPPolygon::TSHPPolygon(int32_t ShapeId, int32_t PartCount, TFloatPointArray Vertices)
    : ShapeId(ShapeId), PartCount(PartCount), FRing(std::move(Vertices)) {
  BoundsMinX = FRing.MinX();
  BoundsMaxX = FRing.MaxX();
  BoundsMinY = FRing.MinY();
  BoundsMaxY = FRing.MaxY();
}

void TPolyMap::CheckIndex(int32_t index) const {
  if (index < 0 || index >= GetShapeCount()) {
    throw EListError("Shape index " + std::to_string(index) + " is outside the " +
                     std::to_string(GetShapeCount()) + " shapes of \"" + FFileName + "\"");
  }
}

TSHPPolygon* TPolyMap::GetShape(int32_t index) {
  CheckIndex(index);
  return &FShapes[static_cast<std::size_t>(index)];
}

const TSHPPolygon* TPolyMap::GetShape(int32_t index) const {
  CheckIndex(index);
  return &FShapes[static_cast<std::size_t>(index)];
}

}  // namespace zephra
