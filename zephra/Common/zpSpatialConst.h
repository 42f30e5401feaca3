#pragma once
/// @file
/// The library's two no-data numbers, the tests on them, and the small array helper that smoothed
/// reads use.

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExport.h>

namespace zephra {

/// No-data constants and tests; there are no instances.
class ZEPHRA_API TSpatialConst {
 public:
  /// What fills a new real raster, what a smoothed read gives when no cell counts, the floor of
  /// the range refresh and the no-data threshold of the GeoTIFF export.
  static constexpr float MissingValue = -9990.0f;
  /// The library's flag value: the no-data value of a filled shape, of an unread node and of the
  /// grid export.
  static constexpr float FlagValue = -9999.0f;

  /// A no-data marker: NaN, or anything at or below the flag value. -9990.0 is not one, so that
  /// the fill of a new raster still counts in a running range. Never raises.
  static bool IsFlag(float value);
  /// A value that counts in a mean: finite and above -9990.0, so neither built-in no-data number
  /// counts. Never raises.
  static bool IsValue(float value);
};

/// Mean of the first Count entries, summed in double. Raises EArgumentException unless Count lies
/// in 1 .. Values.size().
ZEPHRA_API float Average(const TSingleArray& Values, int32_t Count);

}  // namespace zephra
