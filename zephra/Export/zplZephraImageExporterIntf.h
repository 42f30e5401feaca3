#pragma once
/// @file
/// The one interface every exporter of a raster implements, the progress callback it takes, and
/// the argument checks that the text and copy exporters open with.

#include <cstdint>
#include <functional>
#include <string>

#include <zephra/Common/zpExport.h>

namespace zephra {

class TAbstractImage;

/// Progress of an export: Pos counts rows from 0, and at the last event Pos equals Max. Empty
/// when unassigned; an exception raised from it ends the export.
using TExportProgressEvent = std::function<void(int32_t Pos, int32_t Max)>;

/// Writes a raster to another file format. Exporters keep no state, so one object may serve any
/// number of exports; hosts hold them in std::shared_ptr<IZephraImageExporter>.
class ZEPHRA_API IZephraImageExporter {
 public:
  /// Frees the exporter; it owns nothing.
  virtual ~IZephraImageExporter() = default;

  /// Writes Source to FileName, overwriting any file there. Source stays the caller's and is not
  /// changed. A null Source raises EArgumentNullException "Source" in every exporter; each
  /// exporter says what else it raises.
  virtual void ExportImage(const TAbstractImage* Source, const std::string& FileName,
                           const TExportProgressEvent& OnProgress) = 0;
};

/// Raises EArgumentNullException "Source" or "Source.Header", then EArgumentException "FileName"
/// for an empty name, in that order, before any file is touched.
ZEPHRA_API void CheckExportArguments(const TAbstractImage* Source, const std::string& FileName);

}  // namespace zephra
