#pragma once
// XYZ text as the tool writes it: one line "x y value" per cell, at the centre of the cell, rows
// north first, every number in the shortest text that reads back as the same number. The
// library's XYZ exporter rounds to four decimals and, on a raster that is not lat/long, counts y
// up from the south edge while it reads the rows from the north, which mirrors the map.

#include <filesystem>

#include <zephra/zephra.h>

#include "RasterInput.h"

namespace zephra::cli {

class TProgress;

// Writes the cells of source to path, no-data cells (as noData says) as noDataOut. Raises
// std::runtime_error when the file cannot be written.
void WriteXyz(const TAbstractImage& source, const TNoData& noData, float noDataOut,
              const std::filesystem::path& path, TProgress& progress);

}  // namespace zephra::cli
