#pragma once
// reclass IN OUT (--key-file F | --class LO:HI=V[:NAME] ...): every cell through a key of
// value ranges; the class names become the legend of the new raster.

#include <cstdint>
#include <string>
#include <vector>

#include "Context.h"
#include "RasterOutput.h"

namespace CLI {
class App;
}

namespace zephra::cli {

struct TReclassResult {
  TWriteResult Written;
  int64_t Unclassified = 0;  // cells in no class, which keep their value
};

class TReclassCommand {
 public:
  static constexpr const char* Name = "reclass";
  static constexpr const char* Description =
      "Reclassify a raster through value ranges LO:HI=V[:NAME]; the names become its legend";

  struct TOptions {
    std::string In;
    std::string Out;
    std::string KeyFile;               // one class a line, as --class; # comments
    std::vector<std::string> Classes;  // LO:HI=V[:NAME]
    std::string Type;                  // empty: the smallest cell type that holds the classes
    bool Overwrite = false;
  } Options;

  void Declare(CLI::App& app);
  TReclassResult Run(const TContext& context) const;
};

}  // namespace zephra::cli
