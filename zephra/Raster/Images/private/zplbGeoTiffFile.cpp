#include <zephra/Raster/Images/private/zplbGeoTiffFile.h>

#include <xtiffio.h>

#include <cstdarg>
#include <cstdio>
#include <mutex>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Images/private/zplbZephraImageGrid.h>

namespace zephra {

namespace {

std::string Formatted(const char* format, va_list arguments) {
  char text[1024];
  std::vsnprintf(text, sizeof text, format, arguments);
  return text;
}

void Report(TTiffFile::TMessages& messages, const char* kind, const char* module,
            const std::string& text) {
  std::string line = "GeoTIFF reader, " + std::string(kind) + ", " + messages.FileName + ": ";
  if (module != nullptr && module[0] != '\0') {
    line += std::string(module) + ": ";
  }
  DebugOutput(line + text);
}

// A non-zero result tells libtiff that the message is handled, so its global handler (which
// belongs to the whole process, and prints to stderr) stays out.
int TiffError(TIFF*, void* userData, const char* module, const char* format, va_list arguments) {
  auto& messages = *static_cast<TTiffFile::TMessages*>(userData);
  messages.LastError = Formatted(format, arguments);
  Report(messages, "libtiff error", module, messages.LastError);
  return 1;
}

int TiffWarning(TIFF*, void* userData, const char* module, const char* format, va_list arguments) {
  Report(*static_cast<TTiffFile::TMessages*>(userData), "libtiff warning", module,
         Formatted(format, arguments));
  return 1;
}

struct TOptionsFree {
  void operator()(TIFFOpenOptions* options) const noexcept { TIFFOpenOptionsFree(options); }
};

// libgeotiff adds its tags to libtiff through a tag extender that it installs at its first open
// behind an unguarded flag; installing it once here keeps two threads' first opens from racing.
void InstallGeoTiffTags() {
  static std::once_flag installed;
  std::call_once(installed, XTIFFInitialize);
}

}  // namespace

TTiffFile::TTiffFile(const std::string& fileName)
    : FFileName(fileName), FMessages(std::make_unique<TMessages>(TMessages{fileName, {}})) {
  if (!FileExists(fileName)) {
    throw EImageFileError(fileName + " does not exist.");
  }
  InstallGeoTiffTags();
  const std::unique_ptr<TIFFOpenOptions, TOptionsFree> options(TIFFOpenOptionsAlloc());
  if (!options) {
    throw std::bad_alloc();
  }
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), TiffError, FMessages.get());
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), TiffWarning, FMessages.get());
  // A damaged directory can claim arrays of any size; libtiff refuses those past this bound.
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), OpenAllocationLimit());
  // Not memory-mapped ("m"): a file that another process cuts short while it is open must give
  // a read error, not a SIGBUS in the host.
  FTiff.reset(TIFFOpenExt(fileName.c_str(), "rm", options.get()));
  if (!FTiff) {
    Raise("Opening");
  }
}

TTiffFile::~TTiffFile() = default;

void TTiffFile::Raise(const std::string& what) const {
  std::string text = what + " of " + FFileName + " failed: it is no TIFF that can be read";
  if (!FMessages->LastError.empty()) {
    text = what + " of " + FFileName + " failed: " + FMessages->LastError;
  }
  throw EImageFileError(text);
}

std::vector<double> TTiffFile::Doubles(uint32_t tag) const {
  const TIFFField* field = TIFFFindField(Handle(), tag, TIFF_ANY);
  if (field == nullptr || TIFFFieldDataType(field) != TIFF_DOUBLE || !TIFFFieldPassCount(field)) {
    return {};
  }
  const double* values = nullptr;
  uint32_t count = 0;
  int found = 0;
  if (TIFFFieldReadCount(field) == TIFF_VARIABLE2) {
    found = TIFFGetField(Handle(), tag, &count, &values);
  } else {
    uint16_t shortCount = 0;
    found = TIFFGetField(Handle(), tag, &shortCount, &values);
    count = shortCount;
  }
  if (found != 1 || values == nullptr) {
    return {};
  }
  return std::vector<double>(values, values + count);
}

std::optional<std::string> TTiffFile::Text(uint32_t tag) const {
  const TIFFField* field = TIFFFindField(Handle(), tag, TIFF_ANY);
  if (field == nullptr || TIFFFieldDataType(field) != TIFF_ASCII) {
    return std::nullopt;
  }
  const char* text = nullptr;
  uint32_t count = 0;
  int found = 0;
  if (!TIFFFieldPassCount(field)) {
    found = TIFFGetField(Handle(), tag, &text);
    count = text != nullptr ? static_cast<uint32_t>(std::char_traits<char>::length(text)) : 0;
  } else if (TIFFFieldReadCount(field) == TIFF_VARIABLE2) {
    found = TIFFGetField(Handle(), tag, &count, &text);
  } else {
    uint16_t shortCount = 0;
    found = TIFFGetField(Handle(), tag, &shortCount, &text);
    count = shortCount;
  }
  if (found != 1 || text == nullptr) {
    return std::nullopt;
  }
  // A counted text need not end in a NUL, and the one it ends in is no part of it.
  std::string value(text, count);
  return value.substr(0, value.find('\0'));
}

}  // namespace zephra
