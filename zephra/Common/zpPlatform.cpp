#include <zephra/Common/zpPlatform.h>

#include <unistd.h>

#include <atomic>
#include <utility>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

namespace {

// The plain values are atomic so that a host thread may read them while another sets them; the
// function and the path are meant to be set while the host starts up.
struct TPlatformSettings {
  std::atomic<int32_t> ScreenWidth = 1920;
  std::function<void(const std::string&)> DebugOutput;
  std::string GeoTiffLibraryPath;
  std::atomic<bool> SyncWrites = true;
  std::atomic<int64_t> OpenAllocationLimit = 0;
};

TPlatformSettings& Settings() {
  static TPlatformSettings settings;
  return settings;
}

int64_t PhysicalMemory() {
  const long pages = ::sysconf(_SC_PHYS_PAGES);
  const long pageSize = ::sysconf(_SC_PAGESIZE);
  if (pages <= 0 || pageSize <= 0) {
    return INT64_MAX;  // unknown: leave the system to refuse what it cannot give
  }
  return static_cast<int64_t>(pages) * pageSize;
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

bool SyncWrites() {
  return Settings().SyncWrites;
}

void SetSyncWrites(bool sync) {
  Settings().SyncWrites = sync;
}

int64_t OpenAllocationLimit() {
  const int64_t limit = Settings().OpenAllocationLimit;
  return limit > 0 ? limit : PhysicalMemory();
}

void SetOpenAllocationLimit(int64_t bytes) {
  Settings().OpenAllocationLimit = bytes > 0 ? bytes : 0;
}

void CheckOpenAllocation(const std::string& FileName, int64_t Bytes) {
  const int64_t limit = OpenAllocationLimit();
  if (Bytes > limit) {
    throw EImageFileError("File \"" + FileName + "\" claims " + std::to_string(Bytes) +
                          " bytes of data, more than one open may allocate (" +
                          std::to_string(limit) + " bytes)");
  }
}

}  // namespace zephra

// Not declared noexcept, so that its type is exactly the plain void(const char*) its callers call
// it through; nothing escapes it all the same, as they are C frames.
extern "C" void zephra_debug_text(const char* text) {
  if (text == nullptr) {
    return;
  }
  try {
    zephra::DebugOutput(text);
  } catch (...) {
    // No memory for the text: it is dropped, as a debug text may be.
  }
}
