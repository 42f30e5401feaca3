#include "gtwStripQueue.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <thread>

namespace tvgeotifflib {

unsigned StripThreads() {
  if (const char* text = std::getenv("GTW_THREADS")) {
    unsigned threads = 0;
    const char* end = text + std::strlen(text);
    const auto [last, error] = std::from_chars(text, end, threads);
    if (error == std::errc() && last == end && threads >= 1 && threads <= 256) {
      return threads;
    }
  }
  return std::max(1u, std::thread::hardware_concurrency());
}

TStripQueue::TStripQueue(TIFF* tif, const TRasterGeometry& geometry, unsigned threads)
    : FTiff(tif) {
  for (unsigned i = 0; i < std::max(1u, threads); ++i) {
    FSlots.push_back(std::make_unique<TSlot>(geometry));
  }
}

TStripQueue::~TStripQueue() {
  for (const auto& slot : FSlots) {
    if (slot->Encoded.valid()) {
      slot->Encoded.wait();
    }
  }
}

std::vector<float>* TStripQueue::Next() {
  TSlot& slot = SlotOf(FFilling);
  if (FFailed || (slot.Encoded.valid() && !Write(slot))) {
    return nullptr;
  }
  slot.Cells.clear();
  return &slot.Cells;
}

bool TStripQueue::Submit() {
  TSlot& slot = SlotOf(FFilling++);
  if (FSlots.size() > 1) {
    try {
      slot.Encoded =
          std::async(std::launch::async, [&slot] { return slot.Encoder.Encode(slot.Cells); });
      return true;
    } catch (const std::system_error&) {
      // No thread to be had: this strip is compressed here instead.
    }
  }
  std::promise<bool> done;
  done.set_value(slot.Encoder.Encode(slot.Cells));
  slot.Encoded = done.get_future();
  return FSlots.size() > 1 || Write(slot);
}

bool TStripQueue::Drain() {
  while (FWritten < FFilling && !FFailed) {
    Write(SlotOf(FWritten));
  }
  return !FFailed;
}

// Writes the oldest strip in flight, which is the slot's: strips are written in order.
bool TStripQueue::Write(TSlot& slot) {
  const bool encoded = slot.Encoded.get();
  const std::span<const uint8_t> bytes = slot.Encoder.Bytes();
  FFailed = FFailed || !encoded ||
            TIFFWriteRawStrip(FTiff, FWritten, const_cast<uint8_t*>(bytes.data()),
                              static_cast<tmsize_t>(bytes.size())) < 0;
  ++FWritten;
  return !FFailed;
}

}  // namespace tvgeotifflib
