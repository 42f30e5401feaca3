#include <zephra/Export/zplZephraImageExporterIntf.h>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

namespace zephra {

void CheckExportArguments(const TAbstractImage* Source, const std::string& FileName) {
  if (Source == nullptr) {
    throw EArgumentNullException("Source");
  }
  if (Source->Header() == nullptr) {
    throw EArgumentNullException("Source.Header");
  }
  if (FileName.empty()) {
    throw EArgumentException("FileName");
  }
}

}  // namespace zephra
