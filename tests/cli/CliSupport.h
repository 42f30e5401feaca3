#pragma once
// What the tool's suites share: the sample files, and the tool run in-process.

#include <sstream>
#include <string>
#include <vector>

#include "App.h"
#include "Context.h"
#include "Progress.h"

namespace zephra::test {

inline std::string Sample(const std::string& name) {
  return std::string(ZEPHRA_EXAMPLES_DIR) + "/" + name;
}

struct TRun {
  int Code;
  std::string Out;
  std::string Err;
};

// "zephra args..." as the executable runs it, with stderr no terminal.
inline TRun Zephra(const std::vector<std::string>& args) {
  std::ostringstream out, err;
  const int code = cli::RunZephra(args, out, err, false);
  return {code, out.str(), err.str()};
}

// A context for commands driven directly, with nothing printed.
struct TQuietContext {
  std::ostringstream Out, Err;
  cli::TProgress Progress{Err, false};
  cli::TContext Context{Out, Err, true, cli::TFormat::Text, Progress};
};

}  // namespace zephra::test
