#pragma once
// PNG pictures, written with libpng.

#include <cstdint>
#include <filesystem>
#include <vector>

namespace zephra::cli {

// width x height pixels of four bytes (red, green, blue, alpha), row by row from the top.
struct TPicture {
  int32_t Width = 0;
  int32_t Height = 0;
  std::vector<uint8_t> Pixels;
};

// Writes picture as an 8-bit RGBA PNG to path. Raises std::runtime_error with libpng's message.
void WritePng(const TPicture& picture, const std::filesystem::path& path);

}  // namespace zephra::cli
