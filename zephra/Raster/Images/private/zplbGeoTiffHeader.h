#pragma once
// The header of a GeoTIFF band: its grid, cell type, georeferencing and no-data value.

#include <memory>

#include <zephra/Raster/Header/zplbZephraImageHeader.h>
#include <zephra/Raster/Images/private/zplbGeoTiffFile.h>
#include <zephra/Raster/Images/private/zplbGeoTiffLayout.h>

namespace zephra {

// The tag that holds the no-data value as text; neither libtiff nor libgeotiff knows it.
inline constexpr uint32_t kTiffTagNoData = 42113;

// Raises EImageFileError for a grid of more than 2^31 - 1 columns or rows, and as
// ReadGeoreference().
std::unique_ptr<TImageHeader> ReadGeoTiffHeader(const TTiffFile& file, const TTiffLayout& layout);

}  // namespace zephra
