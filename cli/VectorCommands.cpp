#include "VectorCommands.h"

#include <algorithm>

#include <CLI/CLI.hpp>

#include "Errors.h"
#include "VectorInput.h"

namespace zephra::cli {

namespace {

std::string LayerTypeName(TLayerType type) {
  switch (type) {
    case ltPoint:
      return "point";
    case ltLine:
      return "line";
    case ltPolygon:
      return "polygon";
    case ltNull:
      break;
  }
  return "null";
}

std::unique_ptr<TVector> OpenPolygons(const std::string& file) {
  auto layer = OpenVector(file);
  if (layer->LayerType != ltPolygon) {
    throw TCommandError(file + ": a " + LayerTypeName(layer->LayerType) +
                        " layer, and this needs polygons");
  }
  return layer;
}

// The extent of the vertices, without the ring separators at (0, 0) that the layer's own extent
// takes in.
void MeasureExtent(const TVector& layer, TVectorInfoResult& result) {
  bool first = true;
  for (int32_t i = 0; i < layer.Count(); ++i) {
    const TFeature& feature = *layer.GetFeature(i);
    for (int32_t k = 0; k < feature.Count(); ++k) {
      const TGeoPoint& point = *feature.GetPoint(k);
      if (feature.NumOfHoles > 0 && IsRingSeparator(point)) {
        continue;
      }
      result.MinX = first ? point.X() : std::min(result.MinX, point.X());
      result.MaxX = first ? point.X() : std::max(result.MaxX, point.X());
      result.MinY = first ? point.Y() : std::min(result.MinY, point.Y());
      result.MaxY = first ? point.Y() : std::max(result.MaxY, point.Y());
      first = false;
    }
  }
}

// The centroid of a polygon with its holes, in double, with the rings signed as the library's
// area signs them (every ring after a separator is a hole, taken off). The library's own
// centroid keeps its sums in 32-bit floats and takes the moments of the outer ring alone, which
// on map coordinates of millions of metres lands outside the polygon.
TFloatPoint Centroid(const TFeature& polygon) {
  const TGeoPoint origin = *polygon.GetPoint(0);  // products relative to it keep their digits
  double area = 0.0, sumX = 0.0, sumY = 0.0;
  bool inHoles = false;
  for (int32_t k = 0; k + 1 < polygon.Count(); ++k) {
    const TGeoPoint& a = *polygon.GetPoint(k);
    const TGeoPoint& b = *polygon.GetPoint(k + 1);
    if (IsRingSeparator(a)) {
      inHoles = true;
      continue;
    }
    if (IsRingSeparator(b)) {
      continue;
    }
    const double x1 = a.X() - origin.X(), y1 = a.Y() - origin.Y();
    const double x2 = b.X() - origin.X(), y2 = b.Y() - origin.Y();
    const double cross = (x2 * y1 - x1 * y2) * (inHoles ? -1.0 : 1.0);
    area += cross;
    sumX += (x1 + x2) * cross;
    sumY += (y1 + y2) * cross;
  }
  if (area == 0.0) {
    throw TCommandError("a polygon without area has no centroid");
  }
  return TFloatPoint::Create(static_cast<float>(sumX / (3.0 * area) + origin.X()),
                             static_cast<float>(sumY / (3.0 * area) + origin.Y()));
}

void DeclareFile(CLI::App& app, std::string& file) {
  app.add_option("FILE", file, "The layer: a coordinate file with its .dvc, or a .shp")->required();
}

}  // namespace

void TVectorInfoCommand::Declare(CLI::App& app) {
  DeclareFile(app, Options.File);
}

TVectorInfoResult TVectorInfoCommand::Run(const TContext&) const {
  const auto layer = OpenVector(Options.File);
  TVectorInfoResult result;
  result.File = Options.File;
  result.LayerType = LayerTypeName(layer->LayerType);
  result.RefSystem = layer->Header()->RefSystem();
  result.Title = layer->Header()->Title();
  result.Features = layer->Count();
  for (int32_t i = 0; i < layer->Count(); ++i) {
    result.Vertices += layer->GetFeature(i)->Count() - layer->GetFeature(i)->NumOfHoles;
    result.Holes += layer->GetFeature(i)->NumOfHoles;
  }
  MeasureExtent(*layer, result);
  return result;
}

void TVectorPipCommand::Declare(CLI::App& app) {
  DeclareFile(app, Options.File);
  app.add_option("X", Options.X, "X of the point")->required();
  app.add_option("Y", Options.Y, "Y of the point")->required();
}

TVectorPipResult TVectorPipCommand::Run(const TContext&) const {
  const auto layer = OpenPolygons(Options.File);
  TVectorPipResult result{Options.File, Options.X, Options.Y, {}};
  OnFile(Options.File, [&] {
    for (int32_t i = 0; i < layer->Count(); ++i) {
      if (layer->PointInPoly(static_cast<float>(Options.X), static_cast<float>(Options.Y), i)) {
        result.Features.push_back({i, layer->GetFeature(i)->Id});
      }
    }
  });
  return result;
}

void TVectorAreaCommand::Declare(CLI::App& app) {
  DeclareFile(app, Options.File);
}

TVectorAreaResult TVectorAreaCommand::Run(const TContext&) const {
  const auto layer = OpenPolygons(Options.File);
  TVectorAreaResult result{Options.File, {}};
  OnFile(Options.File, [&] {
    for (int32_t i = 0; i < layer->Count(); ++i) {
      const TFeature* polygon = layer->GetFeature(i);
      const TFloatPoint centroid = Centroid(*polygon);
      result.Polygons.push_back(
          {{i, polygon->Id}, layer->CalcArea(polygon), centroid.X, centroid.Y});
    }
  });
  return result;
}

}  // namespace zephra::cli
