#pragma once
/// @file
/// OpenAnyRaster: one entry point that opens a raster of any form the library reads, chosen by the
/// file's content rather than its name, for hosts (the command-line tool, the Python package) that
/// are handed a file name and nothing else.
//
// The generic open and the image factory keep their own rule, that only the .doc header chooses
// the class; this entry point is the one place where the content of the file decides.

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <zephra/Common/zpExport.h>
#include <zephra/Raster/Images/zplbZephraAbstractImage.h>

namespace zephra {

/// How OpenAnyRaster reads the file. The defaults open band 1 whole.
struct TRasterOpenOptions {
  /// > 0: thinned to about this cell size, in map units; 0 reads every cell.
  float RequestedRes = 0.0f;
  /// The window minx, maxx, miny, maxy of the map to read, thinned to the screen.
  std::optional<std::array<float, 4>> Window = std::nullopt;
  /// The band of a multi-band GeoTIFF, counted from 1; every other form has only band 1.
  int32_t Band = 1;
};

/// Opens fileName by what it holds:
/// - a TIFF (little- or big-endian, classic or BigTIFF) opens as a TGeoTiffImage, with every
///   option;
/// - a file with the .doc header beside it (or the .doc itself) opens through the generic open
///   (TGenericImage): whole, for a window (TGenericImage::OpenZoomed) or thinned to RequestedRes
///   (a text raster always whole);
/// - a text file that starts with the ArcInfo grid keywords (ncols, nrows, xllcorner ...) opens
///   whole as a TArcGridImage: its text is read through in any case, so a window or a resolution
///   is ignored.
/// A TIFF is recognised before a .doc beside it. Raises EArgumentException for a Band below 1, or
/// above 1 for a form with a single band; EImageFileError "%s does not exist." for a missing file
/// and "%s is not a raster that can be read: ..." for content of no known form; and what the
/// chosen open raises. A failed open creates and changes no file.
ZEPHRA_API std::unique_ptr<TAbstractImage> OpenAnyRaster(const std::string& fileName,
                                                         const TRasterOpenOptions& options = {});

}  // namespace zephra
