#pragma once
// The size and place of the raster as the caller gives them.

#include <cstdint>

namespace tvgeotifflib {

struct TRasterGeometry {
  uint32_t Width = 0;
  uint32_t Height = 0;
  double OriginX = 0;  // west edge
  double OriginY = 0;  // north edge
  double CellSize = 0;
  bool LatLong = false;
};

// The double that the caller most likely meant by a float: the shortest decimal that reads
// back as the same float. A cell size of 0.1f thus goes into the file as 0.1, not as
// 0.100000001490116, whose error would add up across a wide raster.
double WidenAsWritten(float value);

}  // namespace tvgeotifflib
