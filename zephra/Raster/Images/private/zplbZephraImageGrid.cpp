#include <zephra/Raster/Images/private/zplbZephraImageGrid.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Header/zpHeaderUtils.h>

namespace zephra {

namespace {

constexpr double kMaxInt32 = std::numeric_limits<int32_t>::max();

float Resolution(float low, float high, int32_t cells) {
  return static_cast<float>((static_cast<double>(high) - low) / cells);
}

}  // namespace

std::string DataFileName(const std::string& inFileName) {
  std::filesystem::path name(inFileName);
  if (SameText(name.extension().string(), ".DOC")) {
    name.replace_extension(".img");
  }
  return name.string();
}

std::string DocFileName(const std::string& dataFileName) {
  return std::filesystem::path(dataFileName).replace_extension(".doc").string();
}

bool FileExists(const std::string& fileName) {
  std::error_code ignored;
  return std::filesystem::exists(fileName, ignored);
}

int32_t CellCount(const TImageHeader& header) {
  const int64_t cells = static_cast<int64_t>(header.Width) * header.Height;
  if (header.Width < 0 || header.Height < 0 || cells > std::numeric_limits<int32_t>::max()) {
    throw EImageFileError("An image of " + std::to_string(header.Width) + " x " +
                          std::to_string(header.Height) +
                          " cells cannot be held: each side must lie in 0 .. 2^31 - 1 and the "
                          "cell count below 2^31");
  }
  return static_cast<int32_t>(cells);
}

int32_t StepForScreen(int32_t width) {
  const int64_t screen = std::max(ScreenWidth(), 1);
  int64_t step = 1;
  while (width / (2 * step) >= screen) {
    step *= 2;
  }
  return static_cast<int32_t>(step);
}

int32_t StepForResolution(float requested, float fileResolution) {
  const double ratio = static_cast<double>(requested) / fileResolution + 0.01;
  if (!(ratio >= 1.0)) {
    return 1;
  }
  return static_cast<int32_t>(std::min(std::trunc(ratio), kMaxInt32));
}

void ReduceGrid(TImageHeader& header, int32_t step) {
  header.Width /= step;
  header.Height /= step;
  if (header.Width <= 0 || header.Height <= 0) {
    throw EMathError("Division by zero: a step of " + std::to_string(step) + " leaves a grid of " +
                     std::to_string(header.Width) + " x " + std::to_string(header.Height) +
                     " cells, with no column or no row");
  }
  header.ResolutionX = Resolution(header.Minx, header.Maxx, header.Width);
  header.ResolutionY = Resolution(header.Miny, header.Maxy, header.Height);
}

int32_t RoundToCells(double cells, const char* what) {
  const double rounded = std::nearbyint(cells);
  if (!(std::fabs(rounded) <= kMaxInt32)) {
    throw EMathError(std::string("Invalid floating point operation: the ") + what +
                     " is no cell count (the resolution of the file may be 0)");
  }
  return static_cast<int32_t>(rounded);
}

}  // namespace zephra
