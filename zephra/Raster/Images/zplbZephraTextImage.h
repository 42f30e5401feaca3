#pragma once
// Rasters whose cells live in text files and in memory as 32-bit floats.
//
// TAsciiImage: a .doc header beside a data file of one number per line, read whole (never
// thinned: the reduced Open forms give a zero-filled buffer of the reduced size and read
// nothing) and rewritten whole by Close() when new data went in.
//
// TArcGridImage: an ArcInfo ASCII grid, a single text file whose six header lines are taken by
// position. It never writes anything: neither the grid nor a .doc.
//
// Cell numbers are read with a decimal point in every locale; the data file of a TAsciiImage is
// written in the general form with the locale's decimal separator, as the .doc is, so under a
// decimal-comma locale such a file reads back only under a point locale.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include <zephra/Common/zpExport.h>
#include <zephra/Raster/Images/zplbZephraAbstractImage.h>
#include <zephra/Raster/Images/zplbZephraCellVector.h>

namespace zephra {

class ZEPHRA_API TAsciiImage : public TAbstractImage {
 public:
  static std::unique_ptr<TAsciiImage> Create(const std::string& inFileName,
                                             const TImageHeader* headerIn);
  static std::unique_ptr<TAsciiImage> Create(const TAsciiImage& Source);
  // The whole file, whatever aScaleBuff says.
  static std::unique_ptr<TAsciiImage> Open(const std::string& inFileName, bool aScaleBuff);
  static std::unique_ptr<TAsciiImage> Open(const std::string& inFileName, float aRequestedRes);
  static std::unique_ptr<TAsciiImage> Open(const std::string& inFileName, float aminx, float amaxx,
                                           float aminy, float amaxy);
  static TAbstractImageClass ClassRef();

  explicit TAsciiImage(TConstructionKey key) : TAbstractImage(key) {}
  ~TAsciiImage() override;

  int32_t GetDataTypeSize() const override { return sizeof(float); }
  void* GetElement0Ptr() override { return Buffer.data(); }
  const void* GetElement0Ptr() const override { return Buffer.data(); }
  std::string GetImageTypeID() const override { return "ASCII"; }
  float BufferRead(int32_t index) const override;
  void BufferWrite(int32_t index, float val) override;
  TRange GetRangeBetween(float minVal, float maxVal, bool silent) override;

  // NumRecs cells, zero-filled by the system (see TCellVector): cells that a short text does not
  // reach cost no memory until they are touched.
  TCellVector<float> Buffer;

 protected:
  // Construction steps shared with TArcGridImage, which is built the same way where it has no
  // form of its own.
  template <typename TImage>
  static std::unique_ptr<TImage> CreateAs(const std::string& inFileName,
                                          const TImageHeader* headerIn);
  template <typename TImage>
  static std::unique_ptr<TImage> CopyAs(const TImage& Source);
  template <typename TImage, typename... TBounds>
  static std::unique_ptr<TImage> OpenReducedAs(const std::string& inFileName, TBounds... bounds);

  void LoadBufferValues(int32_t& cursor, int32_t startCol) override;
  void LoadData() override;
  void WriteDataFile(TOutputFile& File) const override;
  TRange FreshRangeBetween(float minVal, float maxVal, bool silent) override;

  // The cells from this index on were left at zero by the open, where a short text stopped;
  // SIZE_MAX on an image that no file filled, such as a copy. It holds only until something
  // writes to the image, which is why only FreshRangeBetween trusts it.
  size_t FUnreadFrom = SIZE_MAX;

 private:
  void ReadDataFile();
};

class ZEPHRA_API TArcGridImage final : public TAsciiImage {
 public:
  static std::unique_ptr<TArcGridImage> Create(const std::string& inFileName,
                                               const TImageHeader* headerIn);
  static std::unique_ptr<TArcGridImage> Create(const TArcGridImage& Source);
  // Reads the grid; aScaleBuff is ignored.
  static std::unique_ptr<TArcGridImage> Open(const std::string& inFileName, bool aScaleBuff);
  static std::unique_ptr<TArcGridImage> Open(const std::string& inFileName, float aRequestedRes);
  static std::unique_ptr<TArcGridImage> Open(const std::string& inFileName, float aminx,
                                             float amaxx, float aminy, float amaxy);
  static TAbstractImageClass ClassRef();

  explicit TArcGridImage(TConstructionKey key) : TAsciiImage(key) {}
  ~TArcGridImage() override;

  std::string GetImageTypeID() const override { return "ARCGRID"; }

 protected:
  void WriteBack() override {}  // a grid image never writes anything

 private:
  void ReadGrid(const std::string& inFileName);
};

}  // namespace zephra
