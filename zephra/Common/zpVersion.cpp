#include <zephra/Common/zpVersion.h>

namespace zephra {

// Compiled into the library, so these give the version of the library that is loaded.
TVersion LibraryVersion() {
  return {ZEPHRA_VERSION_MAJOR, ZEPHRA_VERSION_MINOR, ZEPHRA_VERSION_PATCH};
}

const char* LibraryVersionString() {
  return ZEPHRA_VERSION_STRING;
}

}  // namespace zephra
