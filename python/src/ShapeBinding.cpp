// ShapeMap: the polygon parts of a shapefile as the shape fill burns them, and read_dbf_field: a
// numeric attribute of the .dbf beside it, so that a fill can give every part its feature's value.

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <shapefil.h>

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPolyMap.h>

#include "Bindings.h"

namespace py = pybind11;

namespace zephra::python {

namespace {

struct TDbfCloser {
  void operator()(DBFInfo* dbf) const { DBFClose(dbf); }
};
using TDbf = std::unique_ptr<DBFInfo, TDbfCloser>;

int NumericField(DBFInfo* dbf, const std::string& dbfFile, const std::string& field) {
  const int index = DBFGetFieldIndex(dbf, field.c_str());
  if (index < 0) {
    throw EArgumentException(dbfFile + " has no field " + field);
  }
  const DBFFieldType type = DBFGetFieldInfo(dbf, index, nullptr, nullptr, nullptr);
  if (type != FTInteger && type != FTDouble) {
    throw EArgumentException("The field " + field + " of " + dbfFile + " is not numeric");
  }
  return index;
}

// The values of field in every record, in record order; a NULL value is None.
std::vector<std::optional<double>> ReadDbfField(const std::string& shp, const std::string& field) {
  const std::string dbfFile = std::filesystem::path(shp).replace_extension(".dbf").string();
  const TDbf dbf(DBFOpen(dbfFile.c_str(), "rb"));
  if (!dbf) {
    throw EFOpenError("Cannot open " + dbfFile);
  }
  const int index = NumericField(dbf.get(), dbfFile, field);
  std::vector<std::optional<double>> values;
  for (int record = 0; record < DBFGetRecordCount(dbf.get()); ++record) {
    if (DBFIsAttributeNULL(dbf.get(), record, index)) {
      values.emplace_back();
    } else {
      values.emplace_back(DBFReadDoubleAttribute(dbf.get(), record, index));
    }
  }
  return values;
}

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
  module.def("read_dbf_field", &ReadDbfField, py::arg("shp"), py::arg("field"),
             "A numeric field of the .dbf beside shp, one value (or None) a record.");
}

}  // namespace zephra::python
