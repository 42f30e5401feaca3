#pragma once
/// @file
/// Writes a raster as an ArcInfo ASCII grid: six header lines, then one line of cells per row,
/// north first, no-data cells as -9999.

#include <zephra/Common/zpExport.h>
#include <zephra/Export/zplZephraImageExporterIntf.h>

namespace zephra {

/// The ArcInfo ASCII grid exporter. Cells are written with four decimals in every cell type;
/// the cell size is ResolutionX.
class ZEPHRA_API TArcInfoGridASCIIExporter : public IZephraImageExporter {
 public:
  /// Fires OnProgress(row, Height - 1) after each row. Raises what CheckExportArguments() raises,
  /// EInOutError when the file can't be created or written; what was written up to a failure,
  /// one raised by OnProgress included, stays in the file.
  void ExportImage(const TAbstractImage* Source, const std::string& FileName,
                   const TExportProgressEvent& OnProgress) override;
};

}  // namespace zephra
