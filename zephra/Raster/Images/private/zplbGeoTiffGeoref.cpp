#include <zephra/Raster/Images/private/zplbGeoTiffGeoref.h>

#include <geotiffio.h>
#include <geovalues.h>
#include <xtiffio.h>

#include <cmath>
#include <cstdarg>
#include <limits>
#include <optional>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPlatform.h>

namespace zephra {

namespace {

// The north-west corner of cell (0, 0) and the cell sizes, y counting north.
struct TGridPlacement {
  double West = 0;
  double North = 0;
  double CellX = 1;
  double CellY = 1;
};

[[noreturn]] void Refuse(const TTiffFile& file, const std::string& why) {
  throw EImageFileError(file.FileName() + " cannot be read: " + why);
}

void GeoKeyMessage(GTIF* gtif, int level, const char* format, ...) {
  char text[1024];
  va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  const auto* file = static_cast<const TTiffFile*>(GTIFGetUserData(gtif));
  DebugOutput("GeoTIFF reader, " +
              std::string(level == LIBGEOTIFF_ERROR ? "libgeotiff error" : "libgeotiff warning") +
              ", " + file->FileName() + ": " + text);
}

struct TGtifFree {
  void operator()(GTIF* gtif) const noexcept { GTIFFree(gtif); }
};

// The geo keys that the header needs; absent keys stay empty.
struct TGeoKeys {
  std::optional<int> ModelType;
  bool PixelIsPoint = false;
  std::optional<int> Crs;
  std::optional<int> LinearUnit;
  std::optional<int> AngularUnit;
};

std::optional<int> ShortKey(GTIF* gtif, geokey_t key) {
  unsigned short value = 0;
  if (GTIFKeyGet(gtif, key, &value, 0, 1) != 1) {
    return std::nullopt;
  }
  return value;
}

TGeoKeys ReadGeoKeys(const TTiffFile& file) {
  const std::unique_ptr<GTIF, TGtifFree> gtif(
      GTIFNewEx(file.Handle(), GeoKeyMessage, const_cast<TTiffFile*>(&file)));
  TGeoKeys keys;
  if (!gtif) {
    return keys;
  }
  keys.ModelType = ShortKey(gtif.get(), GTModelTypeGeoKey);
  keys.PixelIsPoint = ShortKey(gtif.get(), GTRasterTypeGeoKey) == RasterPixelIsPoint;
  keys.Crs = ShortKey(gtif.get(), keys.ModelType == ModelTypeProjected ? ProjectedCSTypeGeoKey
                                                                       : GeographicTypeGeoKey);
  keys.LinearUnit = ShortKey(gtif.get(), ProjLinearUnitsGeoKey);
  keys.AngularUnit = ShortKey(gtif.get(), GeogAngularUnitsGeoKey);
  return keys;
}

// A coordinate as a float; one beyond the float range becomes an infinity, which is refused.
float MapFloat(double value) {
  return std::fabs(value) <= std::numeric_limits<float>::max()
             ? static_cast<float>(value)
             : std::numeric_limits<float>::infinity();
}

bool PositiveSize(double value) {
  return std::isfinite(value) && value > 0;
}

std::optional<TGridPlacement> FromMatrix(const TTiffFile& file) {
  const std::vector<double> m = file.Doubles(TIFFTAG_GEOTRANSMATRIX);
  if (m.size() < 16) {
    return std::nullopt;
  }
  if (m[1] != 0 || m[4] != 0) {
    Refuse(file, "its grid is rotated or sheared; only north-up grids are read");
  }
  if (!PositiveSize(m[0]) || !PositiveSize(-m[5]) || !std::isfinite(m[3]) || !std::isfinite(m[7])) {
    Refuse(file, "its transformation matrix gives no north-up grid of positive cell size");
  }
  return TGridPlacement{m[3], m[7], m[0], -m[5]};
}

std::optional<TGridPlacement> FromTiePoint(const TTiffFile& file) {
  const std::vector<double> ties = file.Doubles(TIFFTAG_GEOTIEPOINTS);
  const std::vector<double> scale = file.Doubles(TIFFTAG_GEOPIXELSCALE);
  if (ties.size() < 6) {
    return std::nullopt;
  }
  if (scale.size() < 2) {
    Refuse(file, "it is tied to the map by control points only, with no pixel scale");
  }
  if (!PositiveSize(scale[0]) || !PositiveSize(scale[1])) {
    Refuse(file, "its pixel scale gives no north-up grid of positive cell size");
  }
  const TGridPlacement placement{ties[3] - ties[0] * scale[0], ties[4] + ties[1] * scale[1],
                                 scale[0], scale[1]};
  if (!std::isfinite(placement.West) || !std::isfinite(placement.North)) {
    Refuse(file, "its tie point lies nowhere on the map");
  }
  return placement;
}

// The EPSG code of the kilometre, which libgeotiff's unit list lacks.
constexpr int kLinearKilometre = 9036;

const char* LinearUnitName(std::optional<int> unit) {
  switch (unit.value_or(0)) {
    case Linear_Meter:
      return "m";
    case kLinearKilometre:
      return "km";
    case Linear_Foot:
    case Linear_Foot_US_Survey:
    case Linear_Foot_Modified_American:
    case Linear_Foot_Clarke:
    case Linear_Foot_Indian:
      return "ft";
    default:
      return "unknown";
  }
}

void SetReferenceSystem(const TTiffFile& file, const TGeoKeys& keys, TImageHeader& header) {
  if (keys.ModelType == ModelTypeGeographic) {
    if (keys.AngularUnit && *keys.AngularUnit != Angular_Degree && *keys.AngularUnit != 9122) {
      Refuse(file, "its geographic coordinates are in an angular unit other than degrees");
    }
    header.SetRefSystem("latlon");
    header.RefUnits = "deg";
  } else {
    header.SetRefSystem("plane");
    header.RefUnits = LinearUnitName(keys.LinearUnit);
  }
  header.Lineage = "Read from the GeoTIFF " + file.FileName();
  if (keys.Crs && *keys.Crs != KvUserDefined && *keys.Crs != 0) {
    header.Lineage += ", EPSG:" + std::to_string(*keys.Crs);
  }
}

}  // namespace

void ReadGeoreference(const TTiffFile& file, const TTiffLayout& layout, TImageHeader& header) {
  const TGeoKeys keys = ReadGeoKeys(file);
  std::optional<TGridPlacement> placement = FromMatrix(file);
  if (!placement) {
    placement = FromTiePoint(file);
  }
  if (!placement) {
    // No georeferencing: the raster's own grid, a plane of unit cells.
    placement = TGridPlacement{0, static_cast<double>(layout.Height), 1, 1};
    header.Comment = "No georeferencing in the file: a plane grid of cell size 1";
  } else if (keys.PixelIsPoint) {
    placement->West -= placement->CellX / 2;
    placement->North += placement->CellY / 2;
  }
  header.Minx = MapFloat(placement->West);
  header.Maxy = MapFloat(placement->North);
  header.Maxx = MapFloat(placement->West + layout.Width * placement->CellX);
  header.Miny = MapFloat(placement->North - layout.Height * placement->CellY);
  header.ResolutionX = MapFloat(placement->CellX);
  header.ResolutionY = MapFloat(placement->CellY);
  const bool finite = std::isfinite(header.Minx) && std::isfinite(header.Maxx) &&
                      std::isfinite(header.Miny) && std::isfinite(header.Maxy);
  if (!finite || !(header.ResolutionX > 0) || !(header.ResolutionY > 0)) {
    Refuse(file, "its grid lies beyond the range of map coordinates");
  }
  SetReferenceSystem(file, keys, header);
}

}  // namespace zephra
