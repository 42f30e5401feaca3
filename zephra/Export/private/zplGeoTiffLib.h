#pragma once
// The GeoTIFF writer component, bound at run time. The library never links it: a host without it
// uses everything else, and only a GeoTIFF export fails, with the loader's own message.

#include <cstdint>
#include <memory>
#include <string>

namespace zephra {

class TGeoTiffLib {
 public:
  using THandle = void*;

  // Loads the component: the path of SetGeoTiffLibraryPath if one is set; otherwise
  // libtvgeotifflib.so beside the loaded zephra library, then on the loader's search path.
  // Raises EFOpenError with the loader's message when it can't be loaded or lacks a function.
  // Each export binds anew and lets go at its end, so a failed binding is not remembered and a
  // host that installs the component later needs no restart; a library already in memory costs
  // the loader only a reference count (it is never unmapped once loaded).
  TGeoTiffLib();
  ~TGeoTiffLib();
  TGeoTiffLib(const TGeoTiffLib&) = delete;
  TGeoTiffLib& operator=(const TGeoTiffLib&) = delete;

  THandle Create(const char* fileName, const char* mode) const;
  void InitData(THandle handle, int32_t width, int32_t height, float xOrigin, float yOrigin,
                float cellSize, uint32_t latLong) const;
  void WriteRow(THandle handle, int32_t row, const float* cells) const;
  void Free(THandle handle) const;

 private:
  struct TFunctions;

  void* FLibrary = nullptr;
  std::unique_ptr<TFunctions> FFunctions;
};

}  // namespace zephra
