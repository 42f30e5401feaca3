// The write-back of TAbstractImage: how a raster with new data reaches the disk at the end of
// its life, and the one writer of binary data files.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <exception>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/private/zpOutputFile.h>
#include <zephra/Raster/Header/private/zplbZephraImageHeaderSave.h>
#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Images/private/zplbZephraImageFile.h>
#include <zephra/Raster/Images/private/zplbZephraImageGrid.h>

namespace zephra {

namespace {

void ReportCloseFailure(const std::string& fileName, const char* reason) noexcept {
  try {
    DebugOutput("Writing image " + fileName + " back failed: " + reason);
  } catch (...) {
    // Without memory for the text there is nothing left to report it with.
  }
}

}  // namespace

// A half-built image never writes: FConstructed goes True only when construction succeeded.
void TAbstractImage::Close() {
  if (FClosed || !FConstructed) {
    return;
  }
  FClosed = true;
  if (FirstWrite || MemOnly || IsReduced()) {
    return;
  }
  WriteBack();
}

// Both files are written whole under temporary names before either takes its name, the data
// file first: a failure up to the renames leaves the old pair as it was, and the pair can only
// differ for the time between two renames.
void TAbstractImage::WriteBack() {
  const std::string docName = DocFileName(FFileName);
  TOutputFile data(FFileName);
  TOutputFile doc(docName);
  WriteDataFile(data);
  SaveHeaderTo(*FHeader, doc, docName);
  CommitInOrder({&data, &doc});
}

void TAbstractImage::CloseOnDestruction() noexcept {
  try {
    Close();
  } catch (const std::exception& error) {
    ReportCloseFailure(FFileName, error.what());
  } catch (...) {
    ReportCloseFailure(FFileName, "unknown failure");
  }
}

void WriteImageData(const std::string& FileName, int32_t RecordSize, int32_t RecordCount,
                    const void* Buffer) {
  TOutputFile file(FileName);
  WriteImageData(file, RecordSize, RecordCount, Buffer);
  file.Commit();
}

void WriteImageData(TOutputFile& File, int32_t RecordSize, int32_t RecordCount,
                    const void* Buffer) {
  if (RecordSize < 0 || RecordCount < 0) {
    throw EArgumentException("WriteImageData needs a record size and count of 0 or more, not " +
                             std::to_string(RecordSize) + " and " + std::to_string(RecordCount));
  }
  const size_t bytes = static_cast<size_t>(RecordSize) * static_cast<size_t>(RecordCount);
  if (Buffer == nullptr && bytes > 0) {
    throw EArgumentNullException("WriteImageData: Buffer is null");
  }
  if (File.WriteSome({static_cast<const std::byte*>(Buffer), bytes}) != bytes) {
    throw EImageFileError("Blockwrite of image file failed");
  }
}

}  // namespace zephra
