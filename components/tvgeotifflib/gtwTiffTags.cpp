#include "gtwTiffTags.h"

#include <geotiffio.h>
#include <geovalues.h>
#include <xtiffio.h>

#include <array>
#include <memory>

#include "gtwLayout.h"
#include "gtwMessages.h"

namespace tvgeotifflib {

namespace {

// Neither libtiff nor libgeotiff knows the no-data tag, and libtiff drops a tag it doesn't know,
// so it is added to this file's own tag table. libtiff keeps the name pointer and never writes
// through it.
bool RegisterNoDataTag(TIFF* tif) {
  static const TIFFFieldInfo kNoDataField = {
      kTagNoData, -1, -1, TIFF_ASCII, FIELD_CUSTOM, 1, 0, const_cast<char*>("GDALNoDataValue")};
  return TIFFMergeFieldInfo(tif, &kNoDataField, 1) == 0;
}

struct TGtifFree {
  void operator()(GTIF* gtif) const noexcept { GTIFFree(gtif); }
};
using TGtifPtr = std::unique_ptr<GTIF, TGtifFree>;

bool SetShort(GTIF* gtif, geokey_t key, int value) {
  return GTIFKeySet(gtif, key, TYPE_SHORT, 1, value) != 0;
}

bool SetText(GTIF* gtif, geokey_t key, const char* text) {
  return GTIFKeySet(gtif, key, TYPE_ASCII, 0, text) != 0;
}

bool SetGeographicKeys(GTIF* gtif) {
  return SetShort(gtif, GTModelTypeGeoKey, ModelTypeGeographic) &&
         SetShort(gtif, GeographicTypeGeoKey, GCS_WGS_84) &&
         SetShort(gtif, GeogAngularUnitsGeoKey, Angular_Degree) &&
         SetText(gtif, GTCitationGeoKey, "WGS 84");
}

// The caller tells us nothing about the projection but that it is one, so it is declared
// user-defined rather than guessed.
bool SetProjectedKeys(GTIF* gtif) {
  return SetShort(gtif, GTModelTypeGeoKey, ModelTypeProjected) &&
         SetShort(gtif, ProjectedCSTypeGeoKey, KvUserDefined) &&
         SetText(gtif, GTCitationGeoKey, "User-defined projected coordinate system");
}

bool WriteGeoKeys(TIFF* tif, bool latLong) {
  const TGtifPtr gtif(GTIFNewEx(tif, GeoTiffMessage, nullptr));
  if (!gtif) {
    return false;
  }
  const bool keysSet = SetShort(gtif.get(), GTRasterTypeGeoKey, RasterPixelIsArea) &&
                       (latLong ? SetGeographicKeys(gtif.get()) : SetProjectedKeys(gtif.get()));
  return keysSet && GTIFWriteKeys(gtif.get()) != 0;
}

}  // namespace

bool WriteSampleTags(TIFF* tif, const TRasterGeometry& geometry, uint32_t rowsPerStrip) {
  return TIFFSetField(tif, TIFFTAG_IMAGEWIDTH, geometry.Width) == 1 &&
         TIFFSetField(tif, TIFFTAG_IMAGELENGTH, geometry.Height) == 1 &&
         TIFFSetField(tif, TIFFTAG_SAMPLESPERPIXEL, uint16_t{1}) == 1 &&
         TIFFSetField(tif, TIFFTAG_BITSPERSAMPLE, uint16_t{32}) == 1 &&
         TIFFSetField(tif, TIFFTAG_SAMPLEFORMAT, uint16_t{SAMPLEFORMAT_IEEEFP}) == 1 &&
         TIFFSetField(tif, TIFFTAG_PHOTOMETRIC, uint16_t{PHOTOMETRIC_MINISBLACK}) == 1 &&
         TIFFSetField(tif, TIFFTAG_PLANARCONFIG, uint16_t{PLANARCONFIG_CONTIG}) == 1 &&
         TIFFSetField(tif, TIFFTAG_ROWSPERSTRIP, rowsPerStrip) == 1 &&
         TIFFSetField(tif, TIFFTAG_COMPRESSION, uint16_t{COMPRESSION_ADOBE_DEFLATE}) == 1 &&
         TIFFSetField(tif, TIFFTAG_PREDICTOR, uint16_t{PREDICTOR_FLOATINGPOINT}) == 1;
}

bool WriteImageTags(TIFF* tif, const TRasterGeometry& geometry) {
  return WriteSampleTags(tif, geometry, RowsPerStrip(geometry.Width, geometry.Height)) &&
         RegisterNoDataTag(tif) && TIFFSetField(tif, kTagNoData, kNoDataText) == 1;
}

bool WriteGeoreference(TIFF* tif, const TRasterGeometry& geometry) {
  // Raster point (0, 0) is the north-west corner of the first cell under pixel-is-area. Rows run
  // south while map y runs north; the scale's y stays positive, as readers expect.
  const std::array<double, 6> tiePoint = {0, 0, 0, geometry.OriginX, geometry.OriginY, 0};
  const std::array<double, 3> pixelScale = {geometry.CellSize, geometry.CellSize, 0};
  return TIFFSetField(tif, TIFFTAG_GEOTIEPOINTS, static_cast<int>(tiePoint.size()),
                      tiePoint.data()) == 1 &&
         TIFFSetField(tif, TIFFTAG_GEOPIXELSCALE, static_cast<int>(pixelScale.size()),
                      pixelScale.data()) == 1 &&
         WriteGeoKeys(tif, geometry.LatLong);
}

}  // namespace tvgeotifflib
