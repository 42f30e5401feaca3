#pragma once
// What every command runs with: the streams of the process, the quiet switch and the progress
// bar. Commands print nothing themselves but warnings; their results go to the printers.

#include <ostream>
#include <string>

namespace zephra::cli {

class TProgress;

// How a result is printed.
enum class TFormat { Text, Json };

struct TContext {
  std::ostream& Out;   // data: results, help
  std::ostream& Err;   // diagnostics: warnings, errors, progress
  bool Quiet = false;  // no warnings, no progress, no reports of written files
  TFormat Format = TFormat::Text;
  TProgress& Progress;

  // "zephra: warning: <message>" on Err, unless Quiet. Where a format cannot keep what the
  // input holds and there is no lossless route, the loss is said here.
  void Warn(const std::string& message) const;
};

}  // namespace zephra::cli
