#pragma once
// The arithmetic of image grids and file names that the construction, thinning and write-back
// of images share.

#include <cstdint>
#include <string>

#include <zephra/Raster/Header/zplbZephraImageHeader.h>

namespace zephra {

// The data file's name for a name given by a caller: a .doc name (in any letter case) becomes
// the same name with .img; any other name stays as it is.
std::string DataFileName(const std::string& inFileName);
// The .doc beside a data file: its extension replaced by "doc", or added if it has none.
std::string DocFileName(const std::string& dataFileName);
// The file exists; a symbolic link counts only if what it points to exists.
bool FileExists(const std::string& fileName);

// Width * Height of the header. Raises EImageFileError for a negative side or a count beyond
// 2^31 - 1.
int32_t CellCount(const TImageHeader& header);

// The thinning step for the screen: the largest power of two that leaves width at least as wide
// as the screen, or 1. A screen width below 1 counts as 1.
int32_t StepForScreen(int32_t width);
// The thinning step for a requested resolution: the ratio to the file's resolution plus 0.01,
// truncated, at least 1 (also when the ratio is no number) and at most 2^31 - 1.
int32_t StepForResolution(float requested, float fileResolution);

// Divides the header's width and height by step (dropping remainders) and recomputes its two
// resolutions from its extent. Raises EMathError, as a division by zero, when no column or no
// row is left.
void ReduceGrid(TImageHeader& header, int32_t step);

// cells rounded to the nearest integer, ties to even. Raises EMathError when it is no number or
// beyond a 32-bit integer, as it is after a division by a resolution of 0.
int32_t RoundToCells(double cells, const char* what);

}  // namespace zephra
