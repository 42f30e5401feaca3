#include <zephra/Export/zplExportTextFile.h>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

namespace {

std::ofstream CreateFile(const std::string& FileName) {
  std::ofstream stream(FileName, std::ios::binary | std::ios::trunc);
  if (!stream) {
    throw EInOutError("Cannot create file \"" + FileName + "\"");
  }
  return stream;
}

}  // namespace

TExportTextFile::TExportTextFile(const std::string& FileName)
    : FStream(CreateFile(FileName)), FWriter(FStream) {}

void TExportTextFile::Close() {
  FWriter.Flush();
  FStream.close();
  if (!FStream) {
    throw EInOutError("Failed to close the exported file");
  }
}

}  // namespace zephra
