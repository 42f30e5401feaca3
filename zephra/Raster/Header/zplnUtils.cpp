#include <zephra/Raster/Header/zplnUtils.h>

#include <cmath>

namespace zephra {

namespace {

// A longitude on the map, or the same longitude a turn up or down on a lat/long map whose
// bounds run past the usual range. A raster that is not geographic is never shifted.
float LongitudeOnMap(const TImageHeader& header, float lng) {
  if (header.WithinXRange(lng)) {
    return lng;
  }
  if (header.IsLatLon()) {
    const float east = static_cast<float>(lng + 360.0);
    const float west = static_cast<float>(lng - 360.0);
    if (lng < 0.0f && header.WithinXRange(east)) {
      return east;
    }
    if (lng > 180.0f && header.WithinXRange(west)) {
      return west;
    }
  }
  throw EArgumentException("Lng is outside map bounds");
}

// The cell index of offset / resolution, truncated toward zero and limited to 0 .. count - 1:
// points on the closed upper end of the range would otherwise fall one cell beyond the grid. A
// grid of no cells (count of 0 or less) gives 0.
int32_t CellIndex(double offset, float resolution, int32_t count) {
  if (resolution == 0.0f) {
    throw EMathError("Division by zero: the header's resolution is 0");
  }
  const double cell = std::trunc(offset / resolution);
  const double last = static_cast<double>(count) - 1.0;
  if (!(cell > 0.0)) {
    return 0;
  }
  return static_cast<int32_t>(cell < last ? cell : std::max(last, 0.0));
}

}  // namespace

void LatLngToColRow(const TImageHeader* Header, float lat, float lng, int32_t& col, int32_t& row) {
  if (Header == nullptr) {
    throw EInvalidOpException("Header instance is null");
  }
  const float x = LongitudeOnMap(*Header, lng);
  if (!Header->WithinYRange(lat)) {
    throw EArgumentException("Lat is outside map bounds");
  }
  const int32_t c =
      CellIndex(static_cast<double>(x) - Header->Minx, Header->ResolutionX, Header->Width);
  const int32_t r =
      CellIndex(static_cast<double>(Header->Maxy) - lat, Header->ResolutionY, Header->Height);
  col = c;
  row = r;
}

}  // namespace zephra
