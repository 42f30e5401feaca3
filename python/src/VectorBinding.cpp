// Vector and Feature: a vector layer of the family and its features, with vertices as (n, 2)
// arrays. A polygon keeps all its rings in one vertex list, a vertex at (0, 0) ending each ring,
// as the library stores it; the package's zephra.Vector turns that into GeoJSON-like geometry.

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include <pybind11/numpy.h>

#include <zephra/Vector/zpVectorFile.h>

#include "Bindings.h"

namespace py = pybind11;

namespace zephra::python {

namespace {

using TVertices = py::array_t<float, py::array::c_style | py::array::forcecast>;

constexpr std::array<std::pair<TLayerType, const char*>, 4> kLayerTypeWords{
    {{ltNull, "null"}, {ltPoint, "point"}, {ltLine, "line"}, {ltPolygon, "polygon"}}};

std::string LayerTypeWord(TLayerType type) {
  for (const auto& [known, word] : kLayerTypeWords) {
    if (known == type) {
      return word;
    }
  }
  return "null";
}

TLayerType LayerTypeOf(const std::string& word) {
  for (const auto& [type, known] : kLayerTypeWords) {
    if (word == known) {
      return type;
    }
  }
  throw py::value_error("unknown layer type '" + word + "': null, point, line or polygon");
}

py::array_t<float> PointsOf(const TFeature& feature) {
  py::array_t<float> points({feature.Count(), 2});
  auto out = points.mutable_unchecked<2>();
  for (int32_t i = 0; i < feature.Count(); ++i) {
    const TGeoPoint* point = feature.GetPoint(i);
    out(i, 0) = point->X();
    out(i, 1) = point->Y();
  }
  return points;
}

// A feature of vertices (n, 2); its holes are the ring separators among them.
std::unique_ptr<TFeature> NewFeature(float id, const TVertices& vertices) {
  if (vertices.ndim() != 2 || vertices.shape(1) != 2) {
    throw py::value_error("vertices must be an (n, 2) array of x, y");
  }
  auto feature = std::make_unique<TFeature>(id);
  const auto in = vertices.unchecked<2>();
  for (py::ssize_t i = 0; i < in.shape(0); ++i) {
    feature->AddPoint(in(i, 0), in(i, 1));
    feature->NumOfHoles += IsRingSeparator(TGeoPoint(in(i, 0), in(i, 1))) ? 1 : 0;
  }
  return feature;
}

int32_t FeatureIndex(const TVector& layer, int32_t index) {
  return index < 0 ? index + layer.Count() : index;
}

void BindFeature(py::module_& module) {
  py::class_<TFeature>(module, "Feature", "A point, line or polygon of a layer, with an id.")
      .def_readwrite("id", &TFeature::Id)
      .def_readonly("holes", &TFeature::NumOfHoles, "Ring separators among the vertices.")
      .def_property("selected", &TFeature::Selected, &TFeature::SetSelected)
      .def_property_readonly("points", &PointsOf, "The vertices, separators included, (n, 2).")
      .def("__len__", &TFeature::Count);
}

void BindLayerQueries(py::class_<TVector>& layer) {
  layer
      .def(
          "__getitem__",
          [](TVector& v, int32_t index) { return v.GetFeature(FeatureIndex(v, index)); },
          py::return_value_policy::reference_internal, py::arg("index"))
      .def("__len__", &TVector::Count)
      .def("find_nearest", &TVector::FindNearest, py::arg("x"), py::arg("y"),
           "Point layer: the feature with the nearest vertex; polygon layer: the last that "
           "holds the point; -1 without features.")
      .def("point_in_poly", &TVector::PointInPoly, py::arg("x"), py::arg("y"), py::arg("index"),
           "Whether polygon index holds the point, its holes considered.")
      .def(
          "area", [](const TVector& v, int32_t index) { return v.CalcArea(v.GetFeature(index)); },
          py::arg("index"), "The signed area: positive for a clockwise outer ring.")
      .def(
          "centroid",
          [](const TVector& v, int32_t index) {
            const TFloatPoint c = v.CalcCentroid(v.GetFeature(index));
            return py::make_tuple(c.X, c.Y);
          },
          py::arg("index"));
}

void BindLayerChanges(py::class_<TVector>& layer) {
  layer
      .def(
          "add_feature",
          [](TVector& v, float id, const TVertices& vertices) {
            v.AddFeature(NewFeature(id, vertices));
          },
          py::arg("id"), py::arg("vertices"),
          "Appends a feature of (n, 2) vertices; in a polygon a vertex at (0, 0) ends a ring.")
      .def("select", &TVector::SelectFeature, py::arg("index"))
      .def("select_all", &TVector::SelectAll)
      .def("clear_selection", &TVector::ClearSelect)
      .def("save", &TVector::SaveAs, py::arg("path"), py::call_guard<py::gil_scoped_release>(),
           "Writes the coordinate file in text form and the .dvc beside it.");
}

}  // namespace

void BindVector(py::module_& module) {
  BindFeature(module);
  py::class_<TVector> layer(module, "Vector", "A vector layer: features and a .dvc header.");
  layer
      .def(py::init([](const std::string& type) {
             return std::make_unique<TVector>(LayerTypeOf(type));
           }),
           py::arg("layer_type") = "null")
      .def_static("open", &TVector::Open, py::arg("path"), py::call_guard<py::gil_scoped_release>(),
                  "Loads the coordinate file path and the .dvc beside it.")
      .def_property(
          "layer_type", [](const TVector& v) { return LayerTypeWord(v.LayerType); },
          [](TVector& v, const std::string& word) { v.LayerType = LayerTypeOf(word); })
      .def_property_readonly(
          "bounds", [](const TVector& v) { return py::make_tuple(v.MinX, v.MinY, v.MaxX, v.MaxY); })
      .def_property_readonly("is_lat_lon", [](const TVector& v) { return v.Header()->IsLatLon(); })
      .def_property(
          "title", [](const TVector& v) { return v.Header()->Title(); },
          [](TVector& v, const std::string& title) { v.Header()->SetTitle(title); })
      .def_property(
          "ref_system", [](const TVector& v) { return v.Header()->RefSystem(); },
          [](TVector& v, const std::string& name) { v.Header()->SetRefSystem(name); });
  BindLayerQueries(layer);
  BindLayerChanges(layer);
}

}  // namespace zephra::python
