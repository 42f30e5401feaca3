// ShapeMap: the polygon parts of a shapefile as the shape fill burns them, and read_dbf_field: a
// numeric attribute of the .dbf beside it, so that a fill can give every part its feature's value.

#include <string>

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPolyMap.h>
#include <zephra/Common/zpShapeAttributes.h>

#include "Bindings.h"

namespace py = pybind11;

namespace zephra::python {

namespace {

// The record number of the feature of every polygon part, in the map's order.
py::array_t<int32_t> FeatureIds(const TPolyMap& map) {
  py::array_t<int32_t> ids(map.GetShapeCount());
  int32_t* out = ids.mutable_data();
  for (int32_t i = 0; i < map.GetShapeCount(); ++i) {
    out[i] = map.GetShape(i)->ShapeId;
  }
  return ids;
}

}  // namespace

void BindShapes(py::module_& module) {
  py::class_<TPolyMap>(module, "ShapeMap", "The polygon parts of a shapefile, one per ring.")
      .def(py::init<const std::string&, TColor>(), py::arg("path"), py::arg("color") = 0,
           py::call_guard<py::gil_scoped_release>())
      .def("__len__", &TPolyMap::GetShapeCount)
      .def_property_readonly("feature_ids", &FeatureIds,
                             "The record number of each part's feature, from 0.");
  module.def("read_dbf_field", &ReadNumericAttribute, py::arg("shp"), py::arg("field"),
             "A numeric field of the .dbf beside shp, one value (or None) a record.");
}

}  // namespace zephra::python
