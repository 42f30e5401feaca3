#pragma once
// TCellRunWriter: writes runs of equal cells along a row of an image, with the effect of one
// WriteCR for each cell.

#include <cstdint>

#include <zephra/Raster/Images/zplbZephraAbstractImage.h>

namespace zephra {

class TCellRunWriter {
 public:
  explicit TCellRunWriter(TAbstractImage& image);

  // Cells from .. to - 1 (zero-based) of zero-based row r take val. Raises as WriteCR.
  void Write(int32_t r, int32_t from, int32_t to, float val);

  // Stores count cells of val from buffer index on; false, storing nothing, when they do not fit.
  using TStore = bool (*)(TAbstractImage& image, int64_t index, int64_t count, float val);

 private:
  TAbstractImage& FImage;
  TStore FStore = nullptr;  // null: every cell goes through WriteCR
};

}  // namespace zephra
