#pragma once
// Writes a raster as a binary data file under the given name, with a .doc header beside it.

#include <zephra/Export/zplZephraImageExporterIntf.h>

namespace zephra {

class TZephraImageSaveCopyExporter : public IZephraImageExporter {
 public:
  // The data file keeps FileName as given; the header takes the name with the extension .doc
  // and says "binary" whatever the source was. OnProgress is never fired.
  void ExportImage(const TAbstractImage* Source, const std::string& FileName,
                   const TExportProgressEvent& OnProgress) override;
};

}  // namespace zephra
