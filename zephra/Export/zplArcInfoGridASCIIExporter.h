#pragma once
// Writes a raster as an ArcInfo ASCII grid: six header lines, then one line of cells per row,
// north first, no-data cells as -9999.

#include <zephra/Export/zplZephraImageExporterIntf.h>

namespace zephra {

class TArcInfoGridASCIIExporter : public IZephraImageExporter {
 public:
  // Fires OnProgress(row, Height - 1) after each row.
  void ExportImage(const TAbstractImage* Source, const std::string& FileName,
                   const TExportProgressEvent& OnProgress) override;
};

}  // namespace zephra
