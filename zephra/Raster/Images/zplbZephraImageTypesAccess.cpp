// Cell and coordinate access of TAbstractImage: index checks, the running range, map points.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <cinttypes>
#include <cmath>
#include <cstdio>
#include <limits>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPlatform.h>
#include <zephra/Common/zpSpatialConst.h>
#include <zephra/Raster/Header/zplnUtils.h>

namespace zephra {

namespace {

constexpr const char* kWriteIndexError = "Image file buffer access violation";

// Sends the failure of a read at a map point to the debug channel. Formats into a fixed buffer:
// it runs while an exception is on its way and must not raise one of its own.
void ReportReadXYFailure(float x, float y, int32_t c, int32_t r, int64_t index) noexcept {
  char text[200];
  std::snprintf(text, sizeof(text),
                "TAbstractImage.ReadXY failed: x=%.4f, y=%.4f, c=%d, r=%d, index=%" PRId64,
                static_cast<double>(x), static_cast<double>(y), c, r, index);
  try {
    DebugOutput(text);
  } catch (...) {
    // Without memory for the text there is nothing left to report it with.
  }
}

}  // namespace

void TAbstractImage::RaiseReadIndexError(int64_t index) const {
  const std::string range = " at index " + std::to_string(index) + " (Valid range: 0 - " +
                            std::to_string(NumRecs - 1) + ").";
  if (FFileName.empty()) {
    throw EImageFileError("Failed to read record from image" + range);
  }
  throw EImageFileError("Failed to read record from image (" + FFileName + ")" + range);
}

void TAbstractImage::RaiseCellIndexError(int64_t index, size_t cells) {
  throw EInvalidOpException("Cell index " + std::to_string(index) + " lies outside the " +
                            std::to_string(cells) +
                            " cells of the image's buffer: NumRecs no longer matches it");
}

int32_t TAbstractImage::WriteIndex(double index) {
  if (!(std::fabs(index) <= std::numeric_limits<int32_t>::max())) {
    throw EImageFileError(kWriteIndexError);
  }
  return static_cast<int32_t>(index);
}

void TAbstractImage::BufferWrite(int32_t index, float val) {
  if (index < 0 || index >= NumRecs) {
    throw EImageFileError(kWriteIndexError);
  }
  TImageHeader* header = Header();
  if ((header->Flag && val <= header->FlagValue) || TSpatialConst::IsFlag(val)) {
    return;
  }
  if (FirstWrite) {
    header->MinValue = val;
    header->MaxValue = val;
    FirstWrite = false;
    return;
  }
  if (val > header->MaxValue) {
    header->MaxValue = val;
  }
  if (val < header->MinValue) {
    header->MinValue = val;
  }
}

void TAbstractImage::RaiseOneBasedError() {
  throw EArgumentException("ReadCR index values are 1 based");
}

float TAbstractImage::ReadCR(int32_t c, int32_t r) const {
  return BufferRead(ReadIndex1(c, r));
}

float TAbstractImage::ReadCR0(int32_t Col, int32_t Row) const {
  return BufferRead(ReadIndex0(Col, Row));
}

void TAbstractImage::WriteCR(int32_t c, int32_t r, float val) {
  const int64_t index = static_cast<int64_t>(Header()->Width) * (static_cast<int64_t>(r) - 1) +
                        (static_cast<int64_t>(c) - 1);
  BufferWrite(WriteIndex(static_cast<double>(index)), val);
}

float TAbstractImage::ReadXY(float x, float y) const {
  int32_t c = 0;
  int32_t r = 0;
  XYtoCR(x, y, c, r);
  const int64_t index = static_cast<int64_t>(Header()->Width) * r + c;
  try {
    return BufferRead(ReadIndex(index));
  } catch (...) {
    ReportReadXYFailure(x, y, c, r, index);
    throw;
  }
}

void TAbstractImage::WriteXY(float x, float y, float val) {
  const TImageHeader* header = Header();
  const double column = std::trunc((static_cast<double>(x) - header->Minx) / header->ResolutionX);
  const double row = std::trunc((static_cast<double>(header->Maxy) - y) / header->ResolutionY);
  BufferWrite(WriteIndex(header->Width * row + column), val);
}

void TAbstractImage::XYtoCR(float x, float y, int32_t& c, int32_t& r) const {
  LatLngToColRow(Header(), y, x, c, r);
}

void TAbstractImage::CRtoXY(int32_t c, int32_t r, float& x, float& y) const {
  x = static_cast<float>((static_cast<double>(c) - 1) * FHeader->ResolutionX + FHeader->Minx);
  y = static_cast<float>(FHeader->Maxy - (static_cast<double>(r) - 1) * FHeader->ResolutionY);
}

std::vector<TSingleArray> TAbstractImage::ReadRect(int32_t Left, int32_t Top, int32_t Width,
                                                   int32_t Height) const {
  if (Width < 0 || Height < 0) {
    throw EArgumentException("ReadRect needs a width and height of 0 or more, not " +
                             std::to_string(Width) + " x " + std::to_string(Height));
  }
  std::vector<TSingleArray> rect(static_cast<size_t>(Height), TSingleArray(Width));
  for (int32_t y = 0; y < Height; ++y) {
    for (int32_t x = 0; x < Width; ++x) {
      rect[y][x] = ReadCR(static_cast<int32_t>(static_cast<int64_t>(Left) + x),
                          static_cast<int32_t>(static_cast<int64_t>(Top) + y));
    }
  }
  return rect;
}

float TAbstractImage::FileRead() {
  const float val = BufferRead(BufferPointer);
  ++BufferPointer;
  return val;
}

void TAbstractImage::FileWrite(float val) {
  BufferWrite(BufferPointer, val);
  ++BufferPointer;
}

void TAbstractImage::ResetFile() {
  BufferPointer = 0;
}

}  // namespace zephra
