// Thinned and windowed opening of TAbstractImage: the step for a resolution, the window of
// ReOpen, and the row-wise read that samples the file into the buffer.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <cmath>
#include <cstdio>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Images/private/zplbZephraImageFile.h>
#include <zephra/Raster/Images/private/zplbZephraImageGrid.h>

namespace zephra {

namespace {

bool NearZero(float value) {
  return std::fabs(value) <= 0.0001f;
}

std::string WindowText(const TImageHeader& window) {
  char text[160];
  std::snprintf(text, sizeof(text), "(x %g .. %g, y %g .. %g)", static_cast<double>(window.Minx),
                static_cast<double>(window.Maxx), static_cast<double>(window.Miny),
                static_cast<double>(window.Maxy));
  return text;
}

}  // namespace

void TAbstractImage::SetResolution(float aRequestedRes) {
  FScaleImage = StepForResolution(aRequestedRes, FHeader->ResolutionX);
  if (FScaleImage > 1) {
    ReduceGrid(*FZoomHeader, FScaleImage);
  }
  NumRecs = CellCount(*Header());
}

// The new window is worked out and checked on a copy first, so that a refused window leaves the
// image untouched; a failed read puts the old state back.
void TAbstractImage::ReOpen(float aminx, float amaxx, float aminy, float amaxy) {
  TImageHeader window(*FZoomHeader);
  const bool zoomed = !(NearZero(aminx) && NearZero(amaxx) && NearZero(aminy) && NearZero(amaxy));
  if (zoomed) {
    window.Minx = aminx;
    window.Maxx = amaxx;
    window.Miny = aminy;
    window.Maxy = amaxy;
  } else {
    FHeader->Copy(&window);
  }
  window.Width = RoundToCells(
      (static_cast<double>(window.Maxx) - window.Minx) / FHeader->ResolutionX, "window width");
  window.Height =
      RoundToCells(std::fabs(static_cast<double>(window.Maxy) - window.Miny) / FHeader->ResolutionY,
                   "window height");
  const int32_t step = StepForScreen(window.Width);
  ReduceGrid(window, step);
  WindowOrigin(window, step, zoomed);
  const int32_t cells = CellCount(window);
  CheckLoadAllocation(cells);

  const TImageHeader previous(*FZoomHeader);
  const bool previousZoomed = FIsZoomed;
  const int32_t previousStep = FScaleImage;
  const int32_t previousCells = NumRecs;
  window.Copy(FZoomHeader.get());
  FIsZoomed = zoomed;
  FScaleImage = step;
  NumRecs = cells;
  try {
    LoadData();
  } catch (...) {
    previous.Copy(FZoomHeader.get());
    FIsZoomed = previousZoomed;
    FScaleImage = previousStep;
    NumRecs = previousCells;
    throw;
  }
}

// The file cell of the window's north-west buffer cell, after checking that every cell the
// window samples lies in the file's rows to the west, east and north. Rows beyond the south end
// are found by the read itself.
TAbstractImage::TGridOrigin TAbstractImage::WindowOrigin(const TImageHeader& window, int32_t step,
                                                         bool zoomed) const {
  if (!zoomed) {
    return {0, 0};
  }
  const TGridOrigin origin{
      RoundToCells((static_cast<double>(window.Minx) - FHeader->Minx) / FHeader->ResolutionX,
                   "window's first column"),
      RoundToCells((static_cast<double>(FHeader->Maxy) - window.Maxy) / FHeader->ResolutionY,
                   "window's first row")};
  const int64_t lastCol = origin.Col + static_cast<int64_t>(window.Width - 1) * step;
  const char* side = origin.Col < 0              ? "west"
                     : lastCol >= FHeader->Width ? "east"
                     : origin.Row < 0            ? "north"
                                                 : nullptr;
  if (side != nullptr) {
    throw EImageFileError("The window " + WindowText(window) + " needs cells " + side +
                          " of the image file " + FFileName + " " + WindowText(*FHeader));
  }
  return origin;
}

void TAbstractImage::ReadRows(const TImageFile& file, int32_t cellSize,
                              std::span<std::byte> RowBuffer) {
  const TGridOrigin origin = WindowOrigin(*FZoomHeader, FScaleImage, FIsZoomed);
  const int64_t rowBytes = static_cast<int64_t>(FHeader->Width) * cellSize;
  if (static_cast<int64_t>(RowBuffer.size()) != rowBytes) {
    throw EInvalidOpException("The row buffer of " + std::to_string(RowBuffer.size()) +
                              " bytes does not hold a file row of " + std::to_string(rowBytes) +
                              " bytes");
  }
  int32_t cursor = 0;
  for (int32_t i = 0; i < FZoomHeader->Height; ++i) {
    const int64_t row = static_cast<int64_t>(FScaleImage) * i + origin.Row;
    if (file.ReadAt(row * rowBytes, RowBuffer) != RowBuffer.size()) {
      throw Exception("Attempted to read past the end of the file");
    }
    LoadBufferValues(cursor, origin.Col);
  }
}

}  // namespace zephra
