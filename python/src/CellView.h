#pragma once
// The cells of a raster as a NumPy array that is a view on the image's own buffer.

#include <pybind11/numpy.h>

#include "Raster.h"

namespace zephra::python {

// The NumPy type of the buffer's cells: float32 for real and text rasters, uint8, int16, int32.
pybind11::dtype CellDtype(const TAbstractImage& image);

// Rows x columns of the buffer's grid, sharing its memory; owner, the Python object that holds
// raster, stays alive while the view does. Raises InvalidOperationError when the buffer does not
// hold the grid (a host changed NumRecs).
pybind11::array CellView(TRaster& raster, pybind11::handle owner);

}  // namespace zephra::python
