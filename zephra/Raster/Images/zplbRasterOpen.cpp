// OpenAnyRaster: the form of the file chooses the class, the options choose the open.

#include <zephra/Raster/Images/zplbRasterOpen.h>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Images/private/zplbRasterForm.h>
#include <zephra/Raster/Images/zplbZephraGeoTiffImage.h>
#include <zephra/Raster/Images/zplbZephraImageFactory.h>
#include <zephra/Raster/Images/zplbZephraTextImage.h>

namespace zephra {

namespace {

void CheckSingleBand(const std::string& fileName, int32_t band) {
  if (band != 1) {
    throw EArgumentException("Band " + std::to_string(band) + " asked of " + fileName +
                             ", which has only band 1");
  }
}

// The reduced forms go through the class the .doc names, as the generic open does; a text
// raster has no reduced read and opens whole.
std::unique_ptr<TAbstractImage> OpenDoc(const std::string& fileName,
                                        const TRasterOpenOptions& options) {
  if (options.Window) {
    const auto& [minx, maxx, miny, maxy] = *options.Window;
    return TGenericImage::OpenZoomed(fileName, minx, maxx, miny, maxy);
  }
  if (options.RequestedRes > 0.0f && TImageHeader::Open(fileName)->FileType != ftAscii) {
    return TImageFactory::GetImageClassFromHeader(fileName)->Open(fileName, options.RequestedRes);
  }
  return TGenericImage::Open(fileName, false);
}

}  // namespace

std::unique_ptr<TAbstractImage> OpenAnyRaster(const std::string& fileName,
                                              const TRasterOpenOptions& options) {
  if (options.Band < 1) {
    throw EArgumentException("Band " + std::to_string(options.Band) + " asked of " + fileName +
                             ": bands count from 1");
  }
  switch (RasterFormOf(fileName)) {
    case TRasterForm::GeoTiff:
      return OpenGeoTiff(fileName, options);
    case TRasterForm::Doc:
      CheckSingleBand(fileName, options.Band);
      return OpenDoc(fileName, options);
    case TRasterForm::ArcGrid:
      CheckSingleBand(fileName, options.Band);
      return TArcGridImage::Open(fileName, false);
    case TRasterForm::Unknown:
      break;
  }
  throw EImageFileError(fileName +
                        " is not a raster that can be read: it is no TIFF, has no .doc header "
                        "beside it and does not start as an ArcInfo grid");
}

}  // namespace zephra
