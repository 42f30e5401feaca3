#ifndef TVGEOTIFFLIB_H
#define TVGEOTIFFLIB_H
/*
 * tvgeotifflib: writes one-band GeoTIFF files of 32-bit float cells, row by row.
 *
 * The file holds IEEE float samples, DEFLATE-compressed with the floating-point predictor, a
 * GDAL_NODATA tag of "nan" (so any NaN cell is no-data), the model tie point at the north-west
 * corner of the raster, a square pixel scale from the cell size and pixel-is-area. A lat/long
 * raster is tagged as geographic WGS 84 (EPSG 4326), any other as a user-defined projected
 * system. A file whose cells could pass the 4 GiB limit of classic TIFF is written as BigTIFF.
 *
 * Argument types, as plain C:
 *   handle             -> gtw_handle, an opaque pointer; a null pointer (0) means failure
 *   8-bit string       -> const char*, zero-terminated, passed to the file system unchanged
 *   32-bit signed int  -> int32_t
 *   32-bit float       -> float, passed by value
 *   32-bit word (0/1)  -> uint32_t
 *   pointer to floats  -> const float*, `width` cells; the writer never changes them
 *
 * Every function except gtw_create returns 1 on success and 0 on failure. A caller may ignore
 * these results; the file is then simply what the writer could make of the calls. No function
 * lets an exception or a signal escape, and none writes to the caller's memory.
 *
 * Nothing is printed. The warnings and errors of libtiff and libgeotiff go, as text, to
 * `void zephra_debug_text(const char*)` where the process has that function (the zephra library
 * exports it), and are dropped where it has not.
 *
 * One handle is used by one thread at a time; distinct handles are independent.
 */

#include <stdint.h>

#if defined(_WIN32)
#define GTW_API __declspec(dllexport)
#else
#define GTW_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

typedef struct gtw_writer* gtw_handle;

/*
 * Starts the file and returns its writer, or 0 when the file can't be written or the mode is
 * not understood. The mode is "w" (classic TIFF, or BigTIFF when the raster needs it) or "w8"
 * (always BigTIFF). A regular file is written under a temporary name beside it and takes its
 * name only when gtw_free finishes it, so an existing file stays as it was until then, and for
 * good if the writing fails. Strips are compressed on one thread per core, or on as many as the
 * GTW_THREADS environment variable says (1 to 256); the file is the same either way.
 */
GTW_API gtw_handle gtw_create(const char* file_name, const char* mode);

/*
 * Sets the raster's size and place and writes the file's tags; call it once, before the rows.
 * (x_origin, y_origin) is the north-west corner of the north-west cell, cell_size the side of
 * a square cell in map units; lat_long is 0 for a projected system and anything else (normally
 * 1) for degrees of WGS 84. Fails for a width or height below 1 (a TIFF can't hold an empty
 * image, so none is left behind), an origin that is not finite, a cell size that is not finite
 * and above zero, or a second call.
 */
GTW_API int32_t gtw_init_data(gtw_handle handle, int32_t width, int32_t height, float x_origin,
                              float y_origin, float cell_size, uint32_t lat_long);

/*
 * Writes row `row` (0 is the northernmost) from `width` cells. Rows go in ascending order; a
 * row that skips ahead leaves the rows in between as NaN. A row that was written already, a
 * row outside the raster, a null `cells` or a call before gtw_init_data fail and write nothing.
 */
GTW_API int32_t gtw_write_row(gtw_handle handle, int32_t row, const float* cells);

/*
 * Finishes the file and releases the handle, which must not be used again. Rows never written
 * are NaN. If the file can't be finished (gtw_init_data never succeeded, or the disk failed),
 * it is removed and the result is 0. A null handle does nothing and gives 0.
 */
GTW_API int32_t gtw_free(gtw_handle handle);

/* Function types for callers that bind the library at run time. */
typedef gtw_handle (*gtw_create_fn)(const char*, const char*);
typedef int32_t (*gtw_init_data_fn)(gtw_handle, int32_t, int32_t, float, float, float, uint32_t);
typedef int32_t (*gtw_write_row_fn)(gtw_handle, int32_t, const float*);
typedef int32_t (*gtw_free_fn)(gtw_handle);

#ifdef __cplusplus
}
#endif

#endif /* TVGEOTIFFLIB_H */
