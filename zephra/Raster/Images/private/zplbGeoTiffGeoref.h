#pragma once
// The georeferencing of a GeoTIFF as a header's bounds, reference system and units.

#include <zephra/Raster/Header/zplbZephraImageHeader.h>
#include <zephra/Raster/Images/private/zplbGeoTiffFile.h>
#include <zephra/Raster/Images/private/zplbGeoTiffLayout.h>

namespace zephra {

// Sets the bounds, resolutions, reference system, RefUnits and Lineage of header. A north-up
// grid comes from a tie point with a pixel scale or from a transformation matrix; pixel-is-point
// moves it half a cell north-west. A file without either is a plane grid of cell size 1 whose
// north-west corner is (0, Height). Raises EImageFileError for a rotated, sheared or south-up
// grid, one tied by control points only, or one whose numbers are no finite sizes.
void ReadGeoreference(const TTiffFile& file, const TTiffLayout& layout, TImageHeader& header);

}  // namespace zephra
