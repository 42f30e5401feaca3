#include "VectorInput.h"

#include <algorithm>
#include <filesystem>

#include <zephra/Common/zpPolyMap.h>

#include "Errors.h"

namespace zephra::cli {

namespace {

// Twice the signed area by the shoelace sum: negative for a clockwise ring.
double TwiceSignedArea(const TFloatPointArray& ring) {
  double sum = 0.0;
  for (size_t i = 0; i < ring.size(); ++i) {
    const TFloatPoint& a = ring[i];
    const TFloatPoint& b = ring[(i + 1) % ring.size()];
    sum += static_cast<double>(a.X) * b.Y - static_cast<double>(b.X) * a.Y;
  }
  return sum;
}

// Appends ring closed, as the family stores rings; a hole turned around, because the family's
// rings all turn clockwise and the library takes a hole off by its place after a separator.
void AddRing(TFeature& feature, TFloatPointArray ring, bool hole) {
  if (hole) {
    std::reverse(ring.begin(), ring.end());
  }
  for (const TFloatPoint& point : ring) {
    feature.AddPoint(point.X, point.Y);
  }
  if (!ring.empty() && (ring.front().X != ring.back().X || ring.front().Y != ring.back().Y)) {
    feature.AddPoint(ring.front().X, ring.front().Y);
  }
}

std::unique_ptr<TVector> FromShapefile(const std::string& file) {
  const TPolyMap map(file, 0);
  auto layer = std::make_unique<TVector>(ltPolygon);
  layer->FileName = file;
  std::unique_ptr<TFeature> feature;
  for (int32_t i = 0; i < map.GetShapeCount(); ++i) {
    const TSHPPolygon& part = *map.GetShape(i);
    const bool hole = feature && TwiceSignedArea(part.Vertices()) > 0.0 &&
                      feature->Id == static_cast<float>(part.ShapeId);
    if (hole) {
      feature->AddPoint(0.0f, 0.0f);  // the ring separator
      ++feature->NumOfHoles;
    } else {
      if (feature) {
        layer->AddFeature(std::move(feature));
      }
      feature = std::make_unique<TFeature>(static_cast<float>(part.ShapeId));
    }
    AddRing(*feature, part.Vertices(), hole);
  }
  if (feature) {
    layer->AddFeature(std::move(feature));
  }
  return layer;
}

}  // namespace

std::unique_ptr<TVector> OpenVector(const std::string& file) {
  return OnFile(file, [&] {
    if (SameText(std::filesystem::path(file).extension().string(), ".shp")) {
      return FromShapefile(file);
    }
    return TVector::Open(file);
  });
}

}  // namespace zephra::cli
