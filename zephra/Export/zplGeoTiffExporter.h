#pragma once
/// @file
/// Writes a raster as a GeoTIFF of 32-bit floats through the GeoTIFF writer component, which is
/// bound when an export starts (see SetGeoTiffLibraryPath()), so hosts without it lose only this.

#include <zephra/Common/zpExport.h>
#include <zephra/Export/zplZephraImageExporterIntf.h>

namespace zephra {

/// The GeoTIFF exporter: rows go to the component north first, with the north-west corner as
/// origin and ResolutionX as the cell size of both axes.
class ZEPHRA_API TGeoTiffExporter : public IZephraImageExporter {
 public:
  /// Cells at or below -9990.0, and NaN, go to the component as NaN. OnProgress is never fired.
  /// Raises EArgumentNullException "Source" or "Source.Header"; EFOpenError with the loader's
  /// message when the component can't be bound (no file is created then); Exception "Failed
  /// create GeoTIFF file." when the component can't create the file.
  void ExportImage(const TAbstractImage* Source, const std::string& FileName,
                   const TExportProgressEvent& OnProgress) override;
};

}  // namespace zephra
