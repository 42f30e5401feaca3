#include "RasterStats.h"

#include <algorithm>
#include <cmath>

#include "Progress.h"

namespace zephra::cli {

// Welford's running mean and sum of squares, which stay exact enough over millions of cells
// where the plain sum of squares would cancel.
TRasterStats ScanStats(const TAbstractImage& image, const TNoData& noData, TProgress& progress) {
  TRasterStats stats;
  stats.Cells = image.NumRecs;
  double mean = 0.0;
  double squares = 0.0;
  int64_t valid = 0;
  const int32_t width = std::max(image.Header()->Width, 1);
  progress.Begin("scanning", image.NumRecs);
  for (int32_t i = 0; i < image.NumRecs; ++i) {
    const double value = image.BufferRead(i);
    if (i % width == 0) {
      progress.Update(i);
    }
    if (noData.Holds(static_cast<float>(value))) {
      ++stats.NoDataCells;
      continue;
    }
    stats.Min = valid == 0 ? value : std::min(stats.Min, value);
    stats.Max = valid == 0 ? value : std::max(stats.Max, value);
    ++valid;
    const double delta = value - mean;
    mean += delta / static_cast<double>(valid);
    squares += delta * (value - mean);
  }
  progress.Clear();
  if (valid > 0) {
    stats.Mean = mean;
    stats.StdDev = std::sqrt(squares / static_cast<double>(valid));
  }
  return stats;
}

}  // namespace zephra::cli
