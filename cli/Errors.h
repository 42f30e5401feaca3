#pragma once
// The two kinds of failure the tool reports: a usage error (exit status 2), which the arguments
// alone show, and a failure of the work on a file (exit status 1). Both print as one line,
// "zephra: <message>", and the message names the file.

#include <stdexcept>
#include <string>
#include <utility>

namespace zephra::cli {

// Arguments that make no sense together or alone, found after the parser accepted them.
class TUsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// A command that failed on a file; the message is one line and names the file.
class TCommandError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// message on one line: runs of line ends become ": ", as library messages carry the cause of a
// failure on lines of its own.
std::string OneLine(const std::string& message);

// The failure message for file: the library's message on one line, led by the file name
// unless the message names it already.
std::string AboutFile(const std::string& file, const std::string& message);

// Runs work; a failure other than the tool's own comes out as a TCommandError about file.
template <typename TWork>
auto OnFile(const std::string& file, TWork&& work) -> decltype(work()) {
  try {
    return std::forward<TWork>(work)();
  } catch (const TCommandError&) {
    throw;
  } catch (const TUsageError&) {
    throw;
  } catch (const std::exception& error) {
    throw TCommandError(AboutFile(file, error.what()));
  }
}

}  // namespace zephra::cli
