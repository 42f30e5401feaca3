// TGeoTiffImage: the Open forms, the header from the TIFF, and the read of the band's cells.

#include <zephra/Raster/Images/zplbZephraGeoTiffImage.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <span>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpSpatialConst.h>
#include <zephra/Raster/Images/private/zplbGeoTiffCells.h>
#include <zephra/Raster/Images/private/zplbGeoTiffHeader.h>
#include <zephra/Raster/Images/private/zplbZephraCellTraits.h>
#include <zephra/Raster/Images/private/zplbZephraImageGrid.h>

namespace zephra {

namespace {

// The flag value as a cell, when a cell can hold it exactly.
template <typename TCell>
std::optional<TCell> FlagCell(const TImageHeader& header) {
  const double flag = header.FlagValue;
  if (!header.Flag || !(flag >= std::numeric_limits<TCell>::lowest()) ||
      !(flag <= std::numeric_limits<TCell>::max()) || static_cast<TCell>(flag) != flag) {
    return std::nullopt;
  }
  return static_cast<TCell>(flag);
}

// NaN cells become the flag value, and the range is that of the other cells; with none left,
// the range stays as it was. A float image always has a flag (see ReadGeoTiffHeader).
template <typename TCell>
void FinishCells(std::span<TCell> cells, TImageHeader& header) {
  const std::optional<TCell> flag = FlagCell<TCell>(header);
  bool found = false;
  TCell low{};
  TCell high{};
  for (TCell& cell : cells) {
    if constexpr (std::is_floating_point_v<TCell>) {
      if (std::isnan(cell)) {
        cell = flag.value_or(TSpatialConst::MissingValue);
      }
    }
    if (cell == flag) {
      continue;
    }
    low = found ? std::min(low, cell) : cell;
    high = found ? std::max(high, cell) : cell;
    found = true;
  }
  if (found) {
    header.SetRange(TRange{CellToSingle(low), CellToSingle(high)});
  }
}

template <typename TCell>
void CheckCellType(const TTiffFile& file, const TTiffLayout& layout, int32_t band) {
  if (CellTypeOf(layout.Sample) != TCellTraits<TCell>::DataType) {
    throw EImageFileError("Band " + std::to_string(band) + " of " + file.FileName() +
                          " does not read into " + TCellTraits<TCell>::TypeID + " cells");
  }
}

}  // namespace

template <typename TCell>
template <typename TForm>
std::unique_ptr<TGeoTiffImage<TCell>> TGeoTiffImage<TCell>::OpenAs(int32_t Band, TForm form) {
  return TAbstractImage::template Construct<TGeoTiffImage>([&](TGeoTiffImage& image) {
    image.FBand = Band;
    form(image);
    image.MemOnly = true;
  });
}

template <typename TCell>
std::unique_ptr<TGeoTiffImage<TCell>> TGeoTiffImage<TCell>::Open(const std::string& inFileName,
                                                                 bool aScaleBuff, int32_t Band) {
  return OpenAs(Band, [&](TGeoTiffImage& image) { image.OpenImage(inFileName, aScaleBuff); });
}

template <typename TCell>
std::unique_ptr<TGeoTiffImage<TCell>> TGeoTiffImage<TCell>::Open(const std::string& inFileName,
                                                                 float aRequestedRes,
                                                                 int32_t Band) {
  return OpenAs(Band, [&](TGeoTiffImage& image) { image.OpenImage(inFileName, aRequestedRes); });
}

template <typename TCell>
std::unique_ptr<TGeoTiffImage<TCell>> TGeoTiffImage<TCell>::Open(const std::string& inFileName,
                                                                 float aminx, float amaxx,
                                                                 float aminy, float amaxy,
                                                                 int32_t Band) {
  return OpenAs(
      Band, [&](TGeoTiffImage& image) { image.OpenImage(inFileName, aminx, amaxx, aminy, amaxy); });
}

template <typename TCell>
TGeoTiffImage<TCell>::~TGeoTiffImage() {
  this->CloseOnDestruction();
}

template <typename TCell>
std::unique_ptr<TImageHeader> TGeoTiffImage<TCell>::ReadFileHeader() const {
  const TTiffFile file(this->FileName());
  const TTiffLayout layout = ReadTiffLayout(file, FBand);
  CheckCellType<TCell>(file, layout, FBand);
  return ReadGeoTiffHeader(file, layout);
}

// The buffer is read anew and swapped in only when the read succeeded, so that a failed
// ReOpen leaves the image as it was.
template <typename TCell>
void TGeoTiffImage<TCell>::LoadData() {
  const TTiffFile file(this->FileName());
  const TTiffLayout layout = ReadTiffLayout(file, FBand);
  CheckCellType<TCell>(file, layout, FBand);
  const TImageHeader& whole = *this->FHeader;
  const TImageHeader& grid = *this->Header();
  TCellSampling sampling{0, 0, this->ScaleImage(), grid.Width, grid.Height};
  if (this->Zoomed()) {
    sampling.Col0 = RoundToCells((static_cast<double>(grid.Minx) - whole.Minx) / whole.ResolutionX,
                                 "window's first column");
    sampling.Row0 = RoundToCells((static_cast<double>(whole.Maxy) - grid.Maxy) / whole.ResolutionY,
                                 "window's first row");
  }
  typename TTypedImage<TCell>::TCellArray cells(static_cast<size_t>(this->NumRecs));
  ReadGeoTiffCells(file, layout, sampling, std::span<TCell>(cells));
  FinishCells(std::span<TCell>(cells), *this->Header());
  this->Buffer.swap(cells);
  this->BufferPointer = 0;
}

template class TGeoTiffImage<float>;
template class TGeoTiffImage<uint8_t>;
template class TGeoTiffImage<int16_t>;
template class TGeoTiffImage<int32_t>;

}  // namespace zephra
