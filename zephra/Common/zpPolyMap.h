#pragma once
// The polygons of a shape file, one per ring, as the shape fill burns them into a raster.

#include <cstdint>
#include <string>
#include <vector>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExport.h>
#include <zephra/Common/zpRingLocator.h>

namespace zephra {

// One ring of a polygon feature. The parts of a feature share its ShapeId and stand side by side
// in the map; a hole is simply another part, and the shape fill turns it into a hole.
class ZEPHRA_API TSHPPolygon {
 public:
  // Bounds come from the vertices; vertices must be finite (EArgumentException otherwise).
  TSHPPolygon(int32_t ShapeId, int32_t PartCount, TFloatPointArray Vertices);

  int32_t ShapeId;    // the record number of the feature in its shape file, from 0
  int32_t PartCount;  // parts of the feature; 1 is a single-part polygon
  // The box of this part alone. An empty part has +inf minima and -inf maxima. PointInPoly keeps
  // its own copy, so assigning these changes nothing but what callers read here.
  float BoundsMinX;
  float BoundsMaxX;
  float BoundsMinY;
  float BoundsMaxY;

  // The row a scan along one Y keeps for one polygon; see PointInPoly.
  using TRowCache = TRingLocator::TRowCache;

  // Below 0 outside; 0 exactly on an edge or a vertex; 1 inside by the even-odd rule, for which a
  // self-intersecting ring holds the points that an odd number of its edges enclose. The polygon
  // keeps no state, so threads may share it, and its map, freely. A scan along rows (repeated
  // calls with the same P.Y) is much faster with a cache of its own for each polygon.
  int8_t PointInPoly(const TFloatPoint& P) const { return FRing.Locate(P); }
  int8_t PointInPoly(const TFloatPoint& P, TRowCache& cache) const {
    return FRing.Locate(P, cache);
  }

  // As read; the edge from the last vertex back to the first always closes the ring.
  const TFloatPointArray& Vertices() const { return FRing.Vertices(); }

 private:
  TRingLocator FRing;
};

// The polygon parts of a shape file, read through shapelib. Once read, a map is never changed by
// the library, so threads may read one map at once. Each part of a Polygon, PolygonZ or
// PolygonM record becomes one TSHPPolygon, in file order, with coordinates narrowed to 32-bit
// floats; NULL records and records without vertices are skipped, Z and M values ignored.
class ZEPHRA_API TPolyMap {
 public:
  // ShpFile names the .shp file; its .shx index must stand beside it (as shapelib reads them,
  // the extension of the name may also be upper case, or left off). Failures name the file:
  //   EFOpenError  - the .shp or the .shx file does not exist;
  //   EInOutError  - shapelib cannot read the file or one of its records, a part is malformed,
  //                  or a coordinate is not finite as a 32-bit float (a damaged file);
  //   Exception    - the file holds points, lines, multipoints or multipatches, not polygons.
  // color is kept for the caller and plays no part in reading.
  TPolyMap(const std::string& ShpFile, TColor color);
  TPolyMap(const TPolyMap&) = delete;
  TPolyMap& operator=(const TPolyMap&) = delete;

  int32_t GetShapeCount() const { return static_cast<int32_t>(FShapes.size()); }
  // The map keeps ownership. An index outside 0 .. GetShapeCount() - 1, including any index of
  // a map with no shapes, raises EListError.
  TSHPPolygon* GetShape(int32_t index);
  const TSHPPolygon* GetShape(int32_t index) const;

  const std::string& FileName() const { return FFileName; }
  TColor Color() const { return FColor; }

 private:
  void CheckIndex(int32_t index) const;

  std::string FFileName;
  TColor FColor;
  std::vector<TSHPPolygon> FShapes;
};

}  // namespace zephra
