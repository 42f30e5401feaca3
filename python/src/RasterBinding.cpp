// Raster: an open image of the library, with its cells as a NumPy view, its header, and the
// operations on the whole raster, each run with the GIL released. Key: the classes of a reclass.

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Header/zplnKey.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "Bindings.h"
#include "CellView.h"
#include "Raster.h"
#include "RasterOpen.h"
#include "ScreenWidth.h"

namespace py = pybind11;

namespace zephra::python {

namespace {

using TWindow = std::array<float, 4>;
using TCoordinates = py::array_t<double, py::array::c_style | py::array::forcecast>;

std::unique_ptr<TRaster> Open(const std::string& path, std::optional<TWindow> window,
                              std::optional<int32_t> width) {
  if (width && *width < 1) {
    throw py::value_error("width must be at least 1, not " + std::to_string(*width));
  }
  const TOpenRequest request{window, width};
  const py::gil_scoped_release release;
  return std::make_unique<TRaster>(OpenRaster(path, request));
}

TImageHeader ReadHeader(const std::string& path) {
  const py::gil_scoped_release release;
  return ReadRasterHeader(path);
}

// A new image of the class that the header's cell and file types name, bound to path; nothing is
// written before close(), and never if in_memory.
std::unique_ptr<TRaster> Create(const std::string& path, const TImageHeader& header,
                                bool inMemory) {
  std::unique_ptr<TAbstractImage> image =
      header.FileType == ftAscii
          ? TAsciiImage::Create(path, &header)
          : TImageFactory::GetImageClass(header.DataType)->Create(path, &header);
  // Create copies the header with TImageHeader::Copy, which leaves these to the new image.
  TImageHeader& own = *image->Header();
  own.ValueUnits = header.ValueUnits;
  own.FlagDef = header.FlagDef;
  own.UnitDistance = header.UnitDistance;
  image->MemOnly = inMemory;
  return std::make_unique<TRaster>(std::move(image));
}

py::array_t<float> Sample(TRaster& raster, const TCoordinates& xs, const TCoordinates& ys,
                          int32_t smooth) {
  if (xs.size() != ys.size()) {
    throw py::value_error("x and y must hold as many points");
  }
  py::array_t<float> values(xs.size());
  const double* x = xs.data();
  const double* y = ys.data();
  float* out = values.mutable_data();
  raster.Run([&](const TAbstractImage& image) {
    for (py::ssize_t i = 0; i < xs.size(); ++i) {
      const auto pointX = static_cast<float>(x[i]);
      const auto pointY = static_cast<float>(y[i]);
      out[i] = smooth == 0 ? image.ReadXY(pointX, pointY)
                           : image.ReadXYWithSmoothing(pointX, pointY, smooth,
                                                       /*SmoothingIndexes=*/nullptr);
    }
  });
  return values;
}

TRange Range(TRaster& raster, std::optional<float> low, std::optional<float> high) {
  return raster.Run([&](TAbstractImage& image) {
    if (!low && !high) {
      return image.GetRange();
    }
    return image.GetRangeBetween(low.value_or(std::numeric_limits<float>::lowest()),
                                 high.value_or(std::numeric_limits<float>::max()),
                                 /*silent=*/false);
  });
}

void Reclass(TRaster& source, TRaster& out, const TKey& key) {
  if (&source == &out) {
    throw py::value_error("a raster can't be reclassified into itself");
  }
  TRaster::RunOn(source, out, [&](TAbstractImage& cells, TAbstractImage& classes) {
    cells.Reclass(&classes, &key);
  });
}

void BindKey(py::module_& module) {
  py::class_<TKey>(module, "Key",
                   "The classes of a reclass; the first class that holds a value wins.")
      .def(py::init<>())
      .def("add_class", &TKey::AddClass, py::arg("lower"), py::arg("upper"), py::arg("value"),
           py::arg("name"), "Cells from lower to upper, both included, become value.")
      .def("check", &TKey::CheckRange, py::arg("value"),
           "The value of the first class that holds value; value itself if none does.")
      .def("__len__", [](const TKey& key) { return key.KeyClasses.size(); });
}

void BindCells(py::class_<TRaster>& raster) {
  raster
      .def(
          "cells", [](py::object self) { return CellView(self.cast<TRaster&>(), self); },
          "The buffer as a rows x columns array sharing its memory.")
      .def(
          "read_cr0",
          [](TRaster& r, int32_t col, int32_t row) { return r.Image().ReadCR0(col, row); },
          py::arg("col"), py::arg("row"), "The zero-based cell (col, row), read by the library.")
      .def("sample", &Sample, py::arg("x"), py::arg("y"), py::arg("smooth") = 0,
           "The cells under map points, or the mean of the valid cells within smooth cells.")
      .def(
          "mark_written", [](TRaster& r) { r.Run(MarkWritten); },
          "The buffer was written in place: refresh the range and write back at close().")
      .def(
          "close", [](TRaster& r) { r.Run([](TAbstractImage& image) { image.Close(); }); },
          "The library's write-back, once.");
}

void BindOperations(py::class_<TRaster>& raster) {
  raster
      .def("range", &Range, py::arg("low") = py::none(), py::arg("high") = py::none(),
           "The smallest and largest cell, or those within low .. high.")
      .def("reclass", &Reclass, py::arg("out"), py::arg("key"),
           "Every cell through key into out, whose legend becomes the class names.")
      .def(
          "fill_shape",
          [](TRaster& r, const std::string& shp, const std::vector<float>& values) {
            r.Run([&](TAbstractImage& image) { image.FillShape(shp, values); });
          },
          py::arg("shp"), py::arg("values"),
          "Burns the polygons of a shapefile, one value a polygon part, in memory.");
}

void BindFields(py::class_<TRaster>& raster) {
  raster
      .def_property_readonly(
          "header", [](TRaster& r) { return r.Image().Header(); },
          py::return_value_policy::reference_internal, "The header of the buffer's grid.")
      .def_property_readonly(
          "file_header", [](const TRaster& r) { return TImageHeader(*r.Image().FileHeader()); },
          "A copy of the file's own header, also of a thinned or windowed raster.")
      .def_property_readonly("dtype", [](const TRaster& r) { return CellDtype(r.Image()); })
      .def_property_readonly("type_id", [](const TRaster& r) { return r.Image().GetImageTypeID(); })
      .def_property_readonly("file_name", [](const TRaster& r) { return r.Image().FileName(); })
      .def_property_readonly("scale", [](const TRaster& r) { return r.Image().ScaleImage(); })
      .def_property_readonly("zoomed", [](const TRaster& r) { return r.Image().Zoomed(); })
      .def_property(
          "mem_only", [](const TRaster& r) { return r.Image().MemOnly; },
          [](TRaster& r, bool value) { r.Image().MemOnly = value; }, "True: never written back.");
}

}  // namespace

void BindRaster(py::module_& module) {
  TScreenWidth::Widen();
  py::class_<TRange>(module, "Range")
      .def_readonly("min", &TRange::Min)
      .def_readonly("max", &TRange::Max)
      .def("__iter__", [](const TRange& r) { return py::iter(py::make_tuple(r.Min, r.Max)); })
      .def("__repr__", [](const TRange& r) {
        return "Range(" + std::to_string(r.Min) + ", " + std::to_string(r.Max) + ")";
      });
  BindKey(module);
  py::class_<TRaster> raster(module, "Raster", "An open image of the library.");
  BindCells(raster);
  BindOperations(raster);
  BindFields(raster);
  module.def("open_raster", &Open, py::arg("path"), py::arg("window") = py::none(),
             py::arg("width") = py::none(),
             "Opens any raster the library reads: whole, for window (minx, maxx, miny, maxy), or "
             "thinned to at least width columns.");
  module.def("read_header", &ReadHeader, py::arg("path"),
             "The file's own header, reading as few cells as the form allows.");
  module.def("create_raster", &Create, py::arg("path"), py::arg("header"),
             py::arg("in_memory") = false,
             "A new raster of the header's cell and file types, written back at close().");
}

}  // namespace zephra::python
