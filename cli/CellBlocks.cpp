#include "CellBlocks.h"

#include <algorithm>
#include <typeinfo>

namespace zephra::cli {

namespace {

template <typename TImage>
const TImage* Exactly(const TAbstractImage& image) {
  return typeid(image) == typeid(TImage) ? static_cast<const TImage*>(&image) : nullptr;
}

// The buffer of an exactly typed image (or a GeoTIFF band, which overrides no read), when it
// holds the whole block.
template <typename TCell>
const TCellVector<TCell>* TypedBuffer(const TAbstractImage& image, int64_t end) {
  const TCellVector<TCell>* buffer = nullptr;
  if (const auto* typed = Exactly<TTypedImage<TCell>>(image)) {
    buffer = &typed->Buffer;
  } else if (const auto* band = Exactly<TGeoTiffImage<TCell>>(image)) {
    buffer = &band->Buffer;
  }
  return buffer && end <= static_cast<int64_t>(buffer->size()) ? buffer : nullptr;
}

template <typename TCell>
bool Convert(const TAbstractImage& image, int64_t first, std::span<float> block) {
  const auto* buffer = TypedBuffer<TCell>(image, first + static_cast<int64_t>(block.size()));
  if (!buffer) {
    return false;
  }
  const TCell* cells = buffer->data() + first;
  std::transform(cells, cells + block.size(), block.begin(),
                 [](TCell cell) { return static_cast<float>(cell); });
  return true;
}

const TCellVector<float>* FloatBuffer(const TAbstractImage& image, int64_t end) {
  if (const auto* buffer = TypedBuffer<float>(image, end)) {
    return buffer;
  }
  const TCellVector<float>* text = nullptr;
  if (const auto* ascii = Exactly<TAsciiImage>(image)) {
    text = &ascii->Buffer;
  } else if (const auto* grid = Exactly<TArcGridImage>(image)) {
    text = &grid->Buffer;
  }
  return text && end <= static_cast<int64_t>(text->size()) ? text : nullptr;
}

}  // namespace

std::span<const float> CellBlock(const TAbstractImage& image, int64_t first, int64_t count,
                                 std::vector<float>& scratch) {
  if (const auto* cells = FloatBuffer(image, first + count)) {
    return {cells->data() + first, static_cast<size_t>(count)};
  }
  scratch.resize(static_cast<size_t>(count));
  const std::span<float> block(scratch);
  if (!Convert<uint8_t>(image, first, block) && !Convert<int16_t>(image, first, block) &&
      !Convert<int32_t>(image, first, block)) {
    for (int64_t i = 0; i < count; ++i) {
      block[static_cast<size_t>(i)] = image.BufferRead(static_cast<int32_t>(first + i));
    }
  }
  return block;
}

}  // namespace zephra::cli
