#include <zephra/Raster/Images/private/zplbZephraRowRead.h>

#include <algorithm>
#include <typeinfo>

#include <zephra/Raster/Images/private/zplbZephraCellTraits.h>
#include <zephra/Raster/Images/zplbZephraGeoTiffImage.h>
#include <zephra/Raster/Images/zplbZephraTypedImage.h>

namespace zephra {

namespace {

template <typename TCell>
bool ReadRowOf(const TAbstractImage& Source, int32_t r, std::span<float> row) {
  // A GeoTIFF image is a typed image that overrides none of the reads.
  if (typeid(Source) != typeid(TTypedImage<TCell>) &&
      typeid(Source) != typeid(TGeoTiffImage<TCell>)) {
    return false;
  }
  const auto& image = static_cast<const TTypedImage<TCell>&>(Source);
  const int64_t first = int64_t{image.Header()->Width} * r;
  const int64_t end = first + static_cast<int64_t>(row.size());
  // The per-cell reads check each index against NumRecs and the buffer; a row that passes both
  // checks at its ends passes them for every cell.
  if (r < 0 || first < 0 || end > image.NumRecs ||
      end > static_cast<int64_t>(image.Buffer.size())) {
    return false;
  }
  const TCell* cells = image.Buffer.data() + first;
  std::transform(cells, cells + row.size(), row.begin(), CellToSingle<TCell>);
  return true;
}

}  // namespace

bool ReadTypedRow(const TAbstractImage& Source, int32_t r, std::span<float> row) {
  return ReadRowOf<float>(Source, r, row) || ReadRowOf<uint8_t>(Source, r, row) ||
         ReadRowOf<int16_t>(Source, r, row) || ReadRowOf<int32_t>(Source, r, row);
}

}  // namespace zephra
