#pragma once
// Opening a raster of any form the library reads, whole, for a window of the map or thinned, and
// reading its header alone.

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <zephra/Raster/Header/zplbZephraImageHeader.h>
#include <zephra/Raster/Images/zplbZephraAbstractImage.h>

namespace zephra::python {

// What an open reads: every cell, the cells of a window, or every n-th cell of every n-th row.
struct TOpenRequest {
  // minx, maxx, miny, maxy, in the library's order; absent for the whole raster.
  std::optional<std::array<float, 4>> Window;
  // Thinned by the largest power of two that leaves at least this many columns; absent for
  // every cell.
  std::optional<int32_t> Width;
};

// Opens path through the library's open by content (OpenAnyRaster). Text rasters and ArcInfo
// grids are read whole whatever the request says. Raises what OpenAnyRaster raises.
std::unique_ptr<TAbstractImage> OpenRaster(const std::string& path, const TOpenRequest& request);

// The file's own header, reading as few cells as the form allows: none for a .doc raster, a
// coarse sample of a GeoTIFF, all of an ArcInfo grid. The value range is
// NaN where the cells were not all read. Raises what the open raises.
TImageHeader ReadRasterHeader(const std::string& path);

}  // namespace zephra::python
