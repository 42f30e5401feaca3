#pragma once
/// @file
/// Stream-backed rasters: read-only images that read each cell straight from the binary data file
/// (.img) with one seek and one read, and keep no buffer. TNonBufferedImage is one template over
/// the cell type; TByteNonBufferedImage, TIntegerNonBufferedImage, TInteger32NonBufferedImage and
/// TSingleNonBufferedImage are its four instances.

#include <cstdint>
#include <istream>
#include <memory>
#include <string>

#include <zephra/Common/zpExport.h>
#include <zephra/Raster/Header/zplbZephraImageHeader.h>

namespace zephra {

/// The base of the stream-backed rasters. They share nothing with the buffered images but the
/// header and the layout of the data file: a headerless run of little-endian cells, row by row
/// from the north-west cell. An object made by Create() holds the caller's stream and header; one
/// made by Open() owns the header and the stream it made.
class ZEPHRA_API TAbstractNonBufferedImage {
 public:
  /// Releases the stream and header that Open() made; those given to Create() stay the caller's.
  virtual ~TAbstractNonBufferedImage() = default;
  /// Not copyable: the object may own its stream.
  TAbstractNonBufferedImage(const TAbstractNonBufferedImage&) = delete;
  /// Not assignable: the object may own its stream.
  TAbstractNonBufferedImage& operator=(const TAbstractNonBufferedImage&) = delete;

  /// Byte offset of the zero-based cell (Col, Row) in the data: the cell index Width * Row + Col
  /// here; the descendants multiply it by their cell size. Computed in 64 bits, so every cell
  /// whose index fits 32 bits is found, also beyond 2 GiB of data. Never raises.
  virtual int64_t GetOffset(int32_t Col, int32_t Row) const;
  /// The cell at a byte offset of the data, as a Single. Raises EImageFileError when the data does
  /// not hold the cell.
  virtual float ReadValue(uint64_t offset) = 0;
  /// Raises EArgumentNullException "Error in TAbstractNonBufferedImage.Check() - Stream in null"
  /// for a missing stream, then "Error in TAbstractNonBufferedImage.Check() - Header in null" for
  /// a missing header; the descendants add the test of the header's data type.
  virtual void Check(const std::istream* Stream, const TImageHeader* Header) const;

  /// The zero-based cell (Col, Row), row 0 being the first of the file; flag values come back as
  /// they stand. Moves the stream's position. Within the data there is no bounds test: a column
  /// past the end of a row reads on in the next row. Raises EImageFileError for a cell that the
  /// data does not hold (past the end of a short file, or at a negative offset).
  float Read(int32_t Col, int32_t Row);
  /// The cell under a map point (see LatLngToColRow()). Raises what LatLngToColRow() and Read()
  /// raise.
  float ReadLatLng(float Lat, float Lng);

  /// The raster's header; never null on an object that Create() or Open() returned.
  const TImageHeader* Header() const { return FHeader; }

 protected:
  /// Only the stream-backed classes can make the key, so only their factories construct.
  class TConstructionKey {
   public:
    /// A key; explicit, so that `{}` can't stand for one.
    explicit TConstructionKey() = default;
  };

  /// An image with neither stream nor header yet; Bind() completes it.
  explicit TAbstractNonBufferedImage(TConstructionKey) {}

  /// Runs the virtual Check() of the finished object, then holds the stream and the header.
  /// Raises what Check() raises, and then holds nothing.
  void Bind(std::istream* Stream, TImageHeader* Header);
  /// Takes over the stream and header that Open() made, with the name of the data file for the
  /// messages. Never raises.
  void Own(std::unique_ptr<std::istream> Stream, std::unique_ptr<TImageHeader> Header,
           const std::string& FileName);
  /// Reads count bytes at offset into target, or raises EImageFileError if the data ends first.
  void ReadBytes(uint64_t offset, char* target, std::streamsize count);

  /// The data file of Open(), read-only and unbuffered: every read seeks first, so a buffer would
  /// only be filled to be thrown away. POSIX has no share modes, so other programs are not kept
  /// from writing it. Raises EFOpenError when the file can't be opened.
  static std::unique_ptr<std::istream> OpenDataFile(const std::string& FileName);

  std::istream* FStream = nullptr;  ///< The data; null until Bind().

 private:
  [[noreturn]] void RaiseOutsideData(uint64_t offset) const;

  TImageHeader* FHeader = nullptr;
  std::unique_ptr<TImageHeader> FOwnedHeader;
  std::unique_ptr<std::istream> FOwnedStream;
  std::string FFileName;
};

/// A stream-backed raster of one cell type: uint8_t, int16_t, int32_t or float, each read in its
/// little-endian form and handed out as a Single.
template <typename TCell>
class ZEPHRA_API TNonBufferedImage final : public TAbstractNonBufferedImage {
 public:
  /// An image on the caller's stream and header, which stay the caller's and must outlive it.
  /// Raises EArgumentNullException if either is missing, EInvalidOpException "Image must be Byte
  /// image" (Integer, Integer32, Real) if the header's data type is not this class's.
  static std::unique_ptr<TNonBufferedImage> Create(std::istream* Stream, TImageHeader* Header);
  /// The data file FileName (normally the .img) with the .doc beside it; both are released with
  /// the image, or at once if Open fails. Raises what TImageHeader::Open() raises, EFOpenError
  /// when the data file can't be opened, and what Create() raises.
  static std::unique_ptr<TNonBufferedImage> Open(const std::string& FileName);

  /// For std::make_unique in the factories; the key keeps everyone else out.
  explicit TNonBufferedImage(TConstructionKey key) : TAbstractNonBufferedImage(key) {}

  /// The cell index times the size of one cell. Never raises.
  int64_t GetOffset(int32_t Col, int32_t Row) const override;
  /// One cell, converted to the nearest Single: 32-bit integers beyond 2^24 lose digits. Raises
  /// EImageFileError when the data does not hold the cell.
  float ReadValue(uint64_t offset) override;
  /// The base tests, then EInvalidOpException "Image must be Byte image" (Integer, Integer32,
  /// Real) when the header's data type is not this class's; the file type is not tested.
  void Check(const std::istream* Stream, const TImageHeader* Header) const override;
};

extern template class TNonBufferedImage<uint8_t>;
extern template class TNonBufferedImage<int16_t>;
extern template class TNonBufferedImage<int32_t>;
extern template class TNonBufferedImage<float>;

using TByteNonBufferedImage = TNonBufferedImage<uint8_t>;       ///< Byte cells (dtByte).
using TIntegerNonBufferedImage = TNonBufferedImage<int16_t>;    ///< 16-bit cells (dtInteger).
using TInteger32NonBufferedImage = TNonBufferedImage<int32_t>;  ///< 32-bit cells (dtInteger32).
using TSingleNonBufferedImage = TNonBufferedImage<float>;       ///< Float cells (dtReal).

}  // namespace zephra
