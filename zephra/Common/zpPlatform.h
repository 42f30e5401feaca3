#pragma once
// The three settings a host may give the library. They are meant to be set once, while the host
// starts up, before images are used from several threads.

#include <cstdint>
#include <functional>
#include <string>

namespace zephra {

// Width in pixels of the primary screen; thinned opening fits rasters to it. Default 1920.
int32_t ScreenWidth();
void SetScreenWidth(int32_t width);

// The debug text channel. By default its text is dropped.
void SetDebugOutput(std::function<void(const std::string&)> output);
void DebugOutput(const std::string& text) noexcept;

// Where the GeoTIFF writer component is loaded from. Empty (the default) means: beside the
// loaded zephra library, then on the loader's search path.
void SetGeoTiffLibraryPath(const std::string& path);
std::string GeoTiffLibraryPath();

}  // namespace zephra
