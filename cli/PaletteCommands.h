#pragma once
// palette show FILE, palette blend FILE I1 I2 OUT: a palette's colour table, and a copy with a
// ramp blended between two of its entries.

#include <cstdint>
#include <string>

#include <zephra/zephra.h>

#include "Context.h"
#include "RasterOutput.h"

namespace CLI {
class App;
}

namespace zephra::cli {

struct TPaletteResult {
  std::string File;
  TColorArray Colors;  // red in the low byte, then green, then blue
};

class TPaletteShowCommand {
 public:
  static constexpr const char* Name = "show";
  static constexpr const char* Description = "Print the colour table of a palette file";
  struct TOptions {
    std::string File;
  } Options;
  void Declare(CLI::App& app);
  TPaletteResult Run(const TContext& context) const;
};

class TPaletteBlendCommand {
 public:
  static constexpr const char* Name = "blend";
  static constexpr const char* Description =
      "Write a copy of a palette with entries I1 .. I2 blended from the colour at I1 towards the "
      "one at I2";
  struct TOptions {
    std::string File;
    int32_t Index1 = 0;
    int32_t Index2 = 0;
    std::string Out;
    bool Overwrite = false;
  } Options;
  void Declare(CLI::App& app);
  TWriteResult Run(const TContext& context) const;
};

}  // namespace zephra::cli
