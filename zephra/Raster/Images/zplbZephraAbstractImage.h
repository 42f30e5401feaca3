#pragma once
// TAbstractImage: the base of every buffered raster. A buffered raster holds all its cells in
// one array in memory; the data file is read when the image is opened or reopened and rewritten
// whole, with its .doc header, by Close() when new data went in.
//
// Two headers: FHeader is the truth about the file (full size and extent); FZoomHeader describes
// the buffer when the image is thinned (every n-th cell of every n-th row) or zoomed to a window
// of the map. Header() returns whichever describes the buffer, so every cell and coordinate
// operation works on the buffer's grid.
//
// Construction is two-phase: the static Create/Open forms of each concrete class build an empty
// object and then run the construction steps below on it, so that those steps reach the concrete
// class's LoadData and ReOpen. A construction that fails leaves no object and writes no file.
//
// Choices of this library:
// - A window that needs cells west, east or north of the file is refused with EImageFileError
//   before the image changes. A ReOpen that fails for any reason leaves the image as it was (for
//   a moment the old and the new buffer are both in memory).
// - A thinned or zoomed image never writes its reduced buffer over the file: writes to it stay
//   in memory, and Close() skips its write-back.
// - The cell count must lie in 0 .. 2^31 - 1 and neither side of the grid may be negative;
//   other sizes are refused with EImageFileError.
// - Every open and ReOpen refuses a buffer larger than OpenAllocationLimit() (zpPlatform.h) with
//   EImageFileError before allocating it; that refusal passes the guard of Open(inFileName,
//   aScaleBuff) in its own words, since it is a verdict on the file and not a failure to read it.

#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExport.h>
#include <zephra/Raster/Header/zplbZephraImageHeader.h>
#include <zephra/Raster/Images/zplbZephraImageClass.h>

namespace zephra {

class TImageFile;
class TKey;
class TOutputFile;
class TSmoothingIndexList;

class ZEPHRA_API TAbstractImage {
 public:
  virtual ~TAbstractImage();
  TAbstractImage(const TAbstractImage&) = delete;
  TAbstractImage& operator=(const TAbstractImage&) = delete;

  // Cell size in bytes, the address of buffer cell 0, and the type word ("REAL", "BYTE", ...).
  virtual int32_t GetDataTypeSize() const = 0;
  virtual void* GetElement0Ptr() = 0;
  virtual const void* GetElement0Ptr() const = 0;
  virtual std::string GetImageTypeID() const = 0;

  // Moves the buffer to the window aminx .. amaxx, aminy .. amaxy of the map, thinned to the
  // screen, and reads the file again; four zeros go back to the whole extent. Values written
  // before are lost.
  virtual void ReOpen(float aminx, float amaxx, float aminy, float amaxy);

  // Cell access on the grid of Header(). Columns and rows count from 1 in ReadCR, WriteCR,
  // ReadRect and CRtoXY, from 0 everywhere else; row 0 is the northernmost. Only the linear
  // index is checked, so a column past the end of a row reads on in the next row.
  virtual float ReadCR(int32_t c, int32_t r) const;
  virtual float ReadCR0(int32_t Col, int32_t Row) const;
  virtual float ReadXY(float x, float y) const;
  // The index check of every read; the typed classes add the cell.
  virtual float BufferRead(int32_t index) const {
    CheckIndexAndRaiseOnError(index);
    return 0.0f;
  }
  // The index check and the running range of Header() of every write; the typed classes store.
  virtual void BufferWrite(int32_t index, float val);
  // Sequential access at BufferPointer, which moves on only when the access succeeds.
  virtual float FileRead();
  virtual void FileWrite(float val);
  // The smallest and largest cell within minVal .. maxVal, and over all cells; both run on the
  // sequential cursor.
  virtual TRange GetRangeBetween(float minVal, float maxVal, bool silent);
  virtual TRange GetRange();
  virtual void ResetFile();

  void WriteCR(int32_t c, int32_t r, float val);
  // Cell under a map point with no limits and no longitude handling: x = Maxx is the first
  // cell of the next row.
  void WriteXY(float x, float y, float val);
  // Zero-based cell under a map point (see LatLngToColRow).
  void XYtoCR(float x, float y, int32_t& c, int32_t& r) const;
  // North-west corner of the 1-based cell (c, r) of the file's own grid, also on a reduced image.
  void CRtoXY(int32_t c, int32_t r, float& x, float& y) const;
  // Height rows of Width cells from the 1-based cell (Left, Top), indexed [row][column].
  std::vector<TSingleArray> ReadRect(int32_t Left, int32_t Top, int32_t Width,
                                     int32_t Height) const;
  bool EndOfFile() const { return BufferPointer >= NumRecs; }

  // The plain mean of the valid cells in a (2 * SmoothLevel + 1)-square window around a cell or
  // map point, wrapping east-west; SmoothingIndexes (may be null) receives the window's cells.
  float ReadCRWithSmoothing(int32_t c, int32_t r, int32_t SmoothLevel,
                            TSmoothingIndexList* SmoothingIndexes) const;
  float ReadXYWithSmoothing(float x, float y, int32_t SmoothLevel,
                            TSmoothingIndexList* SmoothingIndexes) const;

  // Every cell of this image through key into outImage, whose legend becomes the key's names.
  void Reclass(TAbstractImage* outImage, const TKey* key);
  // The buffer's raw cells, little-endian, in buffer order: NumRecs * GetDataTypeSize() bytes.
  TByteArray GetBytes() const;
  void SetBytes(const TByteArray& Bytes);
  void SaveToStream(std::ostream& Stream) const;
  void LoadFromStream(std::istream& Stream);

  // Burns the polygons of a shapefile into the cells, in memory only (MemOnly becomes True).
  void FillShape(const std::string& ShpFile, const TSingleArray& dataarr);

  // Text exports of the buffer's grid; an empty file name does nothing.
  void ExportARCGrid(const std::string& outFN, float nullVal);
  void ExportXYZGrid(const std::string& outFN, float nullVal);
  void ExportNodeGrid(const std::string& inFN, const std::string& outFN, float nullVal);

  // The write-back: if new data went in, MemOnly is False and the image is neither thinned nor
  // zoomed, the data file and then the .doc are written to the name FileName() holds now. Runs
  // once; a later call does nothing, and later changes stay in memory. The destructor runs it
  // if nobody did, and a failure there goes to the debug channel: callers that care about
  // write errors call Close().
  void Close();

  int32_t ScaleImage() const { return FScaleImage; }
  TImageHeader* Header() { return IsReduced() ? FZoomHeader.get() : FHeader.get(); }
  const TImageHeader* Header() const { return IsReduced() ? FZoomHeader.get() : FHeader.get(); }
  bool Zoomed() const { return FIsZoomed; }
  const std::string& FileName() const { return FFileName; }
  // Takes effect for the write-back and later reads of the file only.
  void SetFileName(const std::string& value) { FFileName = value; }
  std::string ImageTypeID() const { return GetImageTypeID(); }

  // True until the first data value is written; while True nothing is written back.
  bool FirstWrite = false;
  // True: this image has no files and is never written back.
  bool MemOnly = false;
  // Cells in the buffer: Width * Height of Header().
  int32_t NumRecs = 0;
  // Index of the next cell of sequential access.
  int32_t BufferPointer = 0;

 protected:
  // Only the raster classes themselves can make the key, so only their factories construct.
  class TConstructionKey {
   public:
    explicit TConstructionKey() = default;
  };

  explicit TAbstractImage(TConstructionKey) {}

  // Builds an image of class TImage and runs the construction steps on it; the image counts as
  // constructed (and may write back) only when they all succeeded.
  template <typename TImage, typename TSteps>
  static std::unique_ptr<TImage> Construct(TSteps&& steps) {
    auto image = std::make_unique<TImage>(TConstructionKey());
    steps(*image);
    static_cast<TAbstractImage&>(*image).FConstructed = true;
    return image;
  }

  // Construction steps of the base part. CreateImage binds a new image to inFileName (a .doc
  // name becomes the .img name) without touching any file; CreateCopy takes over the state and
  // copies both headers. OpenImage with aScaleBuff runs inside a guard that rewords every
  // failure; the other two forms let failures pass unchanged.
  void CreateImage(const std::string& inFileName, const TImageHeader* headerIn);
  void CreateCopy(const TAbstractImage& Source);
  void OpenImage(const std::string& inFileName, bool aScaleBuff);
  void OpenImage(const std::string& inFileName, float aRequestedRes);
  void OpenImage(const std::string& inFileName, float aminx, float amaxx, float aminy, float amaxy);

  // The end of every range scan: the empty-scan result and failure, and the cursor back to 0.
  TRange FinishRangeScan(TRange range, bool found, bool silent);
  // GetRangeBetween straight over a buffer of known cell type, with what the cursor pass does:
  // the cursor ends at the end on failure, at 0 otherwise.
  // Both are defined in the library (private/zplbZephraRangeScan.h).
  template <typename TCells>
  TRange ScanBuffer(const TCells& cells, float minVal, float maxVal, bool silent);
  // The same over count values that read(i) gives in place of the buffer's cells.
  template <typename TRead>
  TRange ScanCells(size_t count, TRead read, float minVal, float maxVal, bool silent);
  // GetRangeBetween on an image that nothing has changed since its file was read. A class that
  // knows which cells the reading left at zero need not touch them.
  virtual TRange FreshRangeBetween(float minVal, float maxVal, bool silent) {
    return GetRangeBetween(minVal, maxVal, silent);
  }
  // For the generic open's range refresh, on an image it has just opened.
  static TRange FreshRangeOf(TAbstractImage& image, float minVal, float maxVal, bool silent) {
    return image.FreshRangeBetween(minVal, maxVal, silent);
  }
  // The file's own header of an image, for the generic open's range refresh.
  static TImageHeader* FileHeaderOf(TAbstractImage& image) { return image.FHeader.get(); }

  // Copies one file row from the row buffer into the buffer at cursor and moves cursor on.
  virtual void LoadBufferValues(int32_t& cursor, int32_t startCol) = 0;
  // Sizes the buffer to NumRecs cells and the row buffer to the file's width, then ReadFile.
  virtual void LoadData() = 0;
  // The bytes that LoadData allocates for a buffer of cells cells; checked against the open
  // allocation limit before anything is allocated.
  virtual int64_t LoadBytes(int64_t cells) const { return cells * GetDataTypeSize(); }
  // The reader of binary data files: the whole file in one read, or the sampled rows of a
  // reduced image one by one into RowBuffer, each handed to LoadBufferValues.
  void ReadFile(int32_t cellSize, std::span<std::byte> Buffer, std::span<std::byte> RowBuffer);

  // The write-back proper, run by Close() when it is due: the data file, then the .doc. A class
  // with another file form or with no files overrides it.
  virtual void WriteBack();
  // The cells in the class's file form, into the replacement of the data file.
  virtual void WriteDataFile(TOutputFile& File) const = 0;
  // The destructor of every concrete class calls this first, while its overrides still stand.
  void CloseOnDestruction() noexcept;

  // NumRecs is a public field that a host may change; the cells that really exist bound every
  // access as well, so that such a change raises EInvalidOpException instead of reaching outside
  // the buffer. A negative index is the record check's to report, in its own words.
  static void CheckCellIndex(int64_t index, size_t cells) {
    if (index >= 0 && static_cast<uint64_t>(index) >= cells) [[unlikely]] {
      RaiseCellIndexError(index, cells);
    }
  }
  [[noreturn]] static void RaiseCellIndexError(int64_t index, size_t cells);
  void CheckIndexAndRaiseOnError(int64_t index) const {
    if (index < 0 || index >= NumRecs) [[unlikely]] {
      RaiseReadIndexError(index);
    }
  }
  bool IsReduced() const { return FIsZoomed || FScaleImage > 1; }
  // The buffer index of the zero-based cell (Col, Row), for a read.
  int32_t ReadIndex0(int32_t Col, int32_t Row) const {
    return ReadIndex(static_cast<int64_t>(Header()->Width) * Row + Col);
  }
  // The buffer index of the 1-based cell (c, r), for a read; a column or row below 1 raises.
  int32_t ReadIndex1(int32_t c, int32_t r) const {
    if (c <= 0 || r <= 0) [[unlikely]] {
      RaiseOneBasedError();
    }
    return ReadIndex(static_cast<int64_t>(Header()->Width) * (r - 1) + (c - 1));
  }
  // A read index that fits the 32-bit operations; anything beyond is outside the buffer anyway.
  int32_t ReadIndex(int64_t index) const {
    if (index != static_cast<int32_t>(index)) [[unlikely]] {
      RaiseReadIndexError(index);
    }
    return static_cast<int32_t>(index);
  }

  std::unique_ptr<TImageHeader> FHeader;
  std::unique_ptr<TImageHeader> FZoomHeader;
  bool FIsZoomed = false;

 private:
  struct TGridOrigin {
    int32_t Col;
    int32_t Row;
  };

  void Initialise(bool aScaleBuff);
  void SetResolution(float aRequestedRes);
  // Refuses with EImageFileError a buffer of cells cells that the open allocation limit does not
  // allow, before LoadData allocates it.
  void CheckLoadAllocation(int64_t cells) const;
  void ReadRows(const TImageFile& file, int32_t cellSize, std::span<std::byte> RowBuffer);
  TGridOrigin WindowOrigin(const TImageHeader& window, int32_t step, bool zoomed) const;
  [[noreturn]] void RaiseReadIndexError(int64_t index) const;
  [[noreturn]] static void RaiseOneBasedError();
  static int32_t WriteIndex(double index);

  int32_t FScaleImage = 0;
  std::string FFileName;
  bool FConstructed = false;
  bool FClosed = false;
};

// The one writer of binary data files: writes RecordCount records of RecordSize bytes from
// Buffer as the new content of FileName, which takes it only when all of it was written. A disk
// that fills up raises EImageFileError, other system failures EInOutError; either way FileName
// stays as it was.
ZEPHRA_API void WriteImageData(const std::string& FileName, int32_t RecordSize, int32_t RecordCount,
                               const void* Buffer);

}  // namespace zephra
