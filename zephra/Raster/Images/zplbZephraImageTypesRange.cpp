// Whole-raster passes of TAbstractImage on the sequential cursor: range scans and reclass.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Header/zplnKey.h>
#include <zephra/Raster/Images/private/zplbZephraRangeScan.h>

namespace zephra {

TRange TAbstractImage::GetRangeBetween(float minVal, float maxVal, bool silent) {
  ResetFile();
  if (EndOfFile()) {
    return TRange{minVal, maxVal};
  }
  // Through the virtual FileRead: a class that knows its cell type scans its buffer instead.
  TRange range{minVal, maxVal};
  const bool found = ScanRange(
      static_cast<size_t>(NumRecs), [this](size_t) { return FileRead(); }, minVal, maxVal, range);
  return FinishRangeScan(range, found, silent);
}

TRange TAbstractImage::FinishRangeScan(TRange range, bool found, bool silent) {
  if (!found) {
    // Only FlagValue is looked at, not Flag: a header with a negative no-data number reports an
    // empty range as 0 .. 0.
    if (Header()->FlagValue < 0.0f) {
      range = TRange{0.0f, 0.0f};
    }
    if (!silent) {
      throw EImageFileError("Error scanning image file: no values in specified range.");
    }
  }
  BufferPointer = 0;
  return range;
}

TRange TAbstractImage::GetRange() {
  return GetRangeBetween(0.0f, 0.0f, false);
}

void TAbstractImage::Reclass(TAbstractImage* outImage, const TKey* key) {
  if (outImage == nullptr || key == nullptr) {
    throw EArgumentNullException(outImage == nullptr ? "outImage" : "key");
  }
  ResetFile();
  outImage->ResetFile();
  while (!EndOfFile()) {
    outImage->FileWrite(key->CheckRange(FileRead()));
  }
  key->CopyToImage(outImage->Header());
}

}  // namespace zephra
