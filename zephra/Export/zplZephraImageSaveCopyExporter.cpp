#include <zephra/Export/zplZephraImageSaveCopyExporter.h>

#include <filesystem>
#include <fstream>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

namespace zephra {

namespace {

std::ofstream CreateBinaryFile(const std::string& FileName) {
  std::ofstream stream(FileName, std::ios::binary | std::ios::trunc);
  if (!stream) {
    throw EInOutError("Cannot create file \"" + FileName + "\"");
  }
  return stream;
}

void CloseChecked(std::ofstream& stream, const std::string& FileName) {
  stream.close();
  if (!stream) {
    throw EInOutError("Failed to write file \"" + FileName + "\"");
  }
}

}  // namespace

void TZephraImageSaveCopyExporter::ExportImage(const TAbstractImage* Source,
                                               const std::string& FileName,
                                               const TExportProgressEvent& /*OnProgress*/) {
  CheckExportArguments(Source, FileName);
  TImageHeader header(*Source->Header());
  header.FileType = ftBinary;
  const std::string docName = std::filesystem::path(FileName).replace_extension(".doc").string();

  // Both files exist before either is written, so a failure leaves both behind, as written.
  std::ofstream data = CreateBinaryFile(FileName);
  std::ofstream doc = CreateBinaryFile(docName);
  Source->SaveToStream(data);
  header.SaveToStream(doc);
  CloseChecked(doc, docName);
  CloseChecked(data, FileName);
}

}  // namespace zephra
