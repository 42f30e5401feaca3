#pragma once
// vector info FILE, vector pip FILE X Y, vector area FILE: what a vector layer holds, which of
// its polygons hold a point (holes respected), and the area and centroid of each polygon.

#include <cstdint>
#include <string>
#include <vector>

#include "Context.h"

namespace CLI {
class App;
}

namespace zephra::cli {

struct TVectorInfoResult {
  std::string File;
  std::string LayerType;  // point, line, polygon or null
  std::string RefSystem;
  std::string Title;
  int32_t Features = 0;
  int64_t Vertices = 0;
  int64_t Holes = 0;
  float MinX = 0.0f, MaxX = 0.0f, MinY = 0.0f, MaxY = 0.0f;
};

struct TFeatureRef {
  int32_t Index = 0;  // from 0, in file order
  float Id = 0.0f;
};

struct TVectorPipResult {
  std::string File;
  double X = 0.0, Y = 0.0;
  std::vector<TFeatureRef> Features;  // every polygon that holds the point
};

struct TPolygonMeasure {
  TFeatureRef Feature;
  double Area = 0.0;  // positive for an outer ring turning clockwise, holes taken off
  float CentroidX = 0.0f, CentroidY = 0.0f;
};

struct TVectorAreaResult {
  std::string File;
  std::vector<TPolygonMeasure> Polygons;
};

class TVectorInfoCommand {
 public:
  static constexpr const char* Name = "info";
  static constexpr const char* Description =
      "Describe a vector layer (a .dvc layer or a .shp): type, features, extent";
  struct TOptions {
    std::string File;
  } Options;
  void Declare(CLI::App& app);
  TVectorInfoResult Run(const TContext& context) const;
};

class TVectorPipCommand {
 public:
  static constexpr const char* Name = "pip";
  static constexpr const char* Description = "Which polygons hold the point X Y (holes respected)";
  struct TOptions {
    std::string File;
    double X = 0.0, Y = 0.0;
  } Options;
  void Declare(CLI::App& app);
  TVectorPipResult Run(const TContext& context) const;
};

class TVectorAreaCommand {
 public:
  static constexpr const char* Name = "area";
  static constexpr const char* Description = "Area and centroid of every polygon";
  struct TOptions {
    std::string File;
  } Options;
  void Declare(CLI::App& app);
  TVectorAreaResult Run(const TContext& context) const;
};

}  // namespace zephra::cli
