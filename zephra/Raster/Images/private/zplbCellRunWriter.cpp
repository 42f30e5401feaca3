#include <zephra/Raster/Images/private/zplbCellRunWriter.h>

#include <algorithm>
#include <typeinfo>

#include <zephra/Raster/Images/private/zplbZephraCellTraits.h>
#include <zephra/Raster/Images/zplbZephraTypedImage.h>

namespace zephra {

namespace {

template <typename TCell>
bool StoreRun(TAbstractImage& image, int64_t index, int64_t count, float val) {
  auto& buffer = static_cast<TTypedImage<TCell>&>(image).Buffer;
  if (index < 0 || count < 0 || index + count > static_cast<int64_t>(buffer.size())) {
    return false;
  }
  std::fill_n(buffer.begin() + index, count, CellFromSingle<TCell>(val));
  return true;
}

// Only the library's own typed images: a class derived from one may do more in its BufferWrite.
template <typename TCell>
TCellRunWriter::TStore StoreFor(const TAbstractImage& image) {
  return typeid(image) == typeid(TTypedImage<TCell>) ? &StoreRun<TCell> : nullptr;
}

}  // namespace

TCellRunWriter::TCellRunWriter(TAbstractImage& image) : FImage(image) {
  for (const TStore store : {StoreFor<float>(image), StoreFor<uint8_t>(image),
                             StoreFor<int16_t>(image), StoreFor<int32_t>(image)}) {
    FStore = store != nullptr ? store : FStore;
  }
}

// The first write moves the header's range and FirstWrite as any write does; the same value
// written again changes neither, so the other cells of the run need only be stored.
void TCellRunWriter::Write(int32_t r, int32_t from, int32_t to, float val) {
  if (from >= to) {
    return;
  }
  FImage.WriteCR(from + 1, r + 1, val);
  const int64_t next = int64_t{FImage.Header()->Width} * r + from + 1;
  if (FStore != nullptr && FStore(FImage, next, to - from - 1, val)) {
    return;
  }
  for (int32_t c = from + 1; c < to; ++c) {
    FImage.WriteCR(c + 1, r + 1, val);
  }
}

}  // namespace zephra
