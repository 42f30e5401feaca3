#pragma once
// Which form a raster file has, told by its first bytes and by the .doc beside it, for the open
// that is handed a file name and nothing else.

#include <string>

namespace zephra {

enum class TRasterForm { GeoTiff, Doc, ArcGrid, Unknown };

// TIFF magic first (classic or BigTIFF, either byte order), then a .doc beside the file (or the
// file being a .doc), then the grid's opening keyword. Raises EImageFileError "%s does not
// exist." when neither the file nor a .doc beside it exists, EInOutError when it can't be read.
TRasterForm RasterFormOf(const std::string& fileName);

}  // namespace zephra
