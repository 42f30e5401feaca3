#include "ScreenWidth.h"

#include <limits>

#include <zephra/Common/zpPlatform.h>

namespace zephra::python {

namespace {

constexpr int32_t kFullWidth = std::numeric_limits<int32_t>::max();

}  // namespace

void TScreenWidth::Widen() {
  const std::unique_lock lock(Mutex());
  SetScreenWidth(kFullWidth);
}

TScreenWidth::TNarrowing::TNarrowing(int32_t width) {
  SetScreenWidth(width);
}

TScreenWidth::TNarrowing::~TNarrowing() {
  SetScreenWidth(kFullWidth);
}

std::shared_mutex& TScreenWidth::Mutex() {
  static std::shared_mutex mutex;
  return mutex;
}

}  // namespace zephra::python
