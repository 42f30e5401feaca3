#pragma once
// The .doc of a header as one of several files that are replaced together (the raster
// write-back), into a replacement that the caller commits.

#include <string>

#include <zephra/Common/private/zpOutputFile.h>
#include <zephra/Raster/Header/zplbZephraImageHeader.h>

namespace zephra {

// The .doc text into File; the field FileName takes the ".DOC" form of imageFN as in SaveToFile.
// Raises what SaveToStream raises.
void SaveHeaderTo(TImageHeader& Header, TOutputFile& File, const std::string& imageFN);

}  // namespace zephra
