// Header: TImageHeader with its fields as snake_case attributes, the cell and file types as the
// words of the .doc text, and the mapping protocol over the same names, so that dict(header)
// gives every field.

#include <array>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <zephra/Raster/Header/zplbZephraImageHeader.h>

#include "Bindings.h"

namespace py = pybind11;

namespace zephra::python {

namespace {

constexpr std::array<std::pair<TDataType, const char*>, 4> kDataTypeWords{
    {{dtReal, "real"}, {dtInteger, "integer"}, {dtByte, "byte"}, {dtInteger32, "integer32"}}};
constexpr std::array<std::pair<TFileType, const char*>, 2> kFileTypeWords{
    {{ftAscii, "ascii"}, {ftBinary, "binary"}}};

template <typename TEnum, size_t N>
std::string WordOf(const std::array<std::pair<TEnum, const char*>, N>& words, TEnum value) {
  for (const auto& [known, word] : words) {
    if (known == value) {
      return word;
    }
  }
  return std::to_string(static_cast<int>(value));
}

template <typename TEnum, size_t N>
TEnum ValueOf(const std::array<std::pair<TEnum, const char*>, N>& words, const std::string& word) {
  std::string known;
  for (const auto& [value, name] : words) {
    if (word == name) {
      return value;
    }
    known += known.empty() ? name : std::string(", ") + name;
  }
  throw py::value_error("'" + word + "' is none of " + known);
}

// Every attribute that the mapping protocol gives, in the order of the .doc text.
const std::vector<std::string>& FieldNames() {
  static const std::vector<std::string> names = {
      "file_name",    "file_title",   "data_type",     "file_type",  "width",     "height",
      "ref_system",   "ref_units",    "unit_distance", "minx",       "maxx",      "miny",
      "maxy",         "resolution_x", "resolution_y",  "min_value",  "max_value", "value_units",
      "flag",         "flag_value",   "flag_def",      "categories", "comment",   "lineage",
      "completeness", "consistency"};
  return names;
}

void CheckField(const std::string& key) {
  for (const std::string& name : FieldNames()) {
    if (name == key) {
      return;
    }
  }
  throw py::key_error(key);
}

void BindFields(py::class_<TImageHeader>& header) {
  header.def_readwrite("file_name", &TImageHeader::FileName, "The .doc file's path.")
      .def_readwrite("file_title", &TImageHeader::FileTitle)
      .def_readwrite("ref_units", &TImageHeader::RefUnits, "Unit of the map coordinates.")
      .def_readwrite("value_units", &TImageHeader::ValueUnits, "Unit of the cell values.")
      .def_readwrite("flag_def", &TImageHeader::FlagDef, "What the no-data value means.")
      .def_readwrite("width", &TImageHeader::Width, "Columns.")
      .def_readwrite("height", &TImageHeader::Height, "Rows.")
      .def_readwrite("unit_distance", &TImageHeader::UnitDistance)
      .def_readwrite("resolution_x", &TImageHeader::ResolutionX, "Cell width in map units.")
      .def_readwrite("resolution_y", &TImageHeader::ResolutionY, "Cell height in map units.")
      .def_readwrite("min_value", &TImageHeader::MinValue)
      .def_readwrite("max_value", &TImageHeader::MaxValue)
      .def_readwrite("minx", &TImageHeader::Minx, "West edge.")
      .def_readwrite("maxx", &TImageHeader::Maxx, "East edge.")
      .def_readwrite("miny", &TImageHeader::Miny, "South edge.")
      .def_readwrite("maxy", &TImageHeader::Maxy, "North edge.")
      .def_readwrite("flag_value", &TImageHeader::FlagValue,
                     "The no-data value; cells at or below it are no data while flag is set.")
      .def_readwrite("flag", &TImageHeader::Flag, "The header declares a no-data value.")
      .def_readwrite("categories", &TImageHeader::Categories, "The legend, one text a class.")
      .def_readwrite("comment", &TImageHeader::Comment)
      .def_readwrite("lineage", &TImageHeader::Lineage)
      .def_readwrite("completeness", &TImageHeader::Completeness)
      .def_readwrite("consistency", &TImageHeader::Consistency);
  header
      .def_property(
          "data_type", [](const TImageHeader& h) { return WordOf(kDataTypeWords, h.DataType); },
          [](TImageHeader& h, const std::string& word) {
            h.DataType = ValueOf(kDataTypeWords, word);
          },
          "Stored cell type: 'real', 'integer' (16-bit), 'byte' or 'integer32'.")
      .def_property(
          "file_type", [](const TImageHeader& h) { return WordOf(kFileTypeWords, h.FileType); },
          [](TImageHeader& h, const std::string& word) {
            h.FileType = ValueOf(kFileTypeWords, word);
          },
          "Form of the data file: 'ascii' or 'binary'.")
      .def_property("ref_system", &TImageHeader::RefSystem, &TImageHeader::SetRefSystem,
                    "Reference system: 'latlon', 'plane' or any other name, kept as text.")
      .def_property_readonly("is_lat_lon", &TImageHeader::IsLatLon)
      .def_property_readonly("is_plane", &TImageHeader::IsPlane);
}

void BindMapping(py::class_<TImageHeader>& header) {
  header
      .def(
          "keys", [](const TImageHeader&) { return FieldNames(); }, "The field names.")
      .def(
          "__getitem__",
          [](py::object self, const std::string& key) {
            CheckField(key);
            return self.attr(key.c_str());
          },
          py::arg("key"))
      .def(
          "__setitem__",
          [](py::object self, const std::string& key, py::object value) {
            CheckField(key);
            self.attr(key.c_str()) = std::move(value);
          },
          py::arg("key"), py::arg("value"))
      .def("__iter__", [](const TImageHeader&) { return py::iter(py::cast(FieldNames())); })
      .def("__len__", [](const TImageHeader&) { return FieldNames().size(); })
      .def(
          "to_dict",
          [](py::object self) {
            py::dict fields;
            for (const std::string& name : FieldNames()) {
              fields[name.c_str()] = self.attr(name.c_str());
            }
            return fields;
          },
          "Every field in a new dict.");
}

}  // namespace

void BindHeader(py::module_& module) {
  py::class_<TImageHeader> header(module, "Header", R"(The .doc header of a raster.

Fields are attributes (width, height, minx, ..., flag, flag_value, categories) and also keys:
dict(header) holds them all. A header got from a raster is the raster's own: changes to it go to
the .doc when a raster opened for update is closed.)");
  header.def(py::init<>(), "An empty header: zero size, 'Unspecified' units.")
      .def(py::init<const TImageHeader&>(), py::arg("source"), "A copy of source.")
      .def_static(
          "open", [](const std::filesystem::path& path) { return TImageHeader::Open(path); },
          py::arg("path"), "The .doc header beside path (any extension), without the cells.")
      .def(
          "save", [](TImageHeader& h, const std::filesystem::path& path) { h.SaveToFile(path); },
          py::arg("path"),
          "Writes the .doc text beside path; the old .doc stays whole until the new one is.")
      .def("text", &TImageHeader::Text, "The printed report.")
      .def("__copy__", [](const TImageHeader& h) { return TImageHeader(h); })
      .def("__deepcopy__", [](const TImageHeader& h, py::dict) { return TImageHeader(h); })
      .def("__repr__", [](const TImageHeader& h) {
        return "<zephra.Header " + std::to_string(h.Width) + " x " + std::to_string(h.Height) +
               " " + WordOf(kDataTypeWords, h.DataType) + " '" + h.FileTitle + "'>";
      });
  BindFields(header);
  BindMapping(header);
}

}  // namespace zephra::python
