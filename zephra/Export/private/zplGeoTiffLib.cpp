#include <zephra/Export/private/zplGeoTiffLib.h>

#include <dlfcn.h>
#include <tvgeotifflib.h>

#include <filesystem>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPlatform.h>

namespace zephra {

// The component's four functions, called through the very types its header declares: a call
// through a look-alike type (void* for gtw_handle) is undefined behaviour, whatever the ABI.
struct TGeoTiffLib::TFunctions {
  gtw_create_fn Create;
  gtw_init_data_fn InitData;
  gtw_write_row_fn WriteRow;
  gtw_free_fn Free;
};

namespace {

// THandle keeps the component's header out of ours; it is the component's handle, opaque.
gtw_handle Native(TGeoTiffLib::THandle handle) {
  return static_cast<gtw_handle>(handle);
}

constexpr const char* kLibraryName = "libtvgeotifflib.so";

std::string LoaderError() {
  const char* message = dlerror();
  return message != nullptr ? message : "the GeoTIFF writer component could not be loaded";
}

// The folder of the loaded zephra library, found through the address of one of its functions.
std::filesystem::path ZephraLibraryFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<void*>(&ZephraLibraryFolder), &info) == 0 ||
      info.dli_fname == nullptr) {
    return {};
  }
  return std::filesystem::path(info.dli_fname).parent_path();
}

// The component installs a tag extender into libtiff, which may stay in the process after the
// component is let go; NODELETE keeps its code mapped, so the extender never dangles.
constexpr int kOpenFlags = RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE;

void* OpenComponent() {
  const std::string configured = GeoTiffLibraryPath();
  if (!configured.empty()) {
    return dlopen(configured.c_str(), kOpenFlags);
  }
  const std::filesystem::path beside = ZephraLibraryFolder() / kLibraryName;
  std::error_code ignored;
  if (!beside.parent_path().empty() && std::filesystem::exists(beside, ignored)) {
    return dlopen(beside.c_str(), kOpenFlags);
  }
  return dlopen(kLibraryName, kOpenFlags);
}

template <typename TFunction>
TFunction Resolve(void* library, const char* name) {
  void* symbol = dlsym(library, name);
  if (symbol == nullptr) {
    throw EFOpenError(LoaderError());
  }
  return reinterpret_cast<TFunction>(symbol);
}

}  // namespace

TGeoTiffLib::TGeoTiffLib() {
  dlerror();  // forget any earlier message, so that ours is the loader's answer to this load
  FLibrary = OpenComponent();
  if (FLibrary == nullptr) {
    throw EFOpenError(LoaderError());
  }
  try {
    FFunctions = std::make_unique<TFunctions>(
        TFunctions{Resolve<gtw_create_fn>(FLibrary, "gtw_create"),
                   Resolve<gtw_init_data_fn>(FLibrary, "gtw_init_data"),
                   Resolve<gtw_write_row_fn>(FLibrary, "gtw_write_row"),
                   Resolve<gtw_free_fn>(FLibrary, "gtw_free")});
  } catch (...) {
    dlclose(FLibrary);
    throw;
  }
}

TGeoTiffLib::~TGeoTiffLib() {
  dlclose(FLibrary);
}

TGeoTiffLib::THandle TGeoTiffLib::Create(const char* fileName, const char* mode) const {
  return FFunctions->Create(fileName, mode);
}

// The component's results are not read: a failure inside it shows in the file it leaves.
void TGeoTiffLib::InitData(THandle handle, int32_t width, int32_t height, float xOrigin,
                           float yOrigin, float cellSize, uint32_t latLong) const {
  FFunctions->InitData(Native(handle), width, height, xOrigin, yOrigin, cellSize, latLong);
}

void TGeoTiffLib::WriteRow(THandle handle, int32_t row, const float* cells) const {
  FFunctions->WriteRow(Native(handle), row, cells);
}

void TGeoTiffLib::Free(THandle handle) const {
  FFunctions->Free(Native(handle));
}

}  // namespace zephra
