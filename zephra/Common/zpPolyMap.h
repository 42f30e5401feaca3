#pragma once
/// @file
/// TSHPPolygon and TPolyMap: the polygons of a shape file, one per ring, as the shape fill burns
/// them into a raster.

#include <cstdint>
#include <string>
#include <vector>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExport.h>
#include <zephra/Common/zpRingLocator.h>

namespace zephra {

/// One ring of a polygon feature. The parts of a feature share its ShapeId and stand side by
/// side in the map; a hole is simply another part, and the shape fill turns it into a hole.
class ZEPHRA_API TSHPPolygon {
 public:
  /// Bounds come from the vertices. Raises EArgumentException for a vertex that is not finite or
  /// a ring too large to index.
  TSHPPolygon(int32_t ShapeId, int32_t PartCount, TFloatPointArray Vertices);

  int32_t ShapeId;    ///< the record number of the feature in its shape file, from 0
  int32_t PartCount;  ///< parts of the feature; 1 is a single-part polygon
  // The box of this part alone. An empty part has +inf minima and -inf maxima. PointInPoly keeps
  // its own copy, so assigning these changes nothing but what callers read here.
  float BoundsMinX;  ///< west edge of this part's box
  float BoundsMaxX;  ///< east edge of this part's box
  float BoundsMinY;  ///< south edge of this part's box
  float BoundsMaxY;  ///< north edge of this part's box

  /// The row a scan along one Y keeps for one polygon; see PointInPoly.
  using TRowCache = TRingLocator::TRowCache;

  /// Below 0 outside; 0 exactly on an edge or a vertex; 1 inside by the even-odd rule, for which
  /// a self-intersecting ring holds the points that an odd number of its edges enclose. The
  /// polygon keeps no state, so threads may share it, and its map, freely. Never raises.
  int8_t PointInPoly(const TFloatPoint& P) const { return FRing.Locate(P); }
  /// The same answer; a scan along rows (repeated calls with the same P.Y) is much faster with a
  /// cache of its own for each polygon. Never raises but std::bad_alloc.
  int8_t PointInPoly(const TFloatPoint& P, TRowCache& cache) const {
    return FRing.Locate(P, cache);
  }

  /// As read; the edge from the last vertex back to the first always closes the ring. Never
  /// raises.
  const TFloatPointArray& Vertices() const { return FRing.Vertices(); }
  /// The ring behind PointInPoly, for scans that ask for whole rows at once. Never raises.
  const TRingLocator& Ring() const { return FRing; }

 private:
  TRingLocator FRing;
};

/// The polygon parts of a shape file. Once read, a map is never changed by the library, so
/// threads may read one map at once. Each part of a Polygon, PolygonZ or PolygonM record becomes
/// one TSHPPolygon, in file order, with coordinates narrowed to 32-bit floats; NULL records and
/// records without vertices are skipped, Z and M values ignored.
class ZEPHRA_API TPolyMap {
 public:
  /// ShpFile names the .shp file; its .shx index must stand beside it (the extension of the name
  /// may also be upper case, or left off). color is kept for the caller. Failures name the file:
  /// EFOpenError when the .shp or .shx does not exist; EInOutError when the file or a record
  /// can't be read, a part is malformed or a coordinate is not finite as a 32-bit float;
  /// Exception when it holds points, lines, multipoints or multipatches, not polygons.
  TPolyMap(const std::string& ShpFile, TColor color);
  /// Not copyable.
  TPolyMap(const TPolyMap&) = delete;
  /// Not assignable.
  TPolyMap& operator=(const TPolyMap&) = delete;

  /// The number of polygon parts read. Never raises.
  int32_t GetShapeCount() const { return static_cast<int32_t>(FShapes.size()); }
  /// The map keeps ownership. An index outside 0 .. GetShapeCount() - 1, including any index of
  /// a map with no shapes, raises EListError.
  TSHPPolygon* GetShape(int32_t index);
  /// As the other form. Raises EListError outside 0 .. GetShapeCount() - 1.
  const TSHPPolygon* GetShape(int32_t index) const;

  /// ShpFile as given. Never raises.
  const std::string& FileName() const { return FFileName; }
  /// The color given at construction. Never raises.
  TColor Color() const { return FColor; }

 private:
  void CheckIndex(int32_t index) const;

  std::string FFileName;
  TColor FColor;
  std::vector<TSHPPolygon> FShapes;
};

}  // namespace zephra
