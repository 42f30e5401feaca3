// The C entry points. Each one is a wall: no exception crosses it, and a failure of any kind
// comes out as the documented zero.

#include "tvgeotifflib.h"

#include <memory>

#include "gtwWriter.h"

using tvgeotifflib::TGeoTiffWriter;

namespace {

// The handle is the writer's address; gtw_handle is never dereferenced as its own type.
TGeoTiffWriter* Writer(gtw_handle handle) {
  return reinterpret_cast<TGeoTiffWriter*>(handle);
}

int32_t Result(bool ok) {
  return ok ? 1 : 0;
}

}  // namespace

extern "C" {

gtw_handle gtw_create(const char* file_name, const char* mode) {
  try {
    return reinterpret_cast<gtw_handle>(TGeoTiffWriter::Create(file_name, mode).release());
  } catch (...) {
    return nullptr;
  }
}

int32_t gtw_init_data(gtw_handle handle, int32_t width, int32_t height, float x_origin,
                      float y_origin, float cell_size, uint32_t lat_long) {
  try {
    return Result(handle != nullptr &&
                  Writer(handle)->InitData(width, height, x_origin, y_origin, cell_size, lat_long));
  } catch (...) {
    return 0;
  }
}

int32_t gtw_write_row(gtw_handle handle, int32_t row, const float* cells) {
  try {
    return Result(handle != nullptr && Writer(handle)->WriteRow(row, cells));
  } catch (...) {
    return 0;
  }
}

int32_t gtw_free(gtw_handle handle) {
  if (handle == nullptr) {
    return 0;
  }
  // Owned from here on, so the writer goes whatever happens.
  std::unique_ptr<TGeoTiffWriter> writer(Writer(handle));
  try {
    return Result(TGeoTiffWriter::Finish(std::move(writer)));
  } catch (...) {
    return 0;
  }
}

}  // extern "C"
