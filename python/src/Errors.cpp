// The library's exceptions as Python exceptions: one class for each, all under zephra.Error, each
// also derived from the built-in exception that Python code would catch for that kind of failure,
// so that `except OSError` sees a file that can't be read whichever layer raised it.

#include <exception>
#include <string>
#include <type_traits>
#include <vector>

#include <zephra/Common/zpExceptions.h>

#include "Bindings.h"

namespace py = pybind11;

namespace zephra::python {

namespace {

using TMatch = bool (*)(const Exception&);

template <typename TException>
bool IsA(const Exception& failure) {
  if constexpr (std::is_same_v<TException, Exception>) {
    return true;
  } else {
    return dynamic_cast<const TException*>(&failure) != nullptr;
  }
}

struct TErrorClass {
  const char* Name;
  TMatch Matches;
  int Parent;         // index of the parent class in the table; -1 for zephra.Error itself
  PyObject* Builtin;  // the built-in base besides the parent, or null
  const char* Doc;
};

// Parents stand before their children; a failure takes the last class that matches it.
std::vector<TErrorClass> ErrorClasses() {
  return {
      {"Error", IsA<Exception>, -1, PyExc_Exception,
       "A failure of the library; the message is the library's own."},
      {"ArgumentError", IsA<EArgumentException>, 0, PyExc_ValueError, "An invalid argument."},
      {"ArgumentNullError", IsA<EArgumentNullException>, 1, nullptr, "A missing argument."},
      {"InvalidOperationError", IsA<EInvalidOpException>, 0, PyExc_RuntimeError,
       "An operation that the object's state does not allow."},
      {"AssertionFailedError", IsA<EAssertionFailed>, 0, PyExc_ValueError,
       "Input data that failed a check, such as a binary record cut short."},
      {"ConvertError", IsA<EConvertError>, 0, PyExc_ValueError,
       "Text that is not the number it should be."},
      {"FileOpenError", IsA<EFOpenError>, 0, PyExc_OSError, "A file that can't be opened."},
      {"InOutError", IsA<EInOutError>, 0, PyExc_OSError,
       "A file that can't be created, read or written."},
      {"ListError", IsA<EListError>, 0, PyExc_IndexError, "An index outside a list."},
      {"MathError", IsA<EMathError>, 0, PyExc_ArithmeticError,
       "A division by zero, or a value with no integer form."},
      {"RefSystemNotFoundError", IsA<ERefSystemNotFound>, 0, PyExc_LookupError,
       "A reference system that is not known."},
      {"ImageHeaderError", IsA<EImageHeaderError>, 0, PyExc_ValueError,
       "A header with an unknown data type or unit."},
      {"ImageFileError", IsA<EImageFileError>, 0, PyExc_OSError,
       "A raster file that doesn't hold what its header says, or can't be read."},
      {"VectorFileError", IsA<EVectorFileError>, 0, PyExc_OSError,
       "A vector layer that can't be loaded, saved or worked on."},
      {"PaletteError", IsA<EZephraPalette>, 0, PyExc_IndexError, "A palette index out of range."},
  };
}

struct TBoundError {
  TMatch Matches;
  PyObject* Class;
};

// The classes live as long as the process: the translator may run until the interpreter ends.
std::vector<TBoundError>& BoundErrors() {
  static std::vector<TBoundError> bound;
  return bound;
}

py::tuple BasesOf(const TErrorClass& error, PyObject* parent) {
  if (parent == nullptr) {
    return py::make_tuple(py::handle(error.Builtin));
  }
  if (error.Builtin == nullptr) {
    return py::make_tuple(py::handle(parent));
  }
  return py::make_tuple(py::handle(parent), py::handle(error.Builtin));
}

PyObject* NewClass(py::module_& module, const TErrorClass& error, PyObject* parent) {
  const std::string name = "zephra." + std::string(error.Name);
  const py::tuple bases = BasesOf(error, parent);
  PyObject* created =
      PyErr_NewExceptionWithDoc(name.c_str(), error.Doc, bases.ptr(), /*dict=*/nullptr);
  if (created == nullptr) {
    throw py::error_already_set();
  }
  module.add_object(error.Name, py::handle(created));  // the module takes a reference of its own
  return created;
}

PyObject* ClassFor(const Exception& failure) {
  const std::vector<TBoundError>& bound = BoundErrors();
  for (auto error = bound.rbegin(); error != bound.rend(); ++error) {
    if (error->Matches(failure)) {
      return error->Class;
    }
  }
  return bound.front().Class;
}

}  // namespace

void BindErrors(py::module_& module) {
  std::vector<TBoundError>& bound = BoundErrors();
  for (const TErrorClass& error : ErrorClasses()) {
    PyObject* parent = error.Parent < 0 ? nullptr : bound[static_cast<size_t>(error.Parent)].Class;
    bound.push_back({error.Matches, NewClass(module, error, parent)});
  }
  py::register_exception_translator([](std::exception_ptr failure) {
    try {
      if (failure) {
        std::rethrow_exception(failure);
      }
    } catch (const Exception& error) {
      PyErr_SetString(ClassFor(error), error.what());
    }
  });
}

}  // namespace zephra::python
