#pragma once
/// @file
/// The settings a host may give the library: screen width, debug channel, GeoTIFF component path,
/// file syncing and the open allocation limit. They are meant to be set once, while the host
/// starts up, before images are used from several threads.

#include <cstdint>
#include <functional>
#include <string>

#include <zephra/Common/zpExport.h>

namespace zephra {

/// Width in pixels of the primary screen; thinned opening fits rasters to it. Default 1920.
/// Never raises.
ZEPHRA_API int32_t ScreenWidth();
/// Sets ScreenWidth(). Never raises.
ZEPHRA_API void SetScreenWidth(int32_t width);

/// Sends the debug text channel to output; by default, or with an empty output, its text is
/// dropped. Never raises.
ZEPHRA_API void SetDebugOutput(std::function<void(const std::string&)> output);
/// Hands text to the debug channel. Never raises: a failing output is ignored.
ZEPHRA_API void DebugOutput(const std::string& text) noexcept;

/// Sets where the GeoTIFF writer component is loaded from. Empty (the default) means: beside the
/// loaded zephra library, then on the loader's search path. Never raises.
ZEPHRA_API void SetGeoTiffLibraryPath(const std::string& path);
/// The path SetGeoTiffLibraryPath() set. Never raises.
ZEPHRA_API std::string GeoTiffLibraryPath();

/// Whether a file that replaces another is flushed to the disk (fsync) before it takes the old
/// one's place, so that a crash of the machine cannot leave a renamed but empty file. Default
/// true. Never raises.
ZEPHRA_API bool SyncWrites();
/// Sets SyncWrites(); scratch work that can be redone may turn it off for speed. Never raises.
ZEPHRA_API void SetSyncWrites(bool sync);

/// The most bytes that one open may allocate for its cells (and a header for its legend), so
/// that a tiny damaged file claiming a huge raster is refused before memory is spent on it. 0,
/// the default, means the machine's physical memory. Never raises.
ZEPHRA_API int64_t OpenAllocationLimit();
/// Sets OpenAllocationLimit(); 0 goes back to the physical memory. Never raises.
ZEPHRA_API void SetOpenAllocationLimit(int64_t bytes);
/// Raises EImageFileError "File "%s" claims %d bytes of data, more than one open
/// may allocate (%d bytes)" when Bytes passes OpenAllocationLimit().
ZEPHRA_API void CheckOpenAllocation(const std::string& FileName, int64_t Bytes);

}  // namespace zephra

/// The debug channel under a plain C name, for code in the process that cannot link the
/// library: the GeoTIFF writer component looks it up at run time and sends its warnings and
/// errors here rather than to stderr. A null text is ignored. Never raises.
extern "C" ZEPHRA_API void zephra_debug_text(const char* text);
