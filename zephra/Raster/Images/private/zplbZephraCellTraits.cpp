#include <zephra/Raster/Images/private/zplbZephraCellTraits.h>

#include <cmath>
#include <cstdio>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

int64_t RoundToInt64(float val) {
  constexpr double kLimit = 9223372036854775808.0;  // 2^63
  const double rounded = std::nearbyint(static_cast<double>(val));
  if (!(rounded >= -kLimit && rounded < kLimit)) {
    char text[120];
    std::snprintf(text, sizeof(text),
                  "Invalid floating point operation: %g has no 64-bit integer form",
                  static_cast<double>(val));
    throw EMathError(text);
  }
  return static_cast<int64_t>(rounded);
}

}  // namespace zephra
