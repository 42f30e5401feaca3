#pragma once
// The whole tool as one call, so that tests run it in-process exactly as the executable does.

#include <ostream>
#include <string>
#include <vector>

namespace zephra::cli {

// Runs "zephra ARGS...": results to out, diagnostics to err, a progress bar on err only when
// errIsTerminal. Returns the exit status: 0 done, 1 a command failed (one line on err, naming
// the file), 2 a usage error.
int RunZephra(const std::vector<std::string>& args, std::ostream& out, std::ostream& err,
              bool errIsTerminal);

}  // namespace zephra::cli
