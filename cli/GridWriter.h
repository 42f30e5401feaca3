#pragma once
// The ArcInfo ASCII grid as the tool writes it: every number in the shortest text that reads back
// as the same float, so that the cell size of a lat/long raster (which the library's exporter
// rounds to four decimals) and every cell survive, and the raster's own no-data value as
// NODATA_value.

#include <filesystem>

#include <zephra/zephra.h>

#include "RasterInput.h"

namespace zephra::cli {

class TProgress;

// Writes the cells of source to path, no-data cells (as noData says) as noDataOut, which is also
// the NODATA_value. Raises std::runtime_error for cells that are not square, which the format
// cannot hold, and when the file cannot be written.
void WriteGrid(const TAbstractImage& source, const TNoData& noData, float noDataOut,
               const std::filesystem::path& path, TProgress& progress);

}  // namespace zephra::cli
