#pragma once
// The one interface every exporter of a raster implements, and the argument checks that the
// text and copy exporters open with.

#include <cstdint>
#include <functional>
#include <string>

namespace zephra {

class TAbstractImage;

// Pos counts rows from 0; at the last event Pos equals Max. Empty when unassigned.
using TExportProgressEvent = std::function<void(int32_t Pos, int32_t Max)>;

class IZephraImageExporter {
 public:
  virtual ~IZephraImageExporter() = default;

  // Writes Source to FileName, overwriting any file there. Source stays the caller's and is
  // not changed.
  virtual void ExportImage(const TAbstractImage* Source, const std::string& FileName,
                           const TExportProgressEvent& OnProgress) = 0;
};

// Raises EArgumentNullException "Source" or "Source.Header", then EArgumentException
// "FileName" for an empty name, in that order, before any file is touched.
void CheckExportArguments(const TAbstractImage* Source, const std::string& FileName);

}  // namespace zephra
