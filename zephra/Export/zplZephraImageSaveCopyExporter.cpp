#include <zephra/Export/zplZephraImageSaveCopyExporter.h>

#include <filesystem>

#include <zephra/Common/private/zpOutputFile.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

namespace zephra {

void TZephraImageSaveCopyExporter::ExportImage(const TAbstractImage* Source,
                                               const std::string& FileName,
                                               const TExportProgressEvent& /*OnProgress*/) {
  CheckExportArguments(Source, FileName);
  TImageHeader header(*Source->Header());
  header.FileType = ftBinary;
  const std::string docName = std::filesystem::path(FileName).replace_extension(".doc").string();

  // Both files are written whole before either takes its name, the data file first, so a failure
  // leaves what stood under those names before.
  TOutputFile data(FileName);
  TOutputFile doc(docName);
  Source->SaveToStream(data.Stream());
  header.SaveToStream(doc.Stream());
  CommitInOrder({&data, &doc});
}

}  // namespace zephra
