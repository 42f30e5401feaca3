// export_raster: a raster through one of the library's exporters, with the GIL released and an
// optional Python progress callback, which takes the GIL back for each call.

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include <zephra/Export/zplArcInfoGridASCIIExporter.h>
#include <zephra/Export/zplGeoTiffExporter.h>
#include <zephra/Export/zplXYZAsciiExporter.h>
#include <zephra/Export/zplZephraImageSaveCopyExporter.h>

#include "Bindings.h"
#include "Raster.h"

namespace py = pybind11;

namespace zephra::python {

namespace {

std::shared_ptr<IZephraImageExporter> ExporterFor(const std::string& format) {
  if (format == "grid") {
    return std::make_shared<TArcInfoGridASCIIExporter>();
  }
  if (format == "xyz") {
    return std::make_shared<TXYZAsciiExporter>();
  }
  if (format == "copy") {
    return std::make_shared<TZephraImageSaveCopyExporter>();
  }
  if (format == "geotiff") {
    return std::make_shared<TGeoTiffExporter>();
  }
  throw py::value_error("unknown export format '" + format + "': grid, xyz, copy or geotiff");
}

// The callback lives in the caller's frame, which holds the GIL when it ends; only the calls
// run on the library's side.
TExportProgressEvent ProgressOf(const py::object& progress) {
  if (progress.is_none()) {
    return {};
  }
  return [&progress](int32_t position, int32_t last) {
    const py::gil_scoped_acquire acquire;
    progress(position, last);
  };
}

void Export(TRaster& raster, const std::string& path, const std::string& format,
            const py::object& progress) {
  const std::shared_ptr<IZephraImageExporter> exporter = ExporterFor(format);
  const TExportProgressEvent onProgress = ProgressOf(progress);
  raster.Run([&](const TAbstractImage& image) { exporter->ExportImage(&image, path, onProgress); });
}

}  // namespace

void BindExport(py::module_& module) {
  module.def("export_raster", &Export, py::arg("raster"), py::arg("path"), py::arg("format"),
             py::arg("progress") = py::none(),
             "Writes raster through the library's exporter of format (grid, xyz, copy, geotiff); "
             "progress(row, last_row) is called as rows are written.");
}

}  // namespace zephra::python
