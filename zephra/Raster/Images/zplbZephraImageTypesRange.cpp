// Whole-raster passes of TAbstractImage on the sequential cursor: range scans and reclass.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Header/zplnKey.h>

namespace zephra {

namespace {

// Widens a range to take one more value; the first value sets both ends.
void Take(TRange& range, bool& found, float value) {
  if (!found) {
    range = TRange{value, value};
    found = true;
    return;
  }
  if (value < range.Min) {
    range.Min = value;
  }
  if (value > range.Max) {
    range.Max = value;
  }
}

}  // namespace

TRange TAbstractImage::GetRangeBetween(float minVal, float maxVal, bool silent) {
  ResetFile();
  TRange range{minVal, maxVal};
  if (EndOfFile()) {
    return range;
  }
  bool found = false;
  const bool bounded = minVal != maxVal;
  while (!EndOfFile()) {
    const float value = FileRead();
    if (!bounded || (value > minVal && value < maxVal)) {
      Take(range, found, value);
    }
  }
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
