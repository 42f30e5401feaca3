#include "gtwStripEncoder.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "gtwLayout.h"
#include "gtwMessages.h"
#include "gtwTiffTags.h"

namespace tvgeotifflib {

namespace {

using TMemoryFile = TStripEncoder::TMemoryFile;

TMemoryFile& FileOf(thandle_t handle) {
  return *static_cast<TMemoryFile*>(handle);
}

tmsize_t ReadProc(thandle_t handle, void* buffer, tmsize_t size) {
  TMemoryFile& file = FileOf(handle);
  const uint64_t available =
      file.Bytes.size() - std::min<uint64_t>(file.Position, file.Bytes.size());
  const auto n = std::min<uint64_t>(available, static_cast<uint64_t>(size));
  std::memcpy(buffer, file.Bytes.data() + file.Position, n);
  file.Position += n;
  return static_cast<tmsize_t>(n);
}

tmsize_t WriteProc(thandle_t handle, void* buffer, tmsize_t size) {
  TMemoryFile& file = FileOf(handle);
  const uint64_t end = file.Position + static_cast<uint64_t>(size);
  try {
    if (end > file.Bytes.size()) {
      file.Bytes.resize(end);
    }
  } catch (...) {
    return -1;  // libtiff reports the failed write
  }
  std::memcpy(file.Bytes.data() + file.Position, buffer, static_cast<size_t>(size));
  file.Position = end;
  return size;
}

toff_t SeekProc(thandle_t handle, toff_t offset, int whence) {
  TMemoryFile& file = FileOf(handle);
  const uint64_t base = whence == SEEK_CUR   ? file.Position
                        : whence == SEEK_END ? file.Bytes.size()
                                             : 0;
  file.Position = base + offset;
  return file.Position;
}

toff_t SizeProc(thandle_t handle) {
  return FileOf(handle).Bytes.size();
}

int CloseProc(thandle_t) {
  return 0;
}

int MapProc(thandle_t, void**, toff_t*) {
  return 0;
}

void UnmapProc(thandle_t, void*, toff_t) {}

}  // namespace

void TStripEncoder::TTiffCloser::operator()(TIFF* tif) const noexcept {
  TIFFClose(tif);
}

bool TStripEncoder::Open() {
  const TTiffOptionsPtr options = MessageOptions();
  if (!options) {
    return false;
  }
  FTiff.reset(TIFFClientOpenExt("strip", "w", &FFile, ReadProc, WriteProc, SeekProc, CloseProc,
                                SizeProc, MapProc, UnmapProc, options.get()));
  // One strip as high as the file's: a shorter last strip is simply given fewer bytes, as libtiff
  // gives the file's own last strip.
  TRasterGeometry strip = FGeometry;
  strip.Height = RowsPerStrip(FGeometry.Width, FGeometry.Height);
  return FTiff && WriteSampleTags(FTiff.get(), strip, strip.Height);
}

bool TStripEncoder::Encode(std::vector<float>& cells) noexcept {
  try {
    // A strip that outgrows its old place goes to the end of the scratch file; a file grown to a
    // few strips is started afresh, so that memory stays bounded on any raster.
    const uint64_t stripBytes =
        uint64_t{FGeometry.Width} * sizeof(float) * RowsPerStrip(FGeometry.Width, FGeometry.Height);
    if (FFile.Bytes.size() > 4 * DeflateBound(stripBytes)) {
      FTiff.reset();
      FFile.Bytes.clear();
      FFile.Position = 0;
    }
    if (!FTiff && !Open()) {
      FTiff.reset();
      return false;
    }
    // Strip 0 is written again and again: libtiff puts each new version over the old one where
    // it fits and at the end of the file where it doesn't, and tells where it went.
    const auto size = static_cast<tmsize_t>(cells.size() * sizeof(float));
    if (TIFFWriteEncodedStrip(FTiff.get(), 0, cells.data(), size) != size) {
      return false;
    }
    FOffset = TIFFGetStrileOffset(FTiff.get(), 0);
    FCount = TIFFGetStrileByteCount(FTiff.get(), 0);
    return FOffset <= FFile.Bytes.size() && FCount <= FFile.Bytes.size() - FOffset;
  } catch (...) {
    return false;
  }
}

std::span<const uint8_t> TStripEncoder::Bytes() const {
  return {FFile.Bytes.data() + FOffset, FCount};
}

}  // namespace tvgeotifflib
