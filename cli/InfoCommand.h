#pragma once
// info FILE [--stats]: what a raster is (its form, size, extent, resolution, reference system,
// no data and legend) and, with --stats, what its cells hold.

#include <optional>
#include <string>

#include <zephra/zephra.h>

#include "Context.h"
#include "RasterStats.h"

namespace CLI {
class App;
}

namespace zephra::cli {

struct TInfoResult {
  std::string File;
  std::string Form;     // doc, ascii, grid or geotiff
  std::string TypeId;   // the image's type word: REAL, BYTE, INT, INT32, ASCII, ARCGRID
  TImageHeader Header;  // as the raster declares it
  std::optional<TRasterStats> Stats;
};

class TInfoCommand {
 public:
  static constexpr const char* Name = "info";
  static constexpr const char* Description =
      "Describe a raster (.doc raster, ArcInfo grid, GeoTIFF); --stats scans its cells";

  struct TOptions {
    std::string File;
    bool Stats = false;
  } Options;

  void Declare(CLI::App& app);
  TInfoResult Run(const TContext& context) const;
};

}  // namespace zephra::cli
