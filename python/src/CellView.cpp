#include "CellView.h"

#include <cstdint>
#include <string>

#include <zephra/Common/zpExceptions.h>

namespace py = pybind11;

namespace zephra::python {

py::dtype CellDtype(const TAbstractImage& image) {
  const std::string type = image.GetImageTypeID();
  if (type == "BYTE") {
    return py::dtype::of<uint8_t>();
  }
  if (type == "INT") {
    return py::dtype::of<int16_t>();
  }
  if (type == "INT32") {
    return py::dtype::of<int32_t>();
  }
  return py::dtype::of<float>();  // REAL, and the text rasters, which hold floats
}

py::array CellView(TRaster& raster, py::handle owner) {
  TAbstractImage& image = raster.Image();
  const TImageHeader& header = *image.Header();
  const py::dtype dtype = CellDtype(image);
  const int64_t cells = static_cast<int64_t>(header.Width) * header.Height;
  if (cells != image.NumRecs || dtype.itemsize() != image.GetDataTypeSize()) {
    throw EInvalidOpException("The buffer of " + image.FileName() + " holds " +
                              std::to_string(image.NumRecs) + " cells of " +
                              std::to_string(image.GetDataTypeSize()) + " bytes, not the " +
                              std::to_string(header.Width) + " x " + std::to_string(header.Height) +
                              " grid of its header");
  }
  return py::array(dtype, {header.Height, header.Width}, image.GetElement0Ptr(), owner);
}

}  // namespace zephra::python
