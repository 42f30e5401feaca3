#pragma once
// No-data tests and the small array helper that smoothed reads use.

#include <zephra/Common/zpCommonTypes.h>

namespace zephra {

class TSpatialConst {
 public:
  // What fills a new real raster, what a smoothed read gives when no cell counts, the floor of
  // the range refresh and the no-data threshold of the GeoTIFF export.
  static constexpr float MissingValue = -9990.0f;
  // The library's flag value: the no-data value of a filled shape, of an unread node and of the
  // grid export.
  static constexpr float FlagValue = -9999.0f;

  // A no-data marker: NaN, or anything at or below the flag value. -9990.0 is not one, so that
  // the fill of a new raster still counts in a running range.
  static bool IsFlag(float value);
  // A value that counts in a mean: finite and above -9990.0, so neither built-in no-data number
  // counts.
  static bool IsValue(float value);
};

// Mean of the first Count entries. Count must lie in 1 .. Values.size().
float Average(const TSingleArray& Values, int32_t Count);

}  // namespace zephra
