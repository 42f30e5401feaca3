#pragma once
// The settings a host may give the library. They are meant to be set once, while the host
// starts up, before images are used from several threads.

#include <cstdint>
#include <functional>
#include <string>

#include <zephra/Common/zpExport.h>

namespace zephra {

// Width in pixels of the primary screen; thinned opening fits rasters to it. Default 1920.
ZEPHRA_API int32_t ScreenWidth();
ZEPHRA_API void SetScreenWidth(int32_t width);

// The debug text channel. By default its text is dropped.
ZEPHRA_API void SetDebugOutput(std::function<void(const std::string&)> output);
ZEPHRA_API void DebugOutput(const std::string& text) noexcept;

// Where the GeoTIFF writer component is loaded from. Empty (the default) means: beside the
// loaded zephra library, then on the loader's search path.
ZEPHRA_API void SetGeoTiffLibraryPath(const std::string& path);
ZEPHRA_API std::string GeoTiffLibraryPath();

// Whether a file that replaces another is flushed to the disk (fsync) before it takes the old
// one's place, so that a crash of the machine cannot leave a renamed but empty file. Default
// true; scratch work that can be redone may turn it off for speed.
ZEPHRA_API bool SyncWrites();
ZEPHRA_API void SetSyncWrites(bool sync);

// The most bytes that one open may allocate for its cells (and a header for its legend), so that
// a tiny damaged file claiming a huge raster is refused before memory is spent on it. 0, the
// default, means the machine's physical memory.
ZEPHRA_API int64_t OpenAllocationLimit();
ZEPHRA_API void SetOpenAllocationLimit(int64_t bytes);
// Raises EImageFileError naming FileName when Bytes passes OpenAllocationLimit().
ZEPHRA_API void CheckOpenAllocation(const std::string& FileName, int64_t Bytes);

}  // namespace zephra

// The debug channel under a plain C name, for code in the process that cannot link the library:
// the GeoTIFF writer component looks it up at run time and sends libtiff's warnings and errors
// here rather than to stderr. A null text is ignored.
extern "C" ZEPHRA_API void zephra_debug_text(const char* text);
