#include "Errors.h"

#include <filesystem>

namespace zephra::cli {

std::string OneLine(const std::string& message) {
  std::string line;
  bool pendingBreak = false;
  for (const char c : message) {
    if (c == '\r' || c == '\n') {
      pendingBreak = !line.empty();
      continue;
    }
    if (pendingBreak) {
      line += line.back() == ':' ? " " : ": ";
      pendingBreak = false;
    }
    line += c;
  }
  return line;
}

std::string AboutFile(const std::string& file, const std::string& message) {
  const std::string line = OneLine(message);
  const std::string name = std::filesystem::path(file).filename().string();
  if (!name.empty() && line.find(name) != std::string::npos) {
    return line;
  }
  return file + ": " + line;
}

}  // namespace zephra::cli
