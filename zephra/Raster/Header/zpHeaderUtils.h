#pragma once
/// @file
/// The line splitter of both header formats (.doc and .dvc), and the trimming and key comparison
/// that go with it.

#include <string>

#include <zephra/Common/zpExport.h>

namespace zephra {

/// Splits Line at its first colon into Key and Value, both trimmed of white space and control
/// characters at their ends; further colons stay in Value. A line without a colon is all key.
/// Never raises.
ZEPHRA_API void ZephraHeaderProcessLine(std::string Line, std::string& Key, std::string& Value);

/// Trims everything at or below the blank from both ends, as the splitter does. Never raises.
ZEPHRA_API std::string TrimControl(const std::string& text);

/// Compares two keys or unit names without regard to the case of the letters a to z. Never
/// raises.
ZEPHRA_API bool SameText(const std::string& a, const std::string& b);

}  // namespace zephra
