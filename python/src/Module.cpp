// zephra._zephra: the library's object model for the pure-Python package zephra, which is what
// users import.

#include <pybind11/pybind11.h>

#include "Bindings.h"

PYBIND11_MODULE(_zephra, module) {
  module.doc() = "The ZephraLib object model; import zephra rather than this module.";
  // Errors first: the other parts raise them.
  zephra::python::BindErrors(module);
  zephra::python::BindPlatform(module);
  zephra::python::BindHeader(module);
  zephra::python::BindRaster(module);
  zephra::python::BindExport(module);
  zephra::python::BindShapes(module);
  zephra::python::BindVector(module);
  zephra::python::BindPalette(module);
}
