#pragma once
// The cells of one GeoTIFF band, read into an image's buffer: all of them, or every n-th cell of
// every n-th row of a window. Only the strips and tiles that hold a wanted cell are decoded.

#include <cstdint>
#include <span>

#include <zephra/Raster/Images/private/zplbGeoTiffFile.h>
#include <zephra/Raster/Images/private/zplbGeoTiffLayout.h>

namespace zephra {

// Rows x Cols cells of the file, every Step-th one from the zero-based cell (Col0, Row0).
struct TCellSampling {
  int64_t Col0 = 0;
  int64_t Row0 = 0;
  int64_t Step = 1;
  int64_t Cols = 0;
  int64_t Rows = 0;
};

// Reads the sampled cells, row by row, into cells, which holds exactly Rows x Cols of the cell
// type the layout's samples go into. Raises Exception "Attempted to read past the end of the
// file" for a row south of the file, EInvalidOpException for columns outside it or a buffer of
// the wrong size, EImageFileError naming the strip or tile that fails to decode, and the
// EImageFileError of the allocation limit for a chunk larger than it.
template <typename TCell>
void ReadGeoTiffCells(const TTiffFile& file, const TTiffLayout& layout,
                      const TCellSampling& sampling, std::span<TCell> cells);

}  // namespace zephra
