// An ArcInfo ASCII grid: the whole input is the grid file.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "../FuzzRaster.h"

using namespace zephra;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Setup();
  static const std::string grid = fuzz::ScratchFile("grid.asc");
  fuzz::WriteFile(grid, std::string_view(reinterpret_cast<const char*>(data), size));

  std::unique_ptr<TArcGridImage> image;
  fuzz::Try([&] { image = TArcGridImage::Open(grid, false); });
  if (!image) {
    return 0;
  }
  fuzz::ExerciseImage(*image);
  image->Close();
  return 0;
}
