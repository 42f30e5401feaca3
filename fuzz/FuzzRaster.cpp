#include "FuzzRaster.h"

#include <algorithm>

#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Images/zplbSmoothing.h>

namespace zephra::fuzz {

TOpenParams TOpenParams::Take(TInputParts& input) {
  TOpenParams params{};
  params.How = static_cast<THow>(input.Take<uint8_t>() % 4);
  params.Options = input.Take<uint8_t>();
  // A small screen makes even a few KB of cells worth thinning.
  SetScreenWidth(1 + input.Take<uint8_t>() % 64);
  for (float& bound : params.Bounds) {
    bound = input.Take<float>();
  }
  return params;
}

std::unique_ptr<TAbstractImage> OpenAs(TAbstractImageClass imageClass,
                                       const std::string& inFileName, const TOpenParams& params) {
  const float* b = params.Bounds;
  switch (params.How) {
    case TOpenParams::hWhole:
      return imageClass->Open(inFileName, false);
    case TOpenParams::hThinned:
      return imageClass->Open(inFileName, true);
    case TOpenParams::hResolution:
      return imageClass->Open(inFileName, b[0]);
    case TOpenParams::hWindow:
      break;
  }
  return imageClass->Open(inFileName, b[0], b[1], b[2], b[3]);
}

void ExerciseImage(TAbstractImage& image) {
  const TImageHeader& header = *image.Header();
  const int32_t width = header.Width;
  const int32_t height = header.Height;
  Try([&] { image.ReadCR(1, 1); });
  Try([&] { image.ReadCR0(width - 1, height - 1); });
  Try([&] {
    int32_t c = 0;
    int32_t r = 0;
    image.XYtoCR(header.Maxx, header.Miny, c, r);
    float x = 0.0f;
    float y = 0.0f;
    image.CRtoXY(c + 1, r + 1, x, y);
    image.ReadXY(x, y);
  });
  Try([&] { image.ReadRect(1, 1, std::clamp(width, 0, 4), std::clamp(height, 0, 4)); });
  Try([&] {
    TSmoothingIndexList cells;
    image.ReadCRWithSmoothing(width / 2, height / 2, 1, &cells);
    cells.ToString();
  });
  Try([&] { image.GetRange(); });
  Try([&] { header.Text(); });
  Try([&] { TImageFactory::Copy(&image); });
}

void ExerciseOpened(TAbstractImage* image, const TOpenParams& params) {
  if (image == nullptr) {
    return;
  }
  ExerciseImage(*image);
  if (params.Option(5)) {
    const float* b = params.Bounds;
    Try([&] { image->ReOpen(b[2], b[3], b[0], b[1]); });
    ExerciseImage(*image);
  }
  image->Close();
}

}  // namespace zephra::fuzz
