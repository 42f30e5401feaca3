#include "gtwMessages.h"

#include <dlfcn.h>

#include <cstdarg>
#include <cstdio>

namespace tvgeotifflib {

namespace {

using TSink = void (*)(const char*);
constexpr const char* kSinkName = "zephra_debug_text";

// A host that loads zephra with RTLD_LOCAL keeps its names out of the global scope; the library
// is still found there by its soname, which the build passes in.
void* LoadedHostLibrary() {
#ifdef GTW_HOST_LIBRARY
  return dlopen(GTW_HOST_LIBRARY, RTLD_LAZY | RTLD_NOLOAD);
#else
  return nullptr;
#endif
}

void Forward(const char* text) noexcept {
  if (const auto sink = reinterpret_cast<TSink>(dlsym(RTLD_DEFAULT, kSinkName))) {
    sink(text);
    return;
  }
  void* host = LoadedHostLibrary();
  if (host == nullptr) {
    dlerror();  // leave no failed lookup behind for the host's own dlerror()
    return;
  }
  if (const auto sink = reinterpret_cast<TSink>(dlsym(host, kSinkName))) {
    sink(text);
  }
  dlclose(host);
  dlerror();
}

void ForwardFormatted(const char* kind, const char* module, const char* format,
                      va_list arguments) noexcept {
  char message[1024];
  std::vsnprintf(message, sizeof message, format, arguments);
  char text[1280];
  if (module != nullptr && module[0] != '\0') {
    std::snprintf(text, sizeof text, "GeoTIFF writer, %s: %s: %s", kind, module, message);
  } else {
    std::snprintf(text, sizeof text, "GeoTIFF writer, %s: %s", kind, message);
  }
  Forward(text);
}

// A non-zero result tells libtiff that the message is handled, so its global handler stays out.
int TiffError(TIFF*, void*, const char* module, const char* format, va_list arguments) {
  ForwardFormatted("libtiff error", module, format, arguments);
  return 1;
}

int TiffWarning(TIFF*, void*, const char* module, const char* format, va_list arguments) {
  ForwardFormatted("libtiff warning", module, format, arguments);
  return 1;
}

}  // namespace

TTiffOptionsPtr MessageOptions() {
  TTiffOptionsPtr options(TIFFOpenOptionsAlloc());
  if (options) {
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), TiffError, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), TiffWarning, nullptr);
  }
  return options;
}

void GeoTiffMessage(GTIF*, int level, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  ForwardFormatted(level == LIBGEOTIFF_ERROR ? "libgeotiff error" : "libgeotiff warning", nullptr,
                   format, arguments);
  va_end(arguments);
}

}  // namespace tvgeotifflib
