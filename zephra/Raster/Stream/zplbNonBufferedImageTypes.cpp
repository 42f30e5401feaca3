#include <zephra/Raster/Stream/zplbNonBufferedImageTypes.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <fstream>
#include <limits>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Header/zplnUtils.h>

namespace zephra {

// Data files are little-endian, and a cell's bytes are taken as they come.
static_assert(std::endian::native == std::endian::little);

namespace {

// What sets the four stream-backed images apart besides the cell itself.
template <typename TCell>
struct TStreamCellTraits;

template <>
struct TStreamCellTraits<uint8_t> {
  static constexpr TDataType DataType = dtByte;
  static constexpr const char* WrongType = "Image must be Byte image";
};

template <>
struct TStreamCellTraits<int16_t> {
  static constexpr TDataType DataType = dtInteger;
  static constexpr const char* WrongType = "Image must be Integer image";
};

template <>
struct TStreamCellTraits<int32_t> {
  static constexpr TDataType DataType = dtInteger32;
  static constexpr const char* WrongType = "Image must be Integer32 image";
};

template <>
struct TStreamCellTraits<float> {
  static constexpr TDataType DataType = dtReal;
  static constexpr const char* WrongType = "Image must be Real image";
};

constexpr uint64_t kMaxOffset = static_cast<uint64_t>(std::numeric_limits<std::streamoff>::max());

// Cell indexes are limited to this magnitude before they turn into byte offsets, so that the
// product stays within 64 bits; any index beyond lies outside every data file all the same.
constexpr int64_t kFarIndex = int64_t{1} << 60;

}  // namespace

int64_t TAbstractNonBufferedImage::GetOffset(int32_t Col, int32_t Row) const {
  return static_cast<int64_t>(FHeader->Width) * Row + Col;
}

void TAbstractNonBufferedImage::Check(const std::istream* Stream,
                                      const TImageHeader* Header) const {
  if (Stream == nullptr) {
    throw EArgumentNullException("Error in TAbstractNonBufferedImage.Check() - Stream in null");
  }
  if (Header == nullptr) {
    throw EArgumentNullException("Error in TAbstractNonBufferedImage.Check() - Header in null");
  }
}

float TAbstractNonBufferedImage::Read(int32_t Col, int32_t Row) {
  // A negative offset turns into one beyond any data, and raises as such.
  return ReadValue(static_cast<uint64_t>(GetOffset(Col, Row)));
}

float TAbstractNonBufferedImage::ReadLatLng(float Lat, float Lng) {
  int32_t col = 0;
  int32_t row = 0;
  LatLngToColRow(FHeader, Lat, Lng, col, row);
  return Read(col, row);
}

void TAbstractNonBufferedImage::Bind(std::istream* Stream, TImageHeader* Header) {
  Check(Stream, Header);
  FStream = Stream;
  FHeader = Header;
}

void TAbstractNonBufferedImage::Own(std::unique_ptr<std::istream> Stream,
                                    std::unique_ptr<TImageHeader> Header,
                                    const std::string& FileName) {
  FOwnedStream = std::move(Stream);
  FOwnedHeader = std::move(Header);
  FFileName = FileName;
}

// A read that failed before leaves the stream failed; each read starts afresh, as it seeks
// anyway. A stream that raises on failure gets the same words as one that doesn't.
void TAbstractNonBufferedImage::ReadBytes(uint64_t offset, char* target, std::streamsize count) {
  if (offset > kMaxOffset - static_cast<uint64_t>(count)) {
    RaiseOutsideData(offset);
  }
  try {
    FStream->clear();
    if (FStream->seekg(static_cast<std::streamoff>(offset), std::ios::beg) &&
        FStream->read(target, count)) {
      return;
    }
  } catch (const std::ios_base::failure&) {
  }
  RaiseOutsideData(offset);
}

void TAbstractNonBufferedImage::RaiseOutsideData(uint64_t offset) const {
  const std::string where = FFileName.empty() ? "the data" : "the data file \"" + FFileName + "\"";
  throw EImageFileError("Cannot read the cell at byte offset " +
                        std::to_string(static_cast<int64_t>(offset)) + ": it lies outside " +
                        where);
}

std::unique_ptr<std::istream> TAbstractNonBufferedImage::OpenDataFile(const std::string& FileName) {
  auto file = std::make_unique<std::ifstream>();
  file->rdbuf()->pubsetbuf(nullptr, 0);
  file->open(FileName, std::ios::binary);
  if (!file->is_open()) {
    throw EFOpenError("Cannot open file \"" + FileName + "\"");
  }
  return file;
}

template <typename TCell>
std::unique_ptr<TNonBufferedImage<TCell>> TNonBufferedImage<TCell>::Create(std::istream* Stream,
                                                                           TImageHeader* Header) {
  auto image = std::make_unique<TNonBufferedImage>(TConstructionKey());
  image->Bind(Stream, Header);
  return image;
}

// The header comes from the .doc beside FileName; the data file is FileName itself, whatever
// its extension, so a .doc name reads the header file as data.
template <typename TCell>
std::unique_ptr<TNonBufferedImage<TCell>> TNonBufferedImage<TCell>::Open(
    const std::string& FileName) {
  std::unique_ptr<TImageHeader> header = TImageHeader::Open(FileName);
  std::unique_ptr<std::istream> stream = OpenDataFile(FileName);
  auto image = Create(stream.get(), header.get());
  image->Own(std::move(stream), std::move(header), FileName);
  return image;
}

template <typename TCell>
int64_t TNonBufferedImage<TCell>::GetOffset(int32_t Col, int32_t Row) const {
  const int64_t index =
      std::clamp(TAbstractNonBufferedImage::GetOffset(Col, Row), -kFarIndex, kFarIndex);
  return index * static_cast<int64_t>(sizeof(TCell));
}

template <typename TCell>
float TNonBufferedImage<TCell>::ReadValue(uint64_t offset) {
  char bytes[sizeof(TCell)];
  ReadBytes(offset, bytes, sizeof bytes);
  TCell cell;
  std::memcpy(&cell, bytes, sizeof cell);
  return static_cast<float>(cell);
}

template <typename TCell>
void TNonBufferedImage<TCell>::Check(const std::istream* Stream, const TImageHeader* Header) const {
  TAbstractNonBufferedImage::Check(Stream, Header);
  if (Header->DataType != TStreamCellTraits<TCell>::DataType) {
    throw EInvalidOpException(TStreamCellTraits<TCell>::WrongType);
  }
}

template class TNonBufferedImage<uint8_t>;
template class TNonBufferedImage<int16_t>;
template class TNonBufferedImage<int32_t>;
template class TNonBufferedImage<float>;

}  // namespace zephra
