#include "Context.h"

#include "Progress.h"

namespace zephra::cli {

void TContext::Warn(const std::string& message) const {
  if (Quiet) {
    return;
  }
  Progress.Clear();  // a warning never lands in the middle of the bar
  Err << "zephra: warning: " << message << '\n';
}

}  // namespace zephra::cli
