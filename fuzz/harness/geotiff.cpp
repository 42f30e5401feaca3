// A GeoTIFF opened whole, thinned, at a resolution or for a window of the map, by the GeoTIFF
// open or by the open that tells the form from the content. Input: the open parameters, the band
// (one byte, from 1), the bytes of the .tif.
//
// Options: bit 0 the open by content, bit 5 a second window by ReOpen.

#include <zephra/Raster/Images/zplbRasterOpen.h>
#include <zephra/Raster/Images/zplbZephraGeoTiffImage.h>

#include "../FuzzRaster.h"

using namespace zephra;

namespace {

TRasterOpenOptions Options(const fuzz::TOpenParams& params, int32_t band) {
  TRasterOpenOptions options{.Band = band};
  const float* b = params.Bounds;
  if (params.How == fuzz::TOpenParams::hWindow) {
    options.Window = std::array{b[0], b[1], b[2], b[3]};
  } else if (params.How == fuzz::TOpenParams::hResolution) {
    options.RequestedRes = b[0];
  }
  return options;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Setup();
  fuzz::TInputParts input(data, size);
  const fuzz::TOpenParams params = fuzz::TOpenParams::Take(input);
  const int32_t band = input.Take<uint8_t>() % 8;
  static const std::string tif = fuzz::ScratchFile("raster.tif");
  fuzz::WriteFile(tif, input.Rest());

  const TRasterOpenOptions options = Options(params, band);
  std::unique_ptr<TAbstractImage> image;
  fuzz::Try(
      [&] { image = params.Option(0) ? OpenAnyRaster(tif, options) : OpenGeoTiff(tif, options); });
  fuzz::ExerciseOpened(image.get(), params);
  return 0;
}
