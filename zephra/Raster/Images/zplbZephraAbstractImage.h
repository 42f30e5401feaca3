#pragma once
/// @file
/// TAbstractImage, the base of every buffered raster: all cells in one array in memory, read when
/// the image is opened or reopened and written back whole, with its .doc header, by Close().
/// Also WriteImageData, the one writer of binary data files.
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

/// The base of every buffered raster: the buffer, its two headers, cell and coordinate access,
/// range scans, exports and the write-back. Built only through the static Create/Open forms of
/// the concrete classes or a TImageClass; never copied.
///
/// Cell access works on the grid of Header(). Columns and rows count from 1 in ReadCR, WriteCR,
/// ReadRect and CRtoXY, from 0 everywhere else; row 0 is the northernmost. Only the linear index
/// is checked, so a column past the end of a row reads on in the next row.
class ZEPHRA_API TAbstractImage {
 public:
  /// The concrete class has run Close() if nobody did, sending a failure to the debug channel.
  /// Never raises.
  virtual ~TAbstractImage();
  /// Not copyable: TImageFactory::Copy() or the Create(Source) forms make copies.
  TAbstractImage(const TAbstractImage&) = delete;
  /// Not assignable.
  TAbstractImage& operator=(const TAbstractImage&) = delete;

  /// Cell size in bytes. Never raises.
  virtual int32_t GetDataTypeSize() const = 0;
  /// The address of buffer cell 0. Never raises.
  virtual void* GetElement0Ptr() = 0;
  /// The address of buffer cell 0. Never raises.
  virtual const void* GetElement0Ptr() const = 0;
  /// The type word ("REAL", "BYTE", "INT", "INT32", "ASCII", "ARCGRID"). Never raises.
  virtual std::string GetImageTypeID() const = 0;

  /// Moves the buffer to the window aminx .. amaxx, aminy .. amaxy of the map, thinned to the
  /// screen, and reads the file again; four zeros go back to the whole extent. Values written
  /// before are lost. Raises EImageFileError for a window west, east or north of the file or a
  /// buffer over OpenAllocationLimit(), Exception "Attempted to read past the end of the file"
  /// for one south of it, and the read failures of an open; the image then stays as it was.
  virtual void ReOpen(float aminx, float amaxx, float aminy, float amaxy);

  /// The 1-based cell (c, r). Raises EArgumentException "ReadCR index values are 1 based" for c
  /// or r below 1, and the read index failure of BufferRead().
  virtual float ReadCR(int32_t c, int32_t r) const;
  /// The zero-based cell (Col, Row). Raises the read index failure of BufferRead().
  virtual float ReadCR0(int32_t Col, int32_t Row) const;
  /// The cell under a map point. Raises EArgumentException "Lng is outside map bounds" or "Lat
  /// is outside map bounds" off the map, and the read index failure of BufferRead().
  virtual float ReadXY(float x, float y) const;
  /// Buffer cell index. The base only checks the index; the concrete classes add the cell.
  /// Raises EImageFileError "Failed to read record from image at index %d (Valid range: 0 -
  /// %d)." (with " (file name)" after "image" when the image has one) outside 0 .. NumRecs - 1.
  virtual float BufferRead(int32_t index) const {
    CheckIndexAndRaiseOnError(index);
    return 0.0f;
  }
  /// Writes buffer cell index and widens the running range of Header(); the base checks and
  /// keeps the range, the concrete classes store. Raises EImageFileError "Image file buffer
  /// access violation" outside the buffer; integer classes raise EMathError for a val that fits
  /// no 64-bit integer or is no number.
  virtual void BufferWrite(int32_t index, float val);
  /// The cell at BufferPointer, which then moves on. Raises as BufferRead(); the cursor stays.
  virtual float FileRead();
  /// Writes the cell at BufferPointer, which then moves on. Raises as BufferWrite(); the cursor
  /// stays.
  virtual void FileWrite(float val);
  /// The smallest and largest cell within minVal .. maxVal, on the sequential cursor (back to 0
  /// after). Raises EImageFileError "Error scanning image file: no values in specified range."
  /// when none lies there and silent is False; the cursor then stays at the end.
  virtual TRange GetRangeBetween(float minVal, float maxVal, bool silent);
  /// The smallest and largest of all cells, on the sequential cursor. Raises as GetRangeBetween().
  virtual TRange GetRange();
  /// Sets BufferPointer back to 0. Never raises.
  virtual void ResetFile();

  /// Writes the 1-based cell (c, r); a column 0 is the last cell of the row before. Raises
  /// EImageFileError "Image file buffer access violation" outside the buffer.
  void WriteCR(int32_t c, int32_t r, float val);
  /// Writes the cell under a map point, with no limits and no longitude handling: x = Maxx is
  /// the first cell of the next row. Raises EImageFileError "Image file buffer access violation"
  /// outside the buffer.
  void WriteXY(float x, float y, float val);
  /// Zero-based cell under a map point (see LatLngToColRow). Raises EArgumentException "Lng is
  /// outside map bounds" or "Lat is outside map bounds" off the map.
  void XYtoCR(float x, float y, int32_t& c, int32_t& r) const;
  /// North-west corner of the 1-based cell (c, r) of the file's own grid, also on a reduced
  /// image. Never raises.
  void CRtoXY(int32_t c, int32_t r, float& x, float& y) const;
  /// Height rows of Width cells from the 1-based cell (Left, Top), indexed [row][column]. Raises
  /// EArgumentException for a negative Width or Height, and the failures of ReadCR().
  std::vector<TSingleArray> ReadRect(int32_t Left, int32_t Top, int32_t Width,
                                     int32_t Height) const;
  /// True when the sequential cursor has passed the last cell. Never raises.
  bool EndOfFile() const { return BufferPointer >= NumRecs; }

  /// The plain mean of the valid cells in a (2 * SmoothLevel + 1)-square window around the
  /// 1-based cell (c, r), wrapping east-west; SmoothingIndexes (may be null) receives the
  /// window's cells. Raises EArgumentException "SmoothingLevel must be >= 0", and at level 0 the
  /// failures of ReadCR().
  float ReadCRWithSmoothing(int32_t c, int32_t r, int32_t SmoothLevel,
                            TSmoothingIndexList* SmoothingIndexes) const;
  /// As ReadCRWithSmoothing() around a map point. Raises EArgumentException "SmoothingLevel must
  /// be >= 0", and the failures of XYtoCR() or ReadXY() off the map.
  float ReadXYWithSmoothing(float x, float y, int32_t SmoothLevel,
                            TSmoothingIndexList* SmoothingIndexes) const;

  /// Every cell of this image through key into outImage, whose legend becomes the key's names.
  /// Raises EArgumentNullException for a null outImage or key, and EImageFileError "Image file
  /// buffer access violation" when outImage has fewer cells (the cells written so far stay).
  void Reclass(TAbstractImage* outImage, const TKey* key);
  /// The buffer's raw cells, little-endian, in buffer order: NumRecs * GetDataTypeSize() bytes.
  /// Never raises but std::bad_alloc.
  TByteArray GetBytes() const;
  /// Replaces the buffer's raw cells with Bytes, as GetBytes() gives them. Raises Exception
  /// "Unexpected buffer size" for a wrong byte count; the buffer is then unchanged.
  void SetBytes(const TByteArray& Bytes);
  /// Writes GetBytes() at the stream's position. Raises EInOutError when the stream fails.
  void SaveToStream(std::ostream& Stream) const;
  /// Reads the raw cells from the stream's position to its end. Raises EInOutError when the
  /// stream can't be sized or read, Exception "Unexpected buffer size" for a wrong byte count.
  void LoadFromStream(std::istream& Stream);

  /// Burns the polygons of a shapefile into the cells, in memory only (MemOnly becomes True).
  /// Raises EInvalidOpException on a thinned or zoomed image, EArgumentException when dataarr
  /// is too short, and what TPolyMap's constructor raises.
  void FillShape(const std::string& ShpFile, const TSingleArray& dataarr);

  /// The buffer's grid as an ArcInfo ASCII grid; an empty file name does nothing. Raises
  /// EInOutError when outFN can't be created or written.
  void ExportARCGrid(const std::string& outFN, float nullVal);
  /// The buffer's grid as "x y value" lines; an empty file name does nothing. Raises as
  /// ExportARCGrid().
  void ExportXYZGrid(const std::string& outFN, float nullVal);
  /// The cell under each node of inFN, into outFN (made first); an empty file name does nothing.
  /// Raises EInOutError for outFN, EFOpenError or EInOutError for inFN, and the failures of
  /// ReadXY() for a node off the map (the lines before it stay).
  void ExportNodeGrid(const std::string& inFN, const std::string& outFN, float nullVal);

  /// The write-back: if new data went in, MemOnly is False and the image is neither thinned nor
  /// zoomed, the data file and then the .doc are written to the name FileName() holds now. Runs
  /// once; a later call does nothing, and later changes stay in memory. Raises what
  /// WriteImageData() and TImageHeader::SaveToFile() raise; the destructor runs it if nobody
  /// did and sends a failure to the debug channel, so callers that care call Close().
  void Close();

  /// The thinning step: every ScaleImage()-th cell of every ScaleImage()-th row. Never raises.
  int32_t ScaleImage() const { return FScaleImage; }
  /// The header of the buffer's grid: the file's own, or the reduced one. Never raises.
  TImageHeader* Header() { return IsReduced() ? FZoomHeader.get() : FHeader.get(); }
  /// The header of the buffer's grid: the file's own, or the reduced one. Never raises.
  const TImageHeader* Header() const { return IsReduced() ? FZoomHeader.get() : FHeader.get(); }
  /// The file's own header, full size and extent, also while Header() describes a thinned or
  /// windowed buffer. Never raises.
  const TImageHeader* FileHeader() const { return FHeader.get(); }
  /// True when the buffer holds a window of the map. Never raises.
  bool Zoomed() const { return FIsZoomed; }
  /// The data file's name. Never raises.
  const std::string& FileName() const { return FFileName; }
  /// Takes effect for the write-back and later reads of the file only. Never raises.
  void SetFileName(const std::string& value) { FFileName = value; }
  /// Exactly GetImageTypeID(). Never raises.
  std::string ImageTypeID() const { return GetImageTypeID(); }

  /// True until the first data value is written; while True nothing is written back.
  bool FirstWrite = false;
  /// True: this image has no files and is never written back.
  bool MemOnly = false;
  /// Cells in the buffer: Width * Height of Header().
  int32_t NumRecs = 0;
  /// Index of the next cell of sequential access.
  int32_t BufferPointer = 0;

 protected:
  /// Only the raster classes themselves can make the key, so only their factories construct.
  class TConstructionKey {
   public:
    /// Never raises.
    explicit TConstructionKey() = default;
  };

  /// An empty image, before its construction steps. Never raises.
  explicit TAbstractImage(TConstructionKey) {}

  /// Builds an image of class TImage and runs the construction steps on it; the image counts as
  /// constructed (and may write back) only when they all succeeded. Raises what the steps raise.
  template <typename TImage, typename TSteps>
  static std::unique_ptr<TImage> Construct(TSteps&& steps) {
    auto image = std::make_unique<TImage>(TConstructionKey());
    steps(*image);
    static_cast<TAbstractImage&>(*image).FConstructed = true;
    return image;
  }

  /// Binds a new image to inFileName (a .doc name becomes the .img name) without touching any
  /// file. Raises EImageFileError "No image header information supplied" without headerIn.
  void CreateImage(const std::string& inFileName, const TImageHeader* headerIn);
  /// Takes over Source's state and copies both headers. Never raises but std::bad_alloc.
  void CreateCopy(const TAbstractImage& Source);
  /// Opens whole, or thinned to the screen. Rewords every failure but the allocation limit's
  /// into Exception "There was an error opening "%s". Please check the file and try again", two
  /// CR LF pairs and the inner message (a short out-of-memory text when memory runs out).
  void OpenImage(const std::string& inFileName, bool aScaleBuff);
  /// Opens thinned to about aRequestedRes map units. Raises the .doc failures of
  /// TImageHeader::LoadFromFile(), EImageFileError for a missing, wrong-sized or short data file
  /// or a buffer over the limit, and EMathError for a step that leaves no cell.
  void OpenImage(const std::string& inFileName, float aRequestedRes);
  /// Opens the window aminx .. amaxx, aminy .. amaxy. Raises as the aRequestedRes form and as
  /// ReOpen() for the window.
  void OpenImage(const std::string& inFileName, float aminx, float amaxx, float aminy, float amaxy);

  /// The end of every range scan: the empty-scan result and failure, and the cursor back to 0.
  /// Raises the empty-scan EImageFileError of GetRangeBetween() when nothing was found and
  /// silent is False.
  TRange FinishRangeScan(TRange range, bool found, bool silent);
  /// GetRangeBetween straight over a buffer of known cell type, with what the cursor pass does:
  /// the cursor ends at the end on failure, at 0 otherwise. Raises as GetRangeBetween().
  // Both are defined in the library (private/zplbZephraRangeScan.h).
  template <typename TCells>
  TRange ScanBuffer(const TCells& cells, float minVal, float maxVal, bool silent);
  /// The same over count values that read(i) gives in place of the buffer's cells. Raises as
  /// GetRangeBetween() and what read raises.
  template <typename TRead>
  TRange ScanCells(size_t count, TRead read, float minVal, float maxVal, bool silent);
  /// GetRangeBetween on an image that nothing has changed since its file was read. A class that
  /// knows which cells the reading left at zero need not touch them. Raises as GetRangeBetween().
  virtual TRange FreshRangeBetween(float minVal, float maxVal, bool silent) {
    return GetRangeBetween(minVal, maxVal, silent);
  }
  /// For the generic open's range refresh, on an image it has just opened. Raises as
  /// GetRangeBetween().
  static TRange FreshRangeOf(TAbstractImage& image, float minVal, float maxVal, bool silent) {
    return image.FreshRangeBetween(minVal, maxVal, silent);
  }
  /// The file's own header of an image, for the generic open's range refresh. Never raises.
  static TImageHeader* FileHeaderOf(TAbstractImage& image) { return image.FHeader.get(); }

  /// The file's own header, which every Open form reads first (FileName() is set). The binary
  /// and text rasters read the .doc beside the data file; a class whose file carries its own
  /// header overrides this. Raises the failures of TImageHeader::Open().
  virtual std::unique_ptr<TImageHeader> ReadFileHeader() const;
  /// Copies one file row from the row buffer into the buffer at cursor and moves cursor on.
  /// Raises EInvalidOpException when the row would pass the end of either buffer.
  virtual void LoadBufferValues(int32_t& cursor, int32_t startCol) = 0;
  /// Sizes the buffer to NumRecs cells and the row buffer to the file's width, then ReadFile.
  /// Raises std::bad_alloc and what ReadFile() raises.
  virtual void LoadData() = 0;
  /// The bytes that LoadData allocates for a buffer of cells cells; checked against the open
  /// allocation limit before anything is allocated. Never raises.
  virtual int64_t LoadBytes(int64_t cells) const { return cells * GetDataTypeSize(); }
  /// The reader of binary data files: the whole file in one read, or the sampled rows of a
  /// reduced image one by one into RowBuffer, each handed to LoadBufferValues. Raises
  /// EImageFileError "%s does not exist.", "Expected file size calculated from image header
  /// does not match actual file size." or "Image file blockread failed (not all image file
  /// records were read)", and Exception "Attempted to read past the end of the file".
  void ReadFile(int32_t cellSize, std::span<std::byte> Buffer, std::span<std::byte> RowBuffer);

  /// The write-back proper, run by Close() when it is due: the data file, then the .doc. A class
  /// with another file form or with no files overrides it. Raises as Close().
  virtual void WriteBack();
  /// The cells in the class's file form, into the replacement of the data file. Raises
  /// EImageFileError "Blockwrite of image file failed" or EInOutError when the file fails.
  virtual void WriteDataFile(TOutputFile& File) const = 0;
  /// The destructor of every concrete class calls this first, while its overrides still stand.
  /// Never raises: a failure goes to the debug channel.
  void CloseOnDestruction() noexcept;

  /// Raises EInvalidOpException for an index at or past cells, the cells that really exist.
  // NumRecs is a public field that a host may change; the cells that really exist bound every
  // access as well, so that such a change raises EInvalidOpException instead of reaching outside
  // the buffer. A negative index is the record check's to report, in its own words.
  static void CheckCellIndex(int64_t index, size_t cells) {
    if (index >= 0 && static_cast<uint64_t>(index) >= cells) [[unlikely]] {
      RaiseCellIndexError(index, cells);
    }
  }
  /// Always raises EInvalidOpException naming index and cells.
  [[noreturn]] static void RaiseCellIndexError(int64_t index, size_t cells);
  /// Raises the read index EImageFileError of BufferRead() outside 0 .. NumRecs - 1.
  void CheckIndexAndRaiseOnError(int64_t index) const {
    if (index < 0 || index >= NumRecs) [[unlikely]] {
      RaiseReadIndexError(index);
    }
  }
  /// True when the buffer is thinned or zoomed. Never raises.
  bool IsReduced() const { return FIsZoomed || FScaleImage > 1; }
  /// The buffer index of the zero-based cell (Col, Row), for a read. Raises as ReadIndex().
  int32_t ReadIndex0(int32_t Col, int32_t Row) const {
    return ReadIndex(static_cast<int64_t>(Header()->Width) * Row + Col);
  }
  /// The buffer index of the 1-based cell (c, r), for a read. Raises EArgumentException "ReadCR
  /// index values are 1 based" for a column or row below 1, and as ReadIndex().
  int32_t ReadIndex1(int32_t c, int32_t r) const {
    if (c <= 0 || r <= 0) [[unlikely]] {
      RaiseOneBasedError();
    }
    return ReadIndex(static_cast<int64_t>(Header()->Width) * (r - 1) + (c - 1));
  }
  /// A read index that fits the 32-bit operations; anything beyond is outside the buffer anyway,
  /// and raises the read index EImageFileError of BufferRead().
  int32_t ReadIndex(int64_t index) const {
    if (index != static_cast<int32_t>(index)) [[unlikely]] {
      RaiseReadIndexError(index);
    }
    return static_cast<int32_t>(index);
  }

  /// The file's own header: full size and extent.
  std::unique_ptr<TImageHeader> FHeader;
  /// The buffer's header while the image is thinned or zoomed.
  std::unique_ptr<TImageHeader> FZoomHeader;
  /// True when the buffer holds a window of the map.
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

/// The one writer of binary data files: writes RecordCount records of RecordSize bytes from
/// Buffer as the new content of FileName, which takes it only when all of it was written. Raises
/// EArgumentException for a negative size or count, EArgumentNullException for a null Buffer,
/// EImageFileError "Blockwrite of image file failed" when the disk fills up and EInOutError for
/// other system failures; FileName then stays as it was.
ZEPHRA_API void WriteImageData(const std::string& FileName, int32_t RecordSize, int32_t RecordCount,
                               const void* Buffer);

}  // namespace zephra
