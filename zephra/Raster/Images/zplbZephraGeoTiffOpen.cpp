// OpenGeoTiff: the band's sample type chooses the instance of TGeoTiffImage.

#include <zephra/Raster/Images/zplbZephraGeoTiffImage.h>

#include <zephra/Raster/Images/private/zplbGeoTiffLayout.h>

namespace zephra {

namespace {

template <typename TCell>
std::unique_ptr<TAbstractImage> OpenBand(const std::string& inFileName,
                                         const TRasterOpenOptions& options) {
  if (options.Window) {
    const auto& [minx, maxx, miny, maxy] = *options.Window;
    return TGeoTiffImage<TCell>::Open(inFileName, minx, maxx, miny, maxy, options.Band);
  }
  if (options.RequestedRes > 0.0f) {
    return TGeoTiffImage<TCell>::Open(inFileName, options.RequestedRes, options.Band);
  }
  return TGeoTiffImage<TCell>::Open(inFileName, false, options.Band);
}

}  // namespace

std::unique_ptr<TAbstractImage> OpenGeoTiff(const std::string& inFileName,
                                            const TRasterOpenOptions& options) {
  TDataType cellType = dtReal;
  {
    const TTiffFile file(inFileName);
    cellType = CellTypeOf(ReadTiffLayout(file, options.Band).Sample);
  }
  switch (cellType) {
    case dtByte:
      return OpenBand<uint8_t>(inFileName, options);
    case dtInteger:
      return OpenBand<int16_t>(inFileName, options);
    case dtInteger32:
      return OpenBand<int32_t>(inFileName, options);
    case dtReal:
      break;
  }
  return OpenBand<float>(inFileName, options);
}

}  // namespace zephra
