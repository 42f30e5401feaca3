#pragma once
// Numbers as text for people and for the files the tool writes itself: the shortest text that
// reads back as the same number, with a decimal point whatever the locale.

#include <cstddef>
#include <string>

namespace zephra::cli {

// The shortest text of a 32-bit float that parses back to it exactly ("0.1", "6103000").
std::string ShortText(float value);
// The same for a double.
std::string ShortText(double value);

// Room that WriteShortText needs at out.
constexpr size_t kShortTextRoom = 64;
// ShortText(value) written at out, for the loops over every cell; returns its end.
char* WriteShortText(char* out, float value);
char* WriteShortText(char* out, double value);

// A number in text of the command line or of a points or key file: decimal point, optional
// sign and exponent, nothing else. False for anything else.
bool ParseNumber(const std::string& text, double& value);

}  // namespace zephra::cli
