#pragma once
// Map point to zero-based cell.

#include <cstdint>

#include <zephra/Raster/Header/zplbZephraImageHeader.h>

namespace zephra {

// The zero-based column and row of the cell under a map point. A longitude off the map is tried
// 360 degrees up or down on a lat/long header. On failure col and row keep their values.
void LatLngToColRow(const TImageHeader* Header, float lat, float lng, int32_t& col, int32_t& row);

}  // namespace zephra
