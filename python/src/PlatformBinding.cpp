// The library's settings that a Python host may want, and its version.

#include <cstdint>
#include <string>

#include <zephra/Common/zpPlatform.h>
#include <zephra/Common/zpVersion.h>

#include "Bindings.h"

namespace py = pybind11;

namespace zephra::python {

void BindPlatform(py::module_& module) {
  module.attr("__version__") = ZEPHRA_VERSION_STRING;
  module.def("library_version", &LibraryVersionString,
             "The version of the libzephra that is loaded.");
  module.def("sync_writes", &SyncWrites,
             "Whether replaced files are flushed to the disk before they take the old name.");
  module.def("set_sync_writes", &SetSyncWrites, py::arg("sync"),
             "False skips the flush, for scratch work that can be redone.");
  module.def("open_allocation_limit", &OpenAllocationLimit,
             "The most bytes one open may allocate; 0 means the machine's memory.");
  module.def("set_open_allocation_limit", &SetOpenAllocationLimit, py::arg("bytes"));
  module.def("set_geotiff_library_path", &SetGeoTiffLibraryPath, py::arg("path"),
             "Where the GeoTIFF writer component is loaded from; empty: beside libzephra.");
}

}  // namespace zephra::python
