#include "RasterOpen.h"

#include <filesystem>
#include <fstream>
#include <limits>
#include <string_view>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Images/zplbRasterOpen.h>

#include "ScreenWidth.h"

namespace zephra::python {

namespace {

// The library's window form reads the whole extent, thinned to the screen, for four zeros.
constexpr std::array<float, 4> kWholeExtent{0.0f, 0.0f, 0.0f, 0.0f};
// The screen of a header read: wide enough that only a very flat grid thins to no row at all.
constexpr int32_t kSampleWidth = 16;

// The library's own probe of the form is private: these two tests follow it (a TIFF is told by
// its magic number before a .doc beside it counts).
bool StartsAsTiff(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::array<char, 4> magic{};
  if (!file.read(magic.data(), magic.size())) {
    return false;
  }
  const std::string_view start(magic.data(), magic.size());
  using namespace std::string_view_literals;
  return start == "II*\0"sv || start == "MM\0*"sv || start == "II+\0"sv || start == "MM\0+"sv;
}

bool HasDocBeside(const std::string& path) {
  std::filesystem::path doc(path);
  doc.replace_extension(".doc");
  std::error_code ignored;
  return std::filesystem::exists(doc, ignored);
}

std::unique_ptr<TAbstractImage> OpenAsRequested(const std::string& path,
                                                const TOpenRequest& request) {
  TRasterOpenOptions options;
  if (request.Width) {
    options.Window = request.Window.value_or(kWholeExtent);
    return TScreenWidth::Narrowed(*request.Width, [&] { return OpenAnyRaster(path, options); });
  }
  if (request.Window) {
    options.Window = request.Window;
    return TScreenWidth::Full([&] { return OpenAnyRaster(path, options); });
  }
  return OpenAnyRaster(path, options);
}

std::unique_ptr<TAbstractImage> OpenSample(const std::string& path) {
  try {
    return OpenRaster(path, {kWholeExtent, kSampleWidth});
  } catch (const EMathError&) {
    return OpenRaster(path, {});  // thinned to the sample's width, it had no row left
  }
}

}  // namespace

std::unique_ptr<TAbstractImage> OpenRaster(const std::string& path, const TOpenRequest& request) {
  std::unique_ptr<TAbstractImage> image = OpenAsRequested(path, request);
  // The grid reader keeps the grid's NODATA_value as the flag value without declaring it; its
  // cells are no data all the same.
  TImageHeader& header = *image->Header();
  if (image->GetImageTypeID() == "ARCGRID" && !header.Flag) {
    header.Flag = true;
    header.FlagDef = "NODATA_value of the grid";
  }
  return image;
}

TImageHeader ReadRasterHeader(const std::string& path) {
  if (!StartsAsTiff(path) && HasDocBeside(path)) {
    return TImageHeader(*TImageHeader::Open(path));
  }
  const std::unique_ptr<TAbstractImage> sample = OpenSample(path);
  if (sample->ScaleImage() == 1) {
    return TImageHeader(*sample->Header());  // read whole: a grid, or a raster of few columns
  }
  TImageHeader header(*sample->FileHeader());
  // Only a read of every cell knows their range.
  header.MinValue = header.MaxValue = std::numeric_limits<float>::quiet_NaN();
  return header;
}

}  // namespace zephra::python
