#pragma once
/// @file
/// Writes a raster as XYZ text: one line "x y value" per cell, rows in the raster's own order,
/// all three with four decimals and no no-data test.

#include <zephra/Common/zpExport.h>
#include <zephra/Export/zplZephraImageExporterIntf.h>

namespace zephra {

/// The XYZ text exporter.
class ZEPHRA_API TXYZAsciiExporter : public IZephraImageExporter {
 public:
  /// y runs down from Maxy on a lat/long raster and up from Miny on any other; x and y are the
  /// edges of the cells, with no half-cell shift. Fires OnProgress(row, Height - 1) after each
  /// row. Raises what CheckExportArguments() raises, EInOutError when the file can't be created
  /// or written; what was written up to a failure stays in the file.
  void ExportImage(const TAbstractImage* Source, const std::string& FileName,
                   const TExportProgressEvent& OnProgress) override;
};

}  // namespace zephra
