#include "Raster.h"

#include <cmath>
#include <limits>

#include <zephra/Common/zpSpatialConst.h>

namespace zephra::python {

void MarkWritten(TAbstractImage& image) {
  TImageHeader& header = *image.Header();
  // The cells that the library's own writes leave out of the range: those at or below the
  // declared no-data value and the library's flag value, and NaN.
  const float noData = header.Flag ? std::fmax(header.FlagValue, TSpatialConst::FlagValue)
                                   : TSpatialConst::FlagValue;
  const float lowest = std::nextafter(noData, std::numeric_limits<float>::infinity());
  const TRange range =
      image.GetRangeBetween(lowest, std::numeric_limits<float>::max(), /*silent=*/true);
  header.SetRange(range);
  image.FirstWrite = false;
}

}  // namespace zephra::python
