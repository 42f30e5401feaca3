#pragma once
// The strips of the image on their way into the file. The writer fills a strip's cells and
// submits it; it is compressed on a thread of its own while the next strips fill, and written
// raw, in strip order, on the writer's thread. A strip's slot (its cells and its encoder) is
// reused by the strip `threads` places later, after the earlier one has been written, so at most
// `threads` strips are in flight and memory stays a few strips whatever the size of the raster.

#include <tiffio.h>

#include <cstdint>
#include <future>
#include <memory>
#include <vector>

#include "gtwGeometry.h"
#include "gtwStripEncoder.h"

namespace tvgeotifflib {

// Threads to compress strips on: the GTW_THREADS environment variable where it holds a number
// from 1 to 256 (1 compresses on the writer's thread alone), else one per core.
unsigned StripThreads();

class TStripQueue {
 public:
  TStripQueue(TIFF* tif, const TRasterGeometry& geometry, unsigned threads);
  TStripQueue(const TStripQueue&) = delete;
  TStripQueue& operator=(const TStripQueue&) = delete;
  // Strips still being compressed are waited for.
  ~TStripQueue();

  // The empty cells of the next strip, to be filled row after row; null once a strip failed.
  std::vector<float>* Next();
  // Sends the strip that Next() gave off to be compressed; false once a strip has failed.
  bool Submit();
  // Writes every submitted strip; false if any failed.
  bool Drain();

 private:
  struct TSlot {
    explicit TSlot(const TRasterGeometry& geometry) : Encoder(geometry) {}
    TStripEncoder Encoder;
    std::vector<float> Cells;
    std::future<bool> Encoded;  // valid while the strip is in flight
  };

  TSlot& SlotOf(uint32_t strip) { return *FSlots[strip % FSlots.size()]; }
  bool Write(TSlot& slot);

  TIFF* const FTiff;
  std::vector<std::unique_ptr<TSlot>> FSlots;
  uint32_t FFilling = 0;  // the strip being filled
  uint32_t FWritten = 0;  // strips written to the file
  bool FFailed = false;
};

}  // namespace tvgeotifflib
