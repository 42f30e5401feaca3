// A text raster: a .doc beside a data file of one number per line, opened as TAsciiImage in each
// of its forms, or by the generic open. Input: the open parameters, the .doc text, a NUL byte,
// the data text. Options: bit 0 generic open, bit 3 an old data file.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "../FuzzRaster.h"

using namespace zephra;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Setup();
  fuzz::TInputParts input(data, size);
  const fuzz::TOpenParams params = fuzz::TOpenParams::Take(input);
  static const std::string doc = fuzz::ScratchFile("text.doc");
  static const std::string img = fuzz::ScratchFile("text.img");
  fuzz::WriteFile(doc, input.TakeText());
  fuzz::WriteFile(img, input.Rest());
  if (params.Option(3)) {
    fuzz::MakeFileOld(img);
  }

  std::unique_ptr<TAbstractImage> image;
  fuzz::Try([&] {
    image = params.Option(0) ? TGenericImage::Open(img, false)
                             : fuzz::OpenAs(TAsciiImage::ClassRef(), img, params);
  });
  if (!image) {
    return 0;
  }
  fuzz::ExerciseImage(*image);
  image->Close();
  return 0;
}
