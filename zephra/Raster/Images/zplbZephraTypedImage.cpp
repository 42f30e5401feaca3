#include <zephra/Raster/Images/zplbZephraTypedImage.h>

#include <algorithm>
#include <bit>

#include <zephra/Common/private/zpOutputFile.h>
#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Images/private/zplbZephraCellTraits.h>
#include <zephra/Raster/Images/private/zplbZephraImageClassOf.h>
#include <zephra/Raster/Images/private/zplbZephraImageFile.h>
#include <zephra/Raster/Images/private/zplbZephraRangeScan.h>

namespace zephra {

// Data files are little-endian, and cells move between file and buffer without conversion.
static_assert(std::endian::native == std::endian::little);

namespace {

template <typename TCell>
std::span<std::byte> Bytes(TCellVector<TCell>& cells) {
  return std::as_writable_bytes(std::span<TCell>(cells));
}

}  // namespace

template <typename TCell>
std::unique_ptr<TTypedImage<TCell>> TTypedImage<TCell>::Create(const std::string& inFileName,
                                                               const TImageHeader* headerIn) {
  return Construct<TTypedImage>([&](TTypedImage& image) {
    image.CreateImage(inFileName, headerIn);
    image.FHeader->DataType = TCellTraits<TCell>::DataType;
    image.FHeader->FileType = ftBinary;
    image.Buffer = FilledCells(static_cast<size_t>(image.NumRecs), TCellTraits<TCell>::NewCell);
  });
}

template <typename TCell>
std::unique_ptr<TTypedImage<TCell>> TTypedImage<TCell>::Create(const TTypedImage& Source) {
  return Construct<TTypedImage>([&](TTypedImage& image) {
    image.CreateCopy(Source);
    image.Buffer = Source.Buffer;
    image.RowBuffer = Source.RowBuffer;
  });
}

template <typename TCell>
std::unique_ptr<TTypedImage<TCell>> TTypedImage<TCell>::Open(const std::string& inFileName,
                                                             bool aScaleBuff) {
  return Construct<TTypedImage>(
      [&](TTypedImage& image) { image.OpenImage(inFileName, aScaleBuff); });
}

template <typename TCell>
std::unique_ptr<TTypedImage<TCell>> TTypedImage<TCell>::Open(const std::string& inFileName,
                                                             float aRequestedRes) {
  return Construct<TTypedImage>(
      [&](TTypedImage& image) { image.OpenImage(inFileName, aRequestedRes); });
}

template <typename TCell>
std::unique_ptr<TTypedImage<TCell>> TTypedImage<TCell>::Open(const std::string& inFileName,
                                                             float aminx, float amaxx, float aminy,
                                                             float amaxy) {
  return Construct<TTypedImage>(
      [&](TTypedImage& image) { image.OpenImage(inFileName, aminx, amaxx, aminy, amaxy); });
}

template <typename TCell>
TAbstractImageClass TTypedImage<TCell>::ClassRef() {
  static const TImageClassOf<TTypedImage> classRef(TCellTraits<TCell>::ClassName);
  return &classRef;
}

template <typename TCell>
TTypedImage<TCell>::~TTypedImage() {
  CloseOnDestruction();
}

template <typename TCell>
std::string TTypedImage<TCell>::GetImageTypeID() const {
  return TCellTraits<TCell>::TypeID;
}

template <typename TCell>
float TTypedImage<TCell>::BufferRead(int32_t index) const {
  TAbstractImage::BufferRead(index);
  CheckCellIndex(index, Buffer.size());
  return CellToSingle(Buffer[static_cast<size_t>(index)]);
}

template <typename TCell>
TRange TTypedImage<TCell>::GetRangeBetween(float minVal, float maxVal, bool silent) {
  return ScanBuffer(Buffer, minVal, maxVal, silent);
}

// ReadCR, ReadCR0 and FileRead as the base class has them, with the cell read bound at compile
// time: they are the loops of every full pass over an image and of the exporters.
template <typename TCell>
float TTypedImage<TCell>::ReadCR(int32_t c, int32_t r) const {
  return TTypedImage::BufferRead(ReadIndex1(c, r));
}

template <typename TCell>
float TTypedImage<TCell>::ReadCR0(int32_t Col, int32_t Row) const {
  return TTypedImage::BufferRead(ReadIndex0(Col, Row));
}

template <typename TCell>
float TTypedImage<TCell>::FileRead() {
  const float val = TTypedImage::BufferRead(BufferPointer);
  ++BufferPointer;
  return val;
}

// The range moves with the value as given, before the cell type has rounded or wrapped it; a
// value with no integer form raises only after that, and the cell keeps its old value.
template <typename TCell>
void TTypedImage<TCell>::BufferWrite(int32_t index, float val) {
  TAbstractImage::BufferWrite(index, val);
  CheckCellIndex(index, Buffer.size());
  Buffer[static_cast<size_t>(index)] = CellFromSingle<TCell>(val);
}

template <typename TCell>
void TTypedImage<TCell>::LoadBufferValues(int32_t& cursor, int32_t startCol) {
  const int64_t count = FZoomHeader->Width;
  const int64_t step = ScaleImage();
  if (count <= 0) {
    return;
  }
  const int64_t last = startCol + (count - 1) * step;
  if (startCol < 0 || last >= static_cast<int64_t>(RowBuffer.size()) || cursor < 0 ||
      cursor + count > static_cast<int64_t>(Buffer.size())) {
    throw EInvalidOpException("A row of " + std::to_string(count) + " cells from column " +
                              std::to_string(startCol) +
                              " does not fit the row buffer or the "
                              "buffer at cell " +
                              std::to_string(cursor));
  }
  const TCell* source = RowBuffer.data() + startCol;
  TCell* target = Buffer.data() + cursor;
  for (int64_t k = 0; k < count; ++k) {
    target[k] = source[k * step];
  }
  cursor += static_cast<int32_t>(count);
}

// Reads into new arrays and keeps the old ones until the read has succeeded, so that a failed
// load leaves the image as it was. On a new image the old arrays are empty, so the buffer is
// allocated once and filled straight from the file.
template <typename TCell>
void TTypedImage<TCell>::LoadData() {
  TCellArray buffer(static_cast<size_t>(NumRecs));
  TCellArray rowBuffer(static_cast<size_t>(std::max(FHeader->Width, 0)));
  Buffer.swap(buffer);
  RowBuffer.swap(rowBuffer);
  try {
    ReadFile(sizeof(TCell), Bytes(Buffer), Bytes(RowBuffer));
  } catch (...) {
    Buffer.swap(buffer);
    RowBuffer.swap(rowBuffer);
    throw;
  }
}

template <typename TCell>
void TTypedImage<TCell>::WriteDataFile(TOutputFile& File) const {
  WriteImageData(File, sizeof(TCell), NumRecs, Buffer.data());
}

template class TTypedImage<float>;
template class TTypedImage<uint8_t>;
template class TTypedImage<int16_t>;
template class TTypedImage<int32_t>;

}  // namespace zephra
