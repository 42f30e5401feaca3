#pragma once
/// @file
/// TTypedImage, the binary raster classes as one template over the cell type, and its four
/// instances TRealImage, TByteImage, TIntegerImage and TInteger32Image.
//
// Buffer holds the image, NumRecs cells on the grid of Header(), row by row from the north-west
// cell. It is a std::vector whose memory comes zero-filled and whose new cells are never written
// by the vector itself (see TCellVector).

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

#include <zephra/Common/zpExport.h>
#include <zephra/Raster/Images/zplbZephraAbstractImage.h>
#include <zephra/Raster/Images/zplbZephraCellVector.h>

namespace zephra {

/// A binary raster of TCell cells. The instances differ only in the cell (32-bit float, 8-bit
/// unsigned, 16-bit signed, 32-bit signed), its data type word, and the value of a new cell
/// (-9990.0 for real images, 0 for the others). To every caller a cell is a Single: integer cells
/// store the written value rounded half to even, keeping its low bits. TGeoTiffImage derives
/// from it, for cells that come from a GeoTIFF instead of a data file.
template <typename TCell>
class ZEPHRA_API TTypedImage : public TAbstractImage {
 public:
  /// The cell array type of Buffer and RowBuffer.
  using TCellArray = TCellVector<TCell>;

  /// A new image bound to inFileName; no file is touched until Close(). Raises EImageFileError
  /// "No image header information supplied" without headerIn, which stays the caller's.
  static std::unique_ptr<TTypedImage> Create(const std::string& inFileName,
                                             const TImageHeader* headerIn);
  /// A copy with its own headers and buffers, and the source's file name and state. Never raises
  /// but std::bad_alloc.
  static std::unique_ptr<TTypedImage> Create(const TTypedImage& Source);
  /// The whole file, or thinned to the screen if aScaleBuff is True. Raises Exception "There was
  /// an error opening "%s". Please check the file and try again..." around any failure but
  /// the allocation limit's EImageFileError, which passes unchanged.
  static std::unique_ptr<TTypedImage> Open(const std::string& inFileName, bool aScaleBuff);
  /// Thinned to a resolution of about aRequestedRes map units. Raises the .doc failures of
  /// TImageHeader::LoadFromFile(), EImageFileError "Program atempted to open an image file which
  /// doesn't exist (%s)" and the other read failures of ReadFile(), unchanged.
  static std::unique_ptr<TTypedImage> Open(const std::string& inFileName, float aRequestedRes);
  /// The window aminx .. amaxx, aminy .. amaxy of the map, thinned to the screen. Raises as the
  /// aRequestedRes form, and as ReOpen() for the window.
  static std::unique_ptr<TTypedImage> Open(const std::string& inFileName, float aminx, float amaxx,
                                           float aminy, float amaxy);
  /// The class reference of this instance. Never raises.
  static TAbstractImageClass ClassRef();

  /// An empty image for the factories; use Create or Open. Never raises.
  explicit TTypedImage(TConstructionKey key) : TAbstractImage(key) {}
  /// Writes back as Close() if nobody did; never raises.
  ~TTypedImage() override;

  /// sizeof(TCell). Never raises.
  int32_t GetDataTypeSize() const override { return sizeof(TCell); }
  /// Buffer.data(). Never raises.
  void* GetElement0Ptr() override { return Buffer.data(); }
  /// Buffer.data(). Never raises.
  const void* GetElement0Ptr() const override { return Buffer.data(); }
  /// "REAL", "BYTE", "INT" or "INT32". Never raises.
  std::string GetImageTypeID() const override;
  /// Buffer cell index as a Single. Raises as TAbstractImage::BufferRead().
  float BufferRead(int32_t index) const override;
  /// The 1-based cell (c, r). Raises as TAbstractImage::ReadCR().
  float ReadCR(int32_t c, int32_t r) const override;
  /// The zero-based cell (Col, Row). Raises as TAbstractImage::ReadCR0().
  float ReadCR0(int32_t Col, int32_t Row) const override;
  /// The cell at BufferPointer, which then moves on. Raises as TAbstractImage::FileRead().
  float FileRead() override;
  /// Stores val in buffer cell index. Raises as TAbstractImage::BufferWrite(); the integer
  /// classes raise EMathError for a val that is no number or fits no 64-bit integer, and the
  /// cell then keeps its old value.
  void BufferWrite(int32_t index, float val) override;
  /// Raises as TAbstractImage::GetRangeBetween().
  TRange GetRangeBetween(float minVal, float maxVal, bool silent) override;

  /// The cells, NumRecs of them, row by row from the north-west cell of Header()'s grid.
  TCellArray Buffer;

 protected:
  /// Copies one file row, in its stored type. Raises EInvalidOpException when the row would pass
  /// the end of either buffer.
  void LoadBufferValues(int32_t& cursor, int32_t startCol) override;
  /// Raises as TAbstractImage::LoadData().
  void LoadData() override;
  /// The buffer and the row buffer of one file row. Never raises.
  int64_t LoadBytes(int64_t cells) const override {
    return (cells + std::max(FHeader->Width, 0)) * static_cast<int64_t>(sizeof(TCell));
  }
  /// Raises as TAbstractImage::WriteDataFile().
  void WriteDataFile(TOutputFile& File) const override;

  /// One full row of the file while a thinned or windowed read runs; empty until the first load.
  TCellArray RowBuffer;
};

extern template class TTypedImage<float>;
extern template class TTypedImage<uint8_t>;
extern template class TTypedImage<int16_t>;
extern template class TTypedImage<int32_t>;

/// 32-bit float cells, type word "REAL"; a new cell is -9990.0.
using TRealImage = TTypedImage<float>;
/// 8-bit unsigned cells, type word "BYTE".
using TByteImage = TTypedImage<uint8_t>;
/// 16-bit signed cells, type word "INT".
using TIntegerImage = TTypedImage<int16_t>;
/// 32-bit signed cells, type word "INT32".
using TInteger32Image = TTypedImage<int32_t>;

}  // namespace zephra
