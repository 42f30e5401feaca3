#pragma once
// GeoTIFF files written with libtiff and libgeotiff directly, as other tools write them, and the
// value each of their cells holds.

#include <geotiffio.h>
#include <geovalues.h>
#include <xtiffio.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace zephra::test {

enum class TGeoref { None, TiePoint, Matrix, Rotated };

// 37 x 29 cells of 0.5 x 0.25 map units from (100, 50) north-west; strips of 3 rows unless
// Tile sets square tiles.
struct TTiffSpec {
  uint32_t Width = 37;
  uint32_t Height = 29;
  uint16_t Bands = 1;
  uint16_t Bits = 32;
  uint16_t Format = SAMPLEFORMAT_IEEEFP;
  uint16_t Compression = COMPRESSION_NONE;
  uint16_t Predictor = PREDICTOR_NONE;
  uint32_t Tile = 0;
  bool Planar = false;
  const char* Mode = "w";  // "w8" BigTIFF, "wb" big-endian
  TGeoref Georef = TGeoref::TiePoint;
  bool PixelIsPoint = false;
  bool LatLong = false;
  const char* NoData = nullptr;
};

// Differs between neighbours and bands, and fits every sample type.
inline double CellValue(const TTiffSpec& request, uint32_t band, uint32_t col, uint32_t row) {
  const double value = (row * 7 + col * 3 + band * 11) % 120;
  return request.Format == SAMPLEFORMAT_UINT ? value : value - 60;
}

inline void AppendCell(const TTiffSpec& request, std::vector<uint8_t>& bytes, double value) {
  const auto put = [&bytes](auto sample) {
    const auto* raw = reinterpret_cast<const uint8_t*>(&sample);
    bytes.insert(bytes.end(), raw, raw + sizeof sample);
  };
  const bool sign = request.Format == SAMPLEFORMAT_INT;
  if (request.Format == SAMPLEFORMAT_IEEEFP) {
    request.Bits == 32 ? put(static_cast<float>(value)) : put(value);
  } else if (request.Bits == 8) {
    sign ? put(static_cast<int8_t>(value)) : put(static_cast<uint8_t>(value));
  } else if (request.Bits == 16) {
    sign ? put(static_cast<int16_t>(value)) : put(static_cast<uint16_t>(value));
  } else {
    sign ? put(static_cast<int32_t>(value)) : put(static_cast<uint32_t>(value));
  }
}

inline void WriteGeoreference(TIFF* tif, const TTiffSpec& request) {
  const double tie[6] = {0, 0, 0, 100, 50, 0};
  const double scale[3] = {0.5, 0.25, 0};
  const double shear = request.Georef == TGeoref::Rotated ? 0.1 : 0;
  const double matrix[16] = {0.5, shear, 0, 100, 0, -0.25, 0, 50, 0, 0, 0, 0, 0, 0, 0, 1};
  if (request.Georef == TGeoref::TiePoint) {
    TIFFSetField(tif, TIFFTAG_GEOTIEPOINTS, 6, tie);
    TIFFSetField(tif, TIFFTAG_GEOPIXELSCALE, 3, scale);
  } else if (request.Georef != TGeoref::None) {
    TIFFSetField(tif, TIFFTAG_GEOTRANSMATRIX, 16, matrix);
  }
  GTIF* gtif = GTIFNew(tif);
  GTIFKeySet(gtif, GTRasterTypeGeoKey, TYPE_SHORT, 1,
             request.PixelIsPoint ? RasterPixelIsPoint : RasterPixelIsArea);
  GTIFKeySet(gtif, GTModelTypeGeoKey, TYPE_SHORT, 1,
             request.LatLong ? ModelTypeGeographic : ModelTypeProjected);
  GTIFKeySet(gtif, request.LatLong ? GeographicTypeGeoKey : ProjectedCSTypeGeoKey, TYPE_SHORT, 1,
             request.LatLong ? GCS_WGS_84 : 32633);
  GTIFKeySet(gtif, ProjLinearUnitsGeoKey, TYPE_SHORT, 1, Linear_Meter);
  GTIFWriteKeys(gtif);
  GTIFFree(gtif);
}

inline void WriteGeoTiff(const std::string& fileName, const TTiffSpec& request) {
  TIFF* tif = XTIFFOpen(fileName.c_str(), request.Mode);
  const uint32_t w = request.Tile > 0 ? request.Tile : request.Width;
  const uint32_t h = request.Tile > 0 ? request.Tile : 3;
  const std::pair<uint32_t, uint32_t> tags[] = {
      {TIFFTAG_IMAGEWIDTH, request.Width},
      {TIFFTAG_IMAGELENGTH, request.Height},
      {TIFFTAG_SAMPLESPERPIXEL, request.Bands},
      {TIFFTAG_BITSPERSAMPLE, request.Bits},
      {TIFFTAG_SAMPLEFORMAT, request.Format},
      {TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISBLACK},
      {TIFFTAG_PLANARCONFIG, request.Planar ? 2u : 1u},
      {TIFFTAG_COMPRESSION, request.Compression},
      {TIFFTAG_PREDICTOR, request.Predictor},
      {request.Tile ? TIFFTAG_TILEWIDTH : 0, w},
      {request.Tile ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP, h}};
  for (const auto& [tag, value] : tags) {
    if (tag != 0 && !(tag == TIFFTAG_PREDICTOR && value == PREDICTOR_NONE)) {
      TIFFSetField(tif, tag, value);
    }
  }
  if (request.NoData) {
    static const TIFFFieldInfo field = {42113,        -1, -1, TIFF_ASCII,
                                        FIELD_CUSTOM, 1,  0,  const_cast<char*>("NoData")};
    TIFFMergeFieldInfo(tif, &field, 1);
    TIFFSetField(tif, 42113, request.NoData);
  }
  WriteGeoreference(tif, request);
  // Each plane of a planar file, or all bands together; edge tiles repeat the last cells.
  for (int plane = request.Planar ? 0 : -1; plane < (request.Planar ? request.Bands : 0); ++plane) {
    for (uint32_t y0 = 0; y0 < request.Height; y0 += h) {
      for (uint32_t x0 = 0; x0 < request.Width; x0 += w) {
        std::vector<uint8_t> bytes;
        for (uint32_t y = y0; y < std::min(y0 + h, request.Tile ? UINT32_MAX : request.Height);
             ++y) {
          for (uint32_t x = x0; x < x0 + w; ++x) {
            for (uint16_t b = 0; b < request.Bands; ++b) {
              if (plane < 0 || plane == b) {
                AppendCell(request, bytes,
                           CellValue(request, b + 1u, std::min(x, request.Width - 1),
                                     std::min(y, request.Height - 1)));
              }
            }
          }
        }
        const auto sample = static_cast<uint16_t>(std::max(plane, 0));
        const auto size = static_cast<tmsize_t>(bytes.size());
        request.Tile
            ? TIFFWriteEncodedTile(tif, TIFFComputeTile(tif, x0, y0, 0, sample), bytes.data(), size)
            : TIFFWriteEncodedStrip(tif, TIFFComputeStrip(tif, y0, sample), bytes.data(), size);
      }
    }
  }
  XTIFFClose(tif);
}

}  // namespace zephra::test
