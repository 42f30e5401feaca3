#pragma once
// The tags of the one image in the file: its sample layout and compression, the no-data value,
// and the georeferencing. Each returns false as soon as libtiff or libgeotiff refuses a step.

#include <tiffio.h>

#include <cstdint>

#include "gtwGeometry.h"

namespace tvgeotifflib {

// GDAL_NODATA, the tag GIS readers take the no-data value from, as text.
inline constexpr ttag_t kTagNoData = 42113;
inline constexpr const char* kNoDataText = "nan";

// One band of 32-bit floats in strips of rowsPerStrip rows, DEFLATE with the floating-point
// predictor: all that decides the bytes of a strip.
bool WriteSampleTags(TIFF* tif, const TRasterGeometry& geometry, uint32_t rowsPerStrip);
// The sample tags with the file's strip height, and the no-data tag.
bool WriteImageTags(TIFF* tif, const TRasterGeometry& geometry);

// Tie point, pixel scale and GeoKeys: pixel-is-area, geographic WGS 84 for a lat/long raster
// and a user-defined projected system for any other.
bool WriteGeoreference(TIFF* tif, const TRasterGeometry& geometry);

}  // namespace tvgeotifflib
