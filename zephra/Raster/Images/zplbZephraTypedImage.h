#pragma once
// TTypedImage: the binary raster classes, one template over the cell type. TRealImage,
// TByteImage, TIntegerImage and TInteger32Image are its four instances; they differ only in the
// cell (32-bit float, 8-bit unsigned, 16-bit signed, 32-bit signed), its data type word, and the
// value of a new cell (-9990.0 for real images, 0 for the others). To every caller a cell is a
// Single: integer cells store the written value rounded half to even, keeping its low bits.
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

template <typename TCell>
class ZEPHRA_API TTypedImage final : public TAbstractImage {
 public:
  using TCellArray = TCellVector<TCell>;

  // A new image bound to inFileName; no file is touched until Close(). Raises EImageFileError
  // without headerIn, which stays the caller's.
  static std::unique_ptr<TTypedImage> Create(const std::string& inFileName,
                                             const TImageHeader* headerIn);
  // A copy with its own headers and buffers, and the source's file name and state.
  static std::unique_ptr<TTypedImage> Create(const TTypedImage& Source);
  // The whole file, or thinned to the screen if aScaleBuff is True.
  static std::unique_ptr<TTypedImage> Open(const std::string& inFileName, bool aScaleBuff);
  // Thinned to a resolution of about aRequestedRes map units.
  static std::unique_ptr<TTypedImage> Open(const std::string& inFileName, float aRequestedRes);
  // The window aminx .. amaxx, aminy .. amaxy of the map, thinned to the screen.
  static std::unique_ptr<TTypedImage> Open(const std::string& inFileName, float aminx, float amaxx,
                                           float aminy, float amaxy);
  static TAbstractImageClass ClassRef();

  explicit TTypedImage(TConstructionKey key) : TAbstractImage(key) {}
  ~TTypedImage() override;

  int32_t GetDataTypeSize() const override { return sizeof(TCell); }
  void* GetElement0Ptr() override { return Buffer.data(); }
  const void* GetElement0Ptr() const override { return Buffer.data(); }
  std::string GetImageTypeID() const override;
  float BufferRead(int32_t index) const override;
  float ReadCR(int32_t c, int32_t r) const override;
  float ReadCR0(int32_t Col, int32_t Row) const override;
  float FileRead() override;
  void BufferWrite(int32_t index, float val) override;
  TRange GetRangeBetween(float minVal, float maxVal, bool silent) override;

  TCellArray Buffer;

 protected:
  void LoadBufferValues(int32_t& cursor, int32_t startCol) override;
  void LoadData() override;
  // The buffer and the row buffer of one file row.
  int64_t LoadBytes(int64_t cells) const override {
    return (cells + std::max(FHeader->Width, 0)) * static_cast<int64_t>(sizeof(TCell));
  }
  void WriteDataFile(TOutputFile& File) const override;

  // One full row of the file while a thinned or windowed read runs; empty until the first load.
  TCellArray RowBuffer;
};

extern template class TTypedImage<float>;
extern template class TTypedImage<uint8_t>;
extern template class TTypedImage<int16_t>;
extern template class TTypedImage<int32_t>;

using TRealImage = TTypedImage<float>;
using TByteImage = TTypedImage<uint8_t>;
using TIntegerImage = TTypedImage<int16_t>;
using TInteger32Image = TTypedImage<int32_t>;

}  // namespace zephra
