#pragma once
// render IN OUT.png [--palette FILE] [--range MIN MAX] [--width W]: a quicklook picture, the
// cells coloured from a palette stretched over a value range, no data transparent, thinned to
// about W columns by the library's thinned open.

#include <cstdint>
#include <string>
#include <vector>

#include "Context.h"
#include "RasterOutput.h"

namespace CLI {
class App;
}

namespace zephra::cli {

class TRenderCommand {
 public:
  static constexpr const char* Name = "render";
  static constexpr const char* Description =
      "Render a raster as a PNG: palette colours over a value range, no data transparent";

  struct TOptions {
    std::string In;
    std::string Out;
    std::string Palette;        // empty: the library's built-in table
    std::vector<double> Range;  // min max; empty: the range of the valid cells
    int32_t Width = 0;          // 0: every column
    bool Overwrite = false;
  } Options;

  void Declare(CLI::App& app);
  TWriteResult Run(const TContext& context) const;
};

}  // namespace zephra::cli
