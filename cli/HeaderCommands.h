#pragma once
// header get FILE [KEY], header set FILE KEY VALUE: read or edit one field of a .doc raster
// header. The header is rewritten through the library, which replaces the file safely.

#include <string>
#include <utility>
#include <vector>

#include "Context.h"

namespace CLI {
class App;
}

namespace zephra::cli {

struct THeaderResult {
  std::string File;                                         // the .doc
  std::vector<std::pair<std::string, std::string>> Fields;  // key and value, in file order
  bool OneKey = false;                                      // a single field was asked for
};

// The same fields after a change, as a report of what was written.
struct THeaderSetResult {
  THeaderResult Header;
};

class THeaderGetCommand {
 public:
  static constexpr const char* Name = "get";
  static constexpr const char* Description = "Print the fields of a .doc header, or one of them";

  struct TOptions {
    std::string File;
    std::string Key;  // empty: every field
  } Options;

  void Declare(CLI::App& app);
  THeaderResult Run(const TContext& context) const;
};

class THeaderSetCommand {
 public:
  static constexpr const char* Name = "set";
  static constexpr const char* Description =
      "Change one field of a .doc header; the file is replaced only when the new one is whole";

  struct TOptions {
    std::string File;
    std::string Key;
    std::string Value;
  } Options;

  void Declare(CLI::App& app);
  THeaderSetResult Run(const TContext& context) const;
};

}  // namespace zephra::cli
