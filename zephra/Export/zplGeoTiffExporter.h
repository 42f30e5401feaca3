#pragma once
// Writes a raster as a GeoTIFF of 32-bit floats through the GeoTIFF writer component, which is
// bound when an export starts (see TGeoTiffLib).

#include <zephra/Export/zplZephraImageExporterIntf.h>

namespace zephra {

class TGeoTiffExporter : public IZephraImageExporter {
 public:
  // Cells at or below -9990.0, and NaN, go to the component as NaN. OnProgress is never fired.
  // Raises the loader's message when the component can't be bound (no file is created then),
  // and "Failed create GeoTIFF file." when the component can't create the file.
  void ExportImage(const TAbstractImage* Source, const std::string& FileName,
                   const TExportProgressEvent& OnProgress) override;
};

}  // namespace zephra
