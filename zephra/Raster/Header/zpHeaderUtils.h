#pragma once
// The line splitter of both header formats (.doc and .dvc).

#include <string>

namespace zephra {

// Splits Line at its first colon into Key and Value, both trimmed of white space and control
// characters at their ends. A line without a colon is all key.
void ZephraHeaderProcessLine(std::string Line, std::string& Key, std::string& Value);

// Trims everything at or below the blank from both ends, as the splitter does.
std::string TrimControl(const std::string& text);

// Compares two keys or unit names without regard to the case of the letters a to z.
bool SameText(const std::string& a, const std::string& b);

}  // namespace zephra
