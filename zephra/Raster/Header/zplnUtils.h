#pragma once
/// @file
/// Map point to zero-based cell, the one coordinate lookup that buffered and stream-backed
/// rasters share.

#include <cstdint>

#include <zephra/Common/zpExport.h>
#include <zephra/Raster/Header/zplbZephraImageHeader.h>

namespace zephra {

/// The zero-based column and row of the cell under a map point; row 0 is the north. A longitude
/// off the map is tried 360 degrees up or down on a lat/long header. Raises EInvalidOpException
/// "Header instance is null", EArgumentException "Lng is outside map bounds" (tested first) or
/// "Lat is outside map bounds", EMathError for a header with a resolution of 0; on failure col
/// and row keep their values.
ZEPHRA_API void LatLngToColRow(const TImageHeader* Header, float lat, float lng, int32_t& col,
                               int32_t& row);

}  // namespace zephra
