#pragma once
// sample FILE X Y [X Y ...] [--points FILE] [--cr] [--smooth LEVEL] [--csv]: the values of a
// raster at map points, or at columns and rows, optionally the smoothed mean around them.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Context.h"

namespace CLI {
class App;
}

namespace zephra::cli {

struct TSampleValue {
  double X = 0.0;  // the map point; with --cr the north-west corner of the cell
  double Y = 0.0;
  int32_t Col = 0;  // 1-based
  int32_t Row = 0;
  std::optional<float> Value;  // empty for no data
};

struct TSampleResult {
  std::string File;
  std::optional<int32_t> Smooth;
  bool Csv = false;
  std::vector<TSampleValue> Values;
};

class TSampleCommand {
 public:
  static constexpr const char* Name = "sample";
  static constexpr const char* Description =
      "Values at map points X Y (or columns and rows with --cr), optionally smoothed";

  struct TOptions {
    std::string File;
    std::vector<double> Coords;  // X Y pairs
    std::string PointsFile;      // lines of "X Y" (blank, tab or comma between; # comments)
    bool ColRow = false;
    std::optional<int32_t> Smooth;
    bool Csv = false;
  } Options;

  void Declare(CLI::App& app);
  TSampleResult Run(const TContext& context) const;
};

}  // namespace zephra::cli
