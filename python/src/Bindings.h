#pragma once
// The parts of the extension module zephra._zephra, each bound by its own function so that
// Module.cpp only lists them. Names on the Python side are snake_case; the library's failures
// arrive as the classes Errors.cpp makes.

#include <pybind11/pybind11.h>

namespace zephra::python {

// zephra.Error and its subclasses, and the translator from the library's exceptions.
void BindErrors(pybind11::module_& module);
// Header: the .doc header of a raster, with attributes and the mapping protocol.
void BindHeader(pybind11::module_& module);
// Raster, Key and the opens and creation of rasters.
void BindRaster(pybind11::module_& module);
// export_raster: the library's four exporters.
void BindExport(pybind11::module_& module);
// ShapeMap and read_dbf_field: the polygons of a shapefile and a numeric attribute of its .dbf.
void BindShapes(pybind11::module_& module);
// Vector and Feature: vector layers.
void BindVector(pybind11::module_& module);
// Palette: colour tables as (n, 3) arrays of uint8.
void BindPalette(pybind11::module_& module);
// The library's settings and its version.
void BindPlatform(pybind11::module_& module);

}  // namespace zephra::python
