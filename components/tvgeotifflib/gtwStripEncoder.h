#pragma once
// Compresses strips of the image exactly as libtiff compresses them in the file, but on a TIFF
// of its own in memory, so that strips can be compressed on several threads while one thread
// writes them raw, in order: the file is the same byte for byte whichever thread compressed
// which strip. An encoder serves one thread at a time and is reused strip after strip, keeping
// libtiff's compressor and its buffers warm.

#include <tiffio.h>

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "gtwGeometry.h"

namespace tvgeotifflib {

class TStripEncoder {
 public:
  explicit TStripEncoder(const TRasterGeometry& geometry) : FGeometry(geometry) {}
  TStripEncoder(const TStripEncoder&) = delete;
  TStripEncoder& operator=(const TStripEncoder&) = delete;

  // Compresses a strip of cells.size() / geometry.Width rows; false when libtiff fails or memory
  // runs out. The predictor works in place, so the cells are left changed.
  bool Encode(std::vector<float>& cells) noexcept;
  // The compressed bytes of the last strip, valid until the next Encode.
  std::span<const uint8_t> Bytes() const;

  // The scratch TIFF's file: a growing buffer and a position.
  struct TMemoryFile {
    std::vector<uint8_t> Bytes;
    uint64_t Position = 0;
  };

 private:
  struct TTiffCloser {
    void operator()(TIFF* tif) const noexcept;
  };

  bool Open();

  const TRasterGeometry FGeometry;
  TMemoryFile FFile;
  // Declared after the file it writes to, so that it is closed first.
  std::unique_ptr<TIFF, TTiffCloser> FTiff;
  uint64_t FOffset = 0;
  uint64_t FCount = 0;
};

}  // namespace tvgeotifflib
