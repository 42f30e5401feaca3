#pragma once
/// @file
/// Writes a raster as a binary data file under the given name, with a .doc header beside it.

#include <zephra/Common/zpExport.h>
#include <zephra/Export/zplZephraImageExporterIntf.h>

namespace zephra {

/// The binary copy exporter.
class ZEPHRA_API TZephraImageSaveCopyExporter : public IZephraImageExporter {
 public:
  /// The data file keeps FileName as given; the header takes the name with the extension .doc
  /// and says "binary" whatever the source was. OnProgress is never fired. Raises what
  /// CheckExportArguments() raises, EInOutError when a file can't be written, and what the
  /// header's SaveToStream() raises; both files are written whole before either takes its name.
  void ExportImage(const TAbstractImage* Source, const std::string& FileName,
                   const TExportProgressEvent& OnProgress) override;
};

}  // namespace zephra
