#include <zephra/Raster/Header/zpHeaderUtils.h>

#include <algorithm>

namespace zephra {

namespace {

bool IsBlankOrControl(char c) {
  return static_cast<unsigned char>(c) <= ' ';
}

char LowerAscii(char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::string TrimControl(const std::string& text) {
  const auto first = std::find_if_not(text.begin(), text.end(), IsBlankOrControl);
  const auto last = std::find_if_not(text.rbegin(), text.rend(), IsBlankOrControl).base();
  return first < last ? std::string(first, last) : std::string();
}

void ZephraHeaderProcessLine(std::string Line, std::string& Key, std::string& Value) {
  const size_t colon = Line.find(':');
  if (colon == std::string::npos) {
    Key = TrimControl(Line);
    Value.clear();
    return;
  }
  Key = TrimControl(Line.substr(0, colon));
  Value = TrimControl(Line.substr(colon + 1));
}

bool SameText(const std::string& a, const std::string& b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return LowerAscii(x) == LowerAscii(y);
         });
}

}  // namespace zephra
