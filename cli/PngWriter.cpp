#include "PngWriter.h"

#include <png.h>

#include <stdexcept>
#include <string>

namespace zephra::cli {

// The simplified API reports failures in the image's message and needs no longjmp, which would
// skip the destructors of the caller.
void WritePng(const TPicture& picture, const std::filesystem::path& path) {
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(picture.Width);
  image.height = static_cast<png_uint_32>(picture.Height);
  image.format = PNG_FORMAT_RGBA;
  if (png_image_write_to_file(&image, path.c_str(), 0, picture.Pixels.data(), 0, nullptr) == 0) {
    const std::string message = image.message;
    png_image_free(&image);
    throw std::runtime_error("cannot write the PNG: " + message);
  }
}

}  // namespace zephra::cli
