// print_cell: opens any raster of the family by its file name, prints its size and extent, and
// the value of the cell under a map point.
//
// Usage: print_cell RASTER [X Y]      e.g. print_cell examples/sample.doc 111.5 -40.5

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>
#include <string>

#include <zephra/zephra.h>

namespace {

std::optional<float> ParseNumber(const char* text) {
  float value = 0.0f;
  const char* end = text + std::strlen(text);
  const auto [stop, error] = std::from_chars(text, end, value);
  return error == std::errc() && stop == end ? std::optional<float>(value) : std::nullopt;
}

// No data, a legend category, or the plain number.
std::string ValueText(const zephra::TImageHeader& header, float value) {
  if (header.Flag && value <= header.FlagValue) {
    return "no data (" + header.FlagDef + ")";
  }
  if (value >= 0.0f && value < static_cast<float>(header.Categories.size()) &&
      value == std::floor(value)) {
    const auto index = static_cast<size_t>(value);
    return std::to_string(index) + " (" + header.Categories[index] + ")";
  }
  char number[32];
  std::snprintf(number, sizeof number, "%.7g", value);
  return number;
}

}  // namespace

int main(int argc, char** argv) {
  const bool withPoint = argc == 4;
  const auto x = withPoint ? ParseNumber(argv[2]) : std::nullopt;
  const auto y = withPoint ? ParseNumber(argv[3]) : std::nullopt;
  if ((argc != 2 && !withPoint) || (withPoint && (!x || !y))) {
    std::fprintf(stderr,
                 "usage: print_cell RASTER [X Y]\n"
                 "  prints the size and extent of RASTER (its .doc or its data file) and the\n"
                 "  value of the cell under the map point X Y\n");
    return 2;
  }
  try {
    const auto image = zephra::TGenericImage::Open(argv[1], false);
    const zephra::TImageHeader& header = *image->Header();
    std::printf("%s: %d x %d cells, x %.7g .. %.7g, y %.7g .. %.7g (%s)\n", argv[1], header.Width,
                header.Height, header.Minx, header.Maxx, header.Miny, header.Maxy,
                header.RefSystem().c_str());
    if (withPoint) {
      int32_t c = 0;
      int32_t r = 0;
      image->XYtoCR(*x, *y, c, r);  // zero-based; raises for a point off the map
      std::printf("column %d, row %d: %s\n", c + 1, r + 1,
                  ValueText(header, image->ReadCR0(c, r)).c_str());
    }
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "print_cell: %s\n", error.what());
    return 1;
  }
}
