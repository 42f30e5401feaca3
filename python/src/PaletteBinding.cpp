// Palette: the library's colour table, whose colours cross as an (n, 3) array of uint8 red,
// green and blue.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include <pybind11/numpy.h>
#include <pybind11/stl/filesystem.h>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Palette/zplbZephraPalFile.h>

#include "Bindings.h"

namespace py = pybind11;

namespace zephra::python {

namespace {

using TColours = py::array_t<uint8_t, py::array::c_style | py::array::forcecast>;

// Red in the low byte, green in the next, blue in the third.
constexpr int kChannelShift[3] = {0, 8, 16};

TColours ColoursOf(const TZephraPalFile& palette) {
  const TColorArray& table = palette.Colors();
  TColours colours({static_cast<py::ssize_t>(table.size()), py::ssize_t{3}});
  auto out = colours.mutable_unchecked<2>();
  for (size_t i = 0; i < table.size(); ++i) {
    for (int channel = 0; channel < 3; ++channel) {
      out(static_cast<py::ssize_t>(i), channel) =
          static_cast<uint8_t>(table[i] >> kChannelShift[channel] & 0xff);
    }
  }
  return colours;
}

void SetColours(TZephraPalFile& palette, const TColours& colours) {
  if (colours.ndim() != 2 || colours.shape(1) != 3 || colours.shape(0) < 1) {
    throw py::value_error("colours must be an (n, 3) array of red, green, blue with n >= 1");
  }
  const auto in = colours.unchecked<2>();
  palette.SetCount(static_cast<int32_t>(in.shape(0)));
  for (py::ssize_t i = 0; i < in.shape(0); ++i) {
    TColor color = 0;
    for (int channel = 0; channel < 3; ++channel) {
      color |= static_cast<TColor>(in(i, channel)) << kChannelShift[channel];
    }
    palette.SetColor(static_cast<int32_t>(i), color);
  }
}

}  // namespace

void BindPalette(py::module_& module) {
  py::class_<TZephraPalFile>(module, "Palette", R"(A colour table of the library.

Starts with the 16 built-in colours. colors is the table as an (n, 3) uint8 array of red, green
and blue; assigning one replaces the table. Palette files keep 6 bits a channel.)")
      .def(py::init<>())
      .def_static(
          "open",
          [](const std::filesystem::path& path) {
            // The library loads nothing, silently, from a missing file.
            if (!std::filesystem::exists(path)) {
              throw EFOpenError("Cannot open the palette file " + path.string());
            }
            auto palette = std::make_unique<TZephraPalFile>();
            palette->LoadFromFile(path.string());
            return palette;
          },
          py::arg("path"), "A palette loaded from a palette file.")
      .def(
          "save",
          [](const TZephraPalFile& p, const std::filesystem::path& path) {
            p.SaveToFile(path.string());
          },
          py::arg("path"))
      .def("blend", &TZephraPalFile::Blend, py::arg("first"), py::arg("last"),
           "Entries first .. last become a ramp from the colour at first towards the one at last.")
      .def_property("colors", &ColoursOf, &SetColours)
      .def(
          "__array__",
          [](const TZephraPalFile& p, const py::object& dtype) {
            return dtype.is_none() ? py::array(ColoursOf(p)) : ColoursOf(p).attr("astype")(dtype);
          },
          py::arg("dtype") = py::none())
      .def("__len__", &TZephraPalFile::Count);
}

}  // namespace zephra::python
