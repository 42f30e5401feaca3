// Range tests, grid comparison and the conversion of the header's unit names into metres.

#include <zephra/Raster/Header/zplbZephraImageHeader.h>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zephra {

namespace {

constexpr double kEarthRadiusKm = 6371.2;
constexpr double kDegreesToRadians = std::numbers::pi / 180.0;

const TImageHeader& Required(const TImageHeader* header, const char* operation) {
  if (header == nullptr) {
    throw EArgumentNullException(std::string(operation) + ": the header is null");
  }
  return *header;
}

// Same within 0.0001, or within 0.0001 of the smaller magnitude for large values.
bool SameBound(float a, float b) {
  const double tolerance = std::max(0.0001, 0.0001 * std::min(std::fabs(static_cast<double>(a)),
                                                              std::fabs(static_cast<double>(b))));
  return std::fabs(static_cast<double>(a) - b) <= tolerance;
}

// Unit names compare in capitals of a to z only, untrimmed.
std::string UpperAscii(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') {
      c = static_cast<char>(c - 'a' + 'A');
    }
  }
  return text;
}

float Radians(float degrees) {
  return static_cast<float>(degrees * kDegreesToRadians);
}

// Length in metres of `degrees` along the parallel through the middle of the map, measured
// from its west bound.
float GroundDistanceM(const TImageHeader& header, float degrees) {
  const float middle = static_cast<float>((static_cast<double>(header.Miny) + header.Maxy) / 2.0);
  const float east = static_cast<float>(static_cast<double>(header.Minx) + degrees);
  return static_cast<float>(LatLonDistance(middle, header.Minx, middle, east) * 1000.0);
}

}  // namespace

bool TImageHeader::WithinXRange(float x) const {
  return Minx <= x && x <= Maxx;
}

bool TImageHeader::WithinYRange(float y) const {
  return Miny <= y && y <= Maxy;
}

bool TImageHeader::PointWithin(float X, float Y) const {
  return WithinXRange(X) && WithinYRange(Y);
}

bool TImageHeader::CompareDimensions(const TImageHeader* compareHeader) const {
  const TImageHeader& other = Required(compareHeader, "TImageHeader::CompareDimensions");
  return Width == other.Width && Height == other.Height && Minx == other.Minx &&
         Maxx == other.Maxx && Miny == other.Miny && Maxy == other.Maxy;
}

bool TImageHeader::EqualsBounds(const TImageHeader* Header) const {
  const TImageHeader& other = Required(Header, "TImageHeader::EqualsBounds");
  return Width == other.Width && Height == other.Height && SameBound(Minx, other.Minx) &&
         SameBound(Maxx, other.Maxx) && SameBound(Miny, other.Miny) && SameBound(Maxy, other.Maxy);
}

void TImageHeader::SetRange(const TRange& range) {
  MinValue = range.Min;
  MaxValue = range.Max;
}

bool TImageHeader::RequiresLongitudeTranslation() const {
  return FIsLatLon && Maxx > 180.0f;
}

float LatLonDistance(float lat1, float lon1, float lat2, float lon2) {
  const double phi1 = Radians(lat1);
  const double phi2 = Radians(lat2);
  const double lambda1 = Radians(lon1);
  const double lambda2 = Radians(lon2);
  const double c = std::sin(phi1) * std::sin(phi2) +
                   std::cos(phi1) * std::cos(phi2) * std::cos(lambda2 - lambda1);
  // Rounding can carry the cosine of two (nearly) equal or antipodal points a step beyond
  // [-1, 1], where arccos has no value; clamping gives the distance 0 or half the circumference
  // that the points really have.
  const float d = static_cast<float>(std::acos(std::clamp(c, -1.0, 1.0)));
  return static_cast<float>(kEarthRadiusKm * d);
}

float UnitDistanceM(const TImageHeader* header) {
  const TImageHeader& h = Required(header, "UnitDistanceM");
  const std::string units = UpperAscii(h.RefUnits);
  const double distance = h.UnitDistance;
  if (units == "M") {
    return h.UnitDistance;
  }
  if (units == "KM") {
    return static_cast<float>(distance * 1000.0);
  }
  if (units == "FT") {
    return static_cast<float>(distance * 0.33);
  }
  if (units == "MI") {
    return static_cast<float>(distance * 1609.0);
  }
  if (units == "DEG") {
    return GroundDistanceM(h, h.UnitDistance);
  }
  if (units == "RAD") {
    return GroundDistanceM(h, static_cast<float>(distance / kDegreesToRadians));
  }
  throw EImageHeaderError("Unknown units in .doc file, can't convert to metres");
}

float ValueUnitsM(const TImageHeader* header) {
  const std::string units = UpperAscii(Required(header, "ValueUnitsM").ValueUnits);
  if (units == "M") {
    return 1.0f;
  }
  if (units == "KM") {
    return 1000.0f;
  }
  if (units == "FT") {
    return 0.33f;
  }
  if (units == "MI") {
    return 1609.0f;
  }
  throw EImageHeaderError("Can't convert value units in .doc file to metres");
}

}  // namespace zephra
