#pragma once
// convert IN OUT [--to FORMAT] [--window XMIN XMAX YMIN YMAX] [--res R] [--nodata V]
// [--overwrite]: any readable raster to a binary .doc raster of any cell type, a text raster, an
// ArcInfo grid, XYZ text or GeoTIFF.

#include <optional>
#include <string>
#include <vector>

#include "Context.h"
#include "RasterOutput.h"

namespace CLI {
class App;
}

namespace zephra::cli {

class TConvertCommand {
 public:
  static constexpr const char* Name = "convert";
  static constexpr const char* Description =
      "Write a raster in another format: .doc raster (any cell type), text raster, ArcInfo grid, "
      "XYZ, GeoTIFF";

  struct TOptions {
    std::string In;
    std::string Out;
    std::string To;             // empty: from the extension of Out
    std::vector<float> Window;  // minx maxx miny maxy, or empty
    float Res = 0.0f;           // 0: every cell
    std::optional<float> NoData;
    bool Overwrite = false;
  } Options;

  void Declare(CLI::App& app);
  TWriteResult Run(const TContext& context) const;
};

}  // namespace zephra::cli
