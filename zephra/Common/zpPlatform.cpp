#include <zephra/Common/zpPlatform.h>

#include <utility>

namespace zephra {

namespace {

struct TPlatformSettings {
  int32_t ScreenWidth = 1920;
  std::function<void(const std::string&)> DebugOutput;
  std::string GeoTiffLibraryPath;
};

TPlatformSettings& Settings() {
  static TPlatformSettings settings;
  return settings;
}

}  // namespace

int32_t ScreenWidth() {
  return Settings().ScreenWidth;
}

void SetScreenWidth(int32_t width) {
  Settings().ScreenWidth = width;
}

void SetDebugOutput(std::function<void(const std::string&)> output) {
  Settings().DebugOutput = std::move(output);
}

void DebugOutput(const std::string& text) noexcept {
  const auto& output = Settings().DebugOutput;
  if (!output) {
    return;
  }
  try {
    output(text);
  } catch (...) {
    // A debug channel that fails must not turn a diagnostic into a second failure.
  }
}

void SetGeoTiffLibraryPath(const std::string& path) {
  Settings().GeoTiffLibraryPath = path;
}

std::string GeoTiffLibraryPath() {
  return Settings().GeoTiffLibraryPath;
}

}  // namespace zephra
