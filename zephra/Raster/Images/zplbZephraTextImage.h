#pragma once
/// @file
/// The text rasters TAsciiImage and TArcGridImage, whose cells live in text files and in memory
/// as 32-bit floats.
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

/// A .doc header beside a data file of one number per line, read whole (never thinned: the
/// reduced Open forms give a zero-filled buffer of the reduced size and read nothing) and
/// rewritten whole by Close() when new data went in.
class ZEPHRA_API TAsciiImage : public TAbstractImage {
 public:
  /// A new image bound to inFileName; no file is touched until Close(). Raises EImageFileError
  /// "No image header information supplied" without headerIn.
  static std::unique_ptr<TAsciiImage> Create(const std::string& inFileName,
                                             const TImageHeader* headerIn);
  /// A copy with its own headers and buffer. Never raises but std::bad_alloc.
  static std::unique_ptr<TAsciiImage> Create(const TAsciiImage& Source);
  /// The whole file, whatever aScaleBuff says. Raises Exception "There was an error opening
  /// "%s". Please check the file and try again..." around a missing .doc or data file or
  /// exhausted memory; EConvertError for a token that is no number passes unwrapped.
  static std::unique_ptr<TAsciiImage> Open(const std::string& inFileName, bool aScaleBuff);
  /// A zero-filled buffer of the reduced size; reads no cells. Raises the .doc and missing data
  /// file failures of TTypedImage::Open(), unchanged.
  static std::unique_ptr<TAsciiImage> Open(const std::string& inFileName, float aRequestedRes);
  /// A zero-filled buffer for the window; reads no cells. Raises as the aRequestedRes form and as
  /// ReOpen() for the window.
  static std::unique_ptr<TAsciiImage> Open(const std::string& inFileName, float aminx, float amaxx,
                                           float aminy, float amaxy);
  /// The class reference of TAsciiImage. Never raises.
  static TAbstractImageClass ClassRef();

  /// An empty image for the factories; use Create or Open. Never raises.
  explicit TAsciiImage(TConstructionKey key) : TAbstractImage(key) {}
  /// Writes back as Close() if nobody did; never raises.
  ~TAsciiImage() override;

  /// sizeof(float). Never raises.
  int32_t GetDataTypeSize() const override { return sizeof(float); }
  /// Buffer.data(). Never raises.
  void* GetElement0Ptr() override { return Buffer.data(); }
  /// Buffer.data(). Never raises.
  const void* GetElement0Ptr() const override { return Buffer.data(); }
  /// "ASCII". Never raises.
  std::string GetImageTypeID() const override { return "ASCII"; }
  /// Raises as TAbstractImage::BufferRead().
  float BufferRead(int32_t index) const override;
  /// Raises as TAbstractImage::BufferWrite().
  void BufferWrite(int32_t index, float val) override;
  /// Raises as TAbstractImage::GetRangeBetween().
  TRange GetRangeBetween(float minVal, float maxVal, bool silent) override;

  /// NumRecs cells, zero-filled by the system (see TCellVector): cells that a short text does not
  // reach cost no memory until they are touched.
  TCellVector<float> Buffer;

 protected:
  // Construction steps shared with TArcGridImage, which is built the same way where it has no
  // form of its own.
  /// Create(inFileName, headerIn) for TImage. Raises as Create().
  template <typename TImage>
  static std::unique_ptr<TImage> CreateAs(const std::string& inFileName,
                                          const TImageHeader* headerIn);
  /// Create(Source) for TImage. Never raises but std::bad_alloc.
  template <typename TImage>
  static std::unique_ptr<TImage> CopyAs(const TImage& Source);
  /// The reduced Open forms for TImage. Raises as those forms.
  template <typename TImage, typename... TBounds>
  static std::unique_ptr<TImage> OpenReducedAs(const std::string& inFileName, TBounds... bounds);

  /// Text rows are never loaded row by row. Never raises.
  void LoadBufferValues(int32_t& cursor, int32_t startCol) override;
  /// Sizes the buffer; only a whole open reads the data file into it. Raises EImageFileError
  /// "%s does not exist." and EConvertError for a token that is no number.
  void LoadData() override;
  /// One number per line. Raises EInOutError when the file can't be written.
  void WriteDataFile(TOutputFile& File) const override;
  /// Skips the cells the open left at zero. Raises as TAbstractImage::GetRangeBetween().
  TRange FreshRangeBetween(float minVal, float maxVal, bool silent) override;

  /// The cells from this index on were left at zero by the open, where a short text stopped;
  /// SIZE_MAX on an image that no file filled, such as a copy. It holds only until something
  /// writes to the image, which is why only FreshRangeBetween trusts it.
  size_t FUnreadFrom = SIZE_MAX;

 private:
  void ReadDataFile();
};

/// An ArcInfo ASCII grid, a single text file whose six header lines are taken by position. It
/// never writes anything: neither the grid nor a .doc.
class ZEPHRA_API TArcGridImage final : public TAsciiImage {
 public:
  /// A new grid image bound to inFileName. Raises EImageFileError "No image header information
  /// supplied" without headerIn.
  static std::unique_ptr<TArcGridImage> Create(const std::string& inFileName,
                                               const TImageHeader* headerIn);
  /// A copy with its own headers and buffer. Never raises but std::bad_alloc.
  static std::unique_ptr<TArcGridImage> Create(const TArcGridImage& Source);
  /// Reads the grid; aScaleBuff is ignored. Raises EImageFileError "%s does not exist." or for
  /// an impossible size, and Exception "Error reading ArcGrid data at %d,%d", a CR and
  /// "Message: %s" for a cell it can't read.
  static std::unique_ptr<TArcGridImage> Open(const std::string& inFileName, bool aScaleBuff);
  /// As TAsciiImage::Open(inFileName, aRequestedRes): the .doc beside inFileName and a
  /// zero-filled buffer; reads no cells. Raises as that form.
  static std::unique_ptr<TArcGridImage> Open(const std::string& inFileName, float aRequestedRes);
  /// As TAsciiImage's window Open: a zero-filled buffer; reads no cells. Raises as that form.
  static std::unique_ptr<TArcGridImage> Open(const std::string& inFileName, float aminx,
                                             float amaxx, float aminy, float amaxy);
  /// The class reference of TArcGridImage. Never raises.
  static TAbstractImageClass ClassRef();

  /// An empty image for the factories; use Create or Open. Never raises.
  explicit TArcGridImage(TConstructionKey key) : TAsciiImage(key) {}
  /// Writes nothing. Never raises.
  ~TArcGridImage() override;

  /// "ARCGRID". Never raises.
  std::string GetImageTypeID() const override { return "ARCGRID"; }

 protected:
  /// A grid image never writes anything. Never raises.
  void WriteBack() override {}

 private:
  void ReadGrid(const std::string& inFileName);
};

}  // namespace zephra
