// The core of TAbstractImage: the construction steps and the reader of binary data files.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <filesystem>
#include <new>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Images/private/zplbZephraImageFile.h>
#include <zephra/Raster/Images/private/zplbZephraImageGrid.h>

namespace zephra {

TAbstractImage::~TAbstractImage() = default;

void TAbstractImage::CreateImage(const std::string& inFileName, const TImageHeader* headerIn) {
  if (headerIn == nullptr) {
    throw EImageFileError("No image header information supplied");
  }
  FScaleImage = 1;
  FFileName = DataFileName(inFileName);
  FHeader = std::make_unique<TImageHeader>();
  FZoomHeader = std::make_unique<TImageHeader>();
  FirstWrite = true;
  MemOnly = false;
  headerIn->Copy(FHeader.get());
  NumRecs = CellCount(*FHeader);
  BufferPointer = 0;
}

void TAbstractImage::CreateCopy(const TAbstractImage& Source) {
  FScaleImage = Source.FScaleImage;
  FFileName = Source.FFileName;
  FIsZoomed = Source.FIsZoomed;
  FirstWrite = Source.FirstWrite;
  MemOnly = Source.MemOnly;
  NumRecs = Source.NumRecs;
  BufferPointer = Source.BufferPointer;
  FHeader = std::make_unique<TImageHeader>(*Source.FHeader);
  FZoomHeader = std::make_unique<TImageHeader>(*Source.FZoomHeader);
}

namespace {

// The guard of Open(inFileName, aScaleBuff): every failure of step is reworded.
template <typename TStep>
void RunGuarded(const std::string& inFileName, TStep step) {
  try {
    step();
  } catch (const std::bad_alloc&) {
    throw Exception("There was an error opening \"" +
                    std::filesystem::path(inFileName).filename().string() +
                    "\". There was not enough free memory to open the image. Try opening the "
                    "image in Solvane x64 (64-bit).");
  } catch (const std::exception& error) {
    throw Exception("There was an error opening \"" + inFileName +
                    "\". Please check the file and try again\r\n\r\n" + error.what());
  }
}

}  // namespace

// The allocation limit is checked between the two guarded steps, so that its refusal reaches
// the caller as the EImageFileError it is.
void TAbstractImage::OpenImage(const std::string& inFileName, bool aScaleBuff) {
  FFileName = inFileName;
  RunGuarded(inFileName, [&] { Initialise(aScaleBuff); });
  CheckLoadAllocation(NumRecs);
  RunGuarded(inFileName, [&] { LoadData(); });
}

void TAbstractImage::OpenImage(const std::string& inFileName, float aRequestedRes) {
  FFileName = inFileName;
  Initialise(false);
  SetResolution(aRequestedRes);
  CheckLoadAllocation(NumRecs);
  LoadData();
}

void TAbstractImage::OpenImage(const std::string& inFileName, float aminx, float amaxx, float aminy,
                               float amaxy) {
  FFileName = inFileName;
  Initialise(true);
  ReOpen(aminx, amaxx, aminy, amaxy);
}

// The common first step of the three Open forms: the file's header, the screen step, and the
// test that the data file is there. Nothing is read from the data file yet.
void TAbstractImage::Initialise(bool aScaleBuff) {
  FScaleImage = 1;
  FFileName = DataFileName(FFileName);
  FHeader = ReadFileHeader();
  FZoomHeader = std::make_unique<TImageHeader>();
  FHeader->Copy(FZoomHeader.get());
  if (aScaleBuff) {
    FScaleImage = StepForScreen(Header()->Width);
    if (FScaleImage > 1) {
      ReduceGrid(*FZoomHeader, FScaleImage);
    }
  }
  NumRecs = CellCount(*Header());
  FirstWrite = true;
  MemOnly = false;
  BufferPointer = 0;
  if (!FileExists(FFileName)) {
    throw EImageFileError("Program atempted to open an image file which doesn't exist (" +
                          FFileName + ")");
  }
}

std::unique_ptr<TImageHeader> TAbstractImage::ReadFileHeader() const {
  return TImageHeader::Open(FFileName);
}

void TAbstractImage::CheckLoadAllocation(int64_t cells) const {
  CheckOpenAllocation(FFileName, LoadBytes(cells));
}

void TAbstractImage::ReadFile(int32_t cellSize, std::span<std::byte> Buffer,
                              std::span<std::byte> RowBuffer) {
  if (!FileExists(FFileName)) {
    throw EImageFileError(FFileName + " does not exist.");
  }
  const TImageFile file(FFileName);
  const int64_t expected = static_cast<int64_t>(FHeader->Width) * FHeader->Height * cellSize;
  if (file.Size() != expected) {
    throw EImageFileError(
        "Expected file size calculated from image header does not match actual file size.");
  }
  const size_t bufferBytes = static_cast<size_t>(NumRecs) * static_cast<size_t>(cellSize);
  if (Buffer.size() != bufferBytes) {
    throw EInvalidOpException("The buffer of " + std::to_string(Buffer.size()) +
                              " bytes does not hold " + std::to_string(NumRecs) + " cells of " +
                              std::to_string(cellSize) + " bytes");
  }
  if (IsReduced()) {
    ReadRows(file, cellSize, RowBuffer);
  } else if (file.ReadAt(0, Buffer) != bufferBytes) {
    throw EImageFileError("Image file blockread failed (not all image file records were read)");
  }
}

}  // namespace zephra
