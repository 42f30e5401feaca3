#pragma once
// Stream-backed rasters: read-only images that read each cell straight from the binary data file
// (.img) with one seek and one read, and keep no buffer. They share nothing with the buffered
// images but the header and the layout of the data file: a headerless run of little-endian
// cells, row by row from the north-west cell.
//
// TNonBufferedImage is one template over the cell type; TByteNonBufferedImage,
// TIntegerNonBufferedImage, TInteger32NonBufferedImage and TSingleNonBufferedImage are its four
// instances.
//
// Choices of this library:
// - An object made by Create holds the caller's stream and header and releases neither; one made
//   by Open owns the header and the stream it made and releases them with itself, or at once if
//   Open fails.
// - A cell that the data does not hold - past the end of a file shorter than the header says, or
//   at a negative offset - raises EImageFileError. Within the data there is no bounds test: a
//   column past the end of a row reads on in the next row.
// - Offsets are computed in 64 bits, so every cell whose index fits 32 bits is found, also
//   beyond 2 GiB of data.

#include <cstdint>
#include <istream>
#include <memory>
#include <string>

#include <zephra/Raster/Header/zplbZephraImageHeader.h>

namespace zephra {

class TAbstractNonBufferedImage {
 public:
  virtual ~TAbstractNonBufferedImage() = default;
  TAbstractNonBufferedImage(const TAbstractNonBufferedImage&) = delete;
  TAbstractNonBufferedImage& operator=(const TAbstractNonBufferedImage&) = delete;

  // Byte offset of the zero-based cell (Col, Row) in the data: the cell index Width * Row + Col
  // here; the descendants multiply it by their cell size.
  virtual int64_t GetOffset(int32_t Col, int32_t Row) const;
  // The cell at a byte offset of the data, as a Single.
  virtual float ReadValue(uint64_t offset) = 0;
  // Raises EArgumentNullException for a missing stream, then for a missing header; the
  // descendants add the test of the header's data type.
  virtual void Check(const std::istream* Stream, const TImageHeader* Header) const;

  // The zero-based cell (Col, Row), row 0 being the first of the file; flag values come back as
  // they stand. Moves the stream's position.
  float Read(int32_t Col, int32_t Row);
  // The cell under a map point (see LatLngToColRow).
  float ReadLatLng(float Lat, float Lng);

  const TImageHeader* Header() const { return FHeader; }

 protected:
  // Only the stream-backed classes can make the key, so only their factories construct.
  class TConstructionKey {
   public:
    explicit TConstructionKey() = default;
  };

  explicit TAbstractNonBufferedImage(TConstructionKey) {}

  // Runs the virtual Check of the finished object, then holds the stream and the header.
  void Bind(std::istream* Stream, TImageHeader* Header);
  // Takes over the stream and header that Open made, with the name of the data file for the
  // messages.
  void Own(std::unique_ptr<std::istream> Stream, std::unique_ptr<TImageHeader> Header,
           const std::string& FileName);
  // Reads count bytes at offset into target, or raises EImageFileError if the data ends first.
  void ReadBytes(uint64_t offset, char* target, std::streamsize count);

  // The data file of Open, read-only and unbuffered: every read seeks first, so a buffer would
  // only be filled to be thrown away. POSIX has no share modes, so other programs are not kept
  // from writing it. Raises EFOpenError.
  static std::unique_ptr<std::istream> OpenDataFile(const std::string& FileName);

  std::istream* FStream = nullptr;

 private:
  [[noreturn]] void RaiseOutsideData(uint64_t offset) const;

  TImageHeader* FHeader = nullptr;
  std::unique_ptr<TImageHeader> FOwnedHeader;
  std::unique_ptr<std::istream> FOwnedStream;
  std::string FFileName;
};

template <typename TCell>
class TNonBufferedImage final : public TAbstractNonBufferedImage {
 public:
  // An image on the caller's stream and header, which stay the caller's and must outlive it.
  // Raises if either is missing or the header's data type is not this class's.
  static std::unique_ptr<TNonBufferedImage> Create(std::istream* Stream, TImageHeader* Header);
  // The data file FileName (normally the .img) with the .doc beside it.
  static std::unique_ptr<TNonBufferedImage> Open(const std::string& FileName);

  explicit TNonBufferedImage(TConstructionKey key) : TAbstractNonBufferedImage(key) {}

  int64_t GetOffset(int32_t Col, int32_t Row) const override;
  float ReadValue(uint64_t offset) override;
  void Check(const std::istream* Stream, const TImageHeader* Header) const override;
};

extern template class TNonBufferedImage<uint8_t>;
extern template class TNonBufferedImage<int16_t>;
extern template class TNonBufferedImage<int32_t>;
extern template class TNonBufferedImage<float>;

using TByteNonBufferedImage = TNonBufferedImage<uint8_t>;
using TIntegerNonBufferedImage = TNonBufferedImage<int16_t>;
using TInteger32NonBufferedImage = TNonBufferedImage<int32_t>;
using TSingleNonBufferedImage = TNonBufferedImage<float>;

}  // namespace zephra
