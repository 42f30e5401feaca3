#pragma once
// Shared by the raster harnesses: how an input chooses the way a raster is opened, and the reads
// a host makes on an image it has opened.

#include <cstdint>
#include <memory>
#include <string>

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "FuzzSupport.h"

namespace zephra::fuzz {

// The leading bytes of a raster input.
struct TOpenParams {
  enum THow : uint8_t { hWhole, hThinned, hResolution, hWindow };

  THow How;
  uint8_t Options;  // bit meanings belong to each harness
  float Bounds[4];  // the requested resolution is Bounds[0]

  static TOpenParams Take(TInputParts& input);
  bool Option(int bit) const { return (Options >> bit & 1) != 0; }
};

// Opens inFileName through a class reference in the way the parameters say.
std::unique_ptr<TAbstractImage> OpenAs(TAbstractImageClass imageClass,
                                       const std::string& inFileName, const TOpenParams& params);

// Cell, coordinate, rectangle, smoothing and range reads, a report and a copy; each may fail on
// its own with the library's exceptions without keeping the others from running.
void ExerciseImage(TAbstractImage& image);
// The end of every raster harness: the image, if the open gave one, read; with option bit 5 a
// second window asked of it by ReOpen and read again; then closed.
void ExerciseOpened(TAbstractImage* image, const TOpenParams& params);

}  // namespace zephra::fuzz
