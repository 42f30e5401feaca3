#pragma once
// rasterize SHP OUT (--like RASTER | --extent XMIN YMIN XMAX YMAX (--size W H | --res R))
// [--field NAME | --burn V] [--type T] [--nodata V]: burns the polygons of a shapefile into a new
// raster written to disk. The background is the declared no-data value.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Context.h"
#include "RasterOutput.h"

namespace CLI {
class App;
}

namespace zephra::cli {

class TRasterizeCommand {
 public:
  static constexpr const char* Name = "rasterize";
  static constexpr const char* Description =
      "Burn the polygons of a shapefile into a new raster: one value per feature from a numeric "
      ".dbf field, or one burn value";

  struct TOptions {
    std::string Shp;
    std::string Out;
    std::string Like;            // a raster whose grid the new one takes
    std::vector<double> Extent;  // xmin ymin xmax ymax
    std::vector<int32_t> Size;   // width height
    double Res = 0.0;
    std::string Field;
    std::optional<double> Burn;
    std::string Type;             // cell type word; empty: real
    std::optional<float> NoData;  // empty: -9999, or 0 for bytes
    bool Overwrite = false;
  } Options;

  void Declare(CLI::App& app);
  TWriteResult Run(const TContext& context) const;
};

}  // namespace zephra::cli
