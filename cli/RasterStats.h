#pragma once
// One pass over the cells of a raster: the count of no-data cells and the minimum, maximum, mean
// and standard deviation of the others.

#include <cstdint>
#include <limits>

#include <zephra/zephra.h>

#include "RasterInput.h"

namespace zephra::cli {

class TProgress;

struct TRasterStats {
  int64_t Cells = 0;
  int64_t NoDataCells = 0;
  // NaN while no cell holds data.
  double Min = std::numeric_limits<double>::quiet_NaN();
  double Max = std::numeric_limits<double>::quiet_NaN();
  double Mean = std::numeric_limits<double>::quiet_NaN();
  double StdDev = std::numeric_limits<double>::quiet_NaN();  // of the population

  int64_t ValidCells() const { return Cells - NoDataCells; }
};

// Scans the buffer of image; cells that noData holds are counted, not measured.
TRasterStats ScanStats(const TAbstractImage& image, const TNoData& noData, TProgress& progress);

}  // namespace zephra::cli
