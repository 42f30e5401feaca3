#pragma once
// Writes a raster as XYZ text: one line "x y value" per cell, rows in the raster's own order.

#include <zephra/Export/zplZephraImageExporterIntf.h>

namespace zephra {

class TXYZAsciiExporter : public IZephraImageExporter {
 public:
  // y runs down from Maxy on a lat/long raster and up from Miny on any other; x and y are the
  // edges of the cells, with no half-cell shift. Fires OnProgress(row, Height - 1) after each row.
  void ExportImage(const TAbstractImage* Source, const std::string& FileName,
                   const TExportProgressEvent& OnProgress) override;
};

}  // namespace zephra
