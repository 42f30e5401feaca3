#pragma once
// How a raster is laid out in the file: rows per strip, and whether it needs BigTIFF. Kept free
// of libtiff so that the sizing rules can be checked without writing gigabytes.

#include <algorithm>
#include <cstdint>

namespace tvgeotifflib {

inline constexpr uint64_t kBytesPerCell = sizeof(float);

// Uncompressed bytes per strip we aim for: large enough that DEFLATE sees long runs and the
// strip tables stay short, small enough that a strip buffer is cheap.
inline constexpr uint64_t kStripTargetBytes = 256 * 1024;

// The largest offset a classic TIFF can hold.
inline constexpr uint64_t kClassicTiffLimit = UINT32_MAX;

// Room for the header, the directory and its tags outside the strip tables.
inline constexpr uint64_t kDirectoryAllowance = 64 * 1024;

constexpr uint32_t RowsPerStrip(uint32_t width, uint32_t height) {
  const uint64_t rowBytes = std::max<uint64_t>(1, width * kBytesPerCell);
  const uint64_t rows = std::max<uint64_t>(1, kStripTargetBytes / rowBytes);
  return static_cast<uint32_t>(std::clamp<uint64_t>(rows, 1, std::max<uint32_t>(height, 1)));
}

// The most that DEFLATE can turn `bytes` into (incompressible data grows slightly).
constexpr uint64_t DeflateBound(uint64_t bytes) {
  return bytes + (bytes >> 12) + (bytes >> 14) + (bytes >> 25) + 13;
}

// libtiff won't switch a compressed file to BigTIFF by itself, and the compressed size is
// unknown until the end, so the choice is made up front from the worst case: every strip
// incompressible, plus its entries in the strip tables and the directory.
constexpr bool NeedsBigTiff(uint32_t width, uint32_t height) {
  const uint64_t rowsPerStrip = RowsPerStrip(width, height);
  const uint64_t stripBytes = rowsPerStrip * width * kBytesPerCell;
  const uint64_t strips = (uint64_t{height} + rowsPerStrip - 1) / rowsPerStrip;
  const uint64_t tableBytes = strips * 2 * sizeof(uint32_t);
  const uint64_t worstCase = strips * DeflateBound(stripBytes) + tableBytes + kDirectoryAllowance;
  return worstCase > kClassicTiffLimit;
}

}  // namespace tvgeotifflib
