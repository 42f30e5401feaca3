#pragma once
// Input rasters: the one place where the tool asks the library to open one, and what the tool
// counts as no data in it.

#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <zephra/zephra.h>

namespace zephra::cli {

// No data as the tool reads it: NaN, and anything at or below the declared no-data value, as
// the library's own readers treat a header's flag.
struct TNoData {
  std::optional<float> Value;

  bool Holds(float value) const { return std::isnan(value) || (Value && value <= *Value); }
};

// The no-data value that header declares.
TNoData NoDataOf(const TImageHeader& header);

// Opens file by its content: a binary or text .doc raster, an ArcInfo grid, a GeoTIFF. The
// NODATA_value of an ArcInfo grid, which the grid reader keeps without declaring it, becomes
// the header's flag, so that its no-data cells stay no data in all the tool does with them.
// Raises TCommandError naming the file.
std::unique_ptr<TAbstractImage> OpenRaster(const std::string& file,
                                           const TRasterOpenOptions& options = {});

// The header of file: read from the .doc beside it without touching the cells where there is
// one, else from the raster opened whole. Raises TCommandError naming the file.
TImageHeader RasterHeader(const std::string& file);

// True for the forms that the library always reads whole (text rasters, ArcInfo grids), which
// ignore a window or a resolution.
bool ReadsWholeOnly(const TAbstractImage& image);

// The form of an opened raster, in the words of convert --to: "doc" (binary .doc raster),
// "ascii" (text .doc raster), "grid" (ArcInfo grid) or "geotiff".
std::string FormOf(const TAbstractImage& image, const std::string& given);

// The files behind an opened raster (the name given, its data file and its .doc), which no
// output of a command may replace.
std::vector<std::string> FilesOf(const TAbstractImage& image, const std::string& given);

}  // namespace zephra::cli
