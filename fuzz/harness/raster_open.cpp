// A binary raster (.doc beside .img) opened whole, thinned, at a resolution or for a window of the
// map, through a typed class or the generic open. Input: the open parameters, the .doc text, a
// NUL byte, the cells of the .img.
//
// Options: bit 0 generic open, bits 1-2 the typed class, bit 3 an old data file (so that the
// generic open refreshes the range), bit 4 open by the .doc name, bit 5 a second window by ReOpen.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "../FuzzRaster.h"

using namespace zephra;

namespace {

TAbstractImageClass TypedClass(int index) {
  const TAbstractImageClass classes[] = {TRealImage::ClassRef(), TByteImage::ClassRef(),
                                         TIntegerImage::ClassRef(), TInteger32Image::ClassRef()};
  return classes[index & 3];
}

std::unique_ptr<TAbstractImage> Open(const std::string& name, const fuzz::TOpenParams& params) {
  if (!params.Option(0)) {
    return fuzz::OpenAs(TypedClass(params.Options >> 1), name, params);
  }
  const float* b = params.Bounds;
  if (params.How == fuzz::TOpenParams::hWindow) {
    return TGenericImage::OpenZoomed(name, b[0], b[1], b[2], b[3]);
  }
  return TGenericImage::Open(name, params.How == fuzz::TOpenParams::hThinned);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Setup();
  fuzz::TInputParts input(data, size);
  const fuzz::TOpenParams params = fuzz::TOpenParams::Take(input);
  static const std::string doc = fuzz::ScratchFile("raster.doc");
  static const std::string img = fuzz::ScratchFile("raster.img");
  fuzz::WriteFile(doc, input.TakeText());
  fuzz::WriteFile(img, input.Rest());
  if (params.Option(3)) {
    fuzz::MakeFileOld(img);
  }

  std::unique_ptr<TAbstractImage> image;
  fuzz::Try([&] { image = Open(params.Option(4) ? doc : img, params); });
  fuzz::ExerciseOpened(image.get(), params);
  return 0;
}
