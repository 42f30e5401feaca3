#pragma once
// One GeoTIFF being written: the file, the TIFF on it, and how far the rows have come. Rows are
// gathered into whole strips, because libtiff compresses a whole strip much faster than row by
// row, and the strips are compressed on several threads (gtwStripQueue.h).

#include <cstdint>
#include <memory>
#include <vector>

#include "gtwGeometry.h"
#include "gtwOutputFile.h"
#include "gtwStripQueue.h"

namespace tvgeotifflib {

class TGeoTiffWriter {
  struct TKey {
    explicit TKey() = default;
  };

 public:
  TGeoTiffWriter(TKey, std::unique_ptr<TOutputFile> file, bool forceBigTiff)
      : FFile(std::move(file)), FForceBigTiff(forceBigTiff) {}
  TGeoTiffWriter(const TGeoTiffWriter&) = delete;
  TGeoTiffWriter& operator=(const TGeoTiffWriter&) = delete;

  // Null when the mode is neither "w" nor "w8" or the file can't be created.
  static std::unique_ptr<TGeoTiffWriter> Create(const char* fileName, const char* mode);

  bool InitData(int32_t width, int32_t height, float originX, float originY, float cellSize,
                uint32_t latLong);
  bool WriteRow(int32_t row, const float* cells);

  // Writes the missing rows as no-data and closes the file; on any failure the file is removed.
  // Takes the writer, which can be finished only once.
  static bool Finish(std::unique_ptr<TGeoTiffWriter> writer);

 private:
  bool Ready() const { return FTiff && !FBroken; }
  bool OpenImage();
  bool PadTo(uint32_t row);
  bool WriteBufferedRow(const float* cells);

  // Declared before the TIFF, so that the TIFF is closed first.
  const std::unique_ptr<TOutputFile> FFile;
  const bool FForceBigTiff;
  TTiffPtr FTiff;
  bool FBroken = false;  // libtiff or the disk failed; the file can't be finished
  TRasterGeometry FGeometry;
  uint32_t FNextRow = 0;
  uint32_t FRowsPerStrip = 0;
  // Declared after the TIFF, so that strips still being compressed finish before it closes.
  std::unique_ptr<TStripQueue> FQueue;
  // The cells of the strip being filled, owned by the queue. The predictor rewrites cells in
  // place, so they are a copy of the caller's.
  std::vector<float>* FStrip = nullptr;
};

}  // namespace tvgeotifflib
