#pragma once
/// @file
/// A vector layer and its coordinate file: TGeoPoint (a vertex), TFeature (a point, line or
/// polygon with an id), TVector (the layer, with its TVectorHeader), and the geometry on them. A
/// layer on disk is the coordinate file that the caller names and a .dvc header beside it.

#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpExport.h>
#include <zephra/Vector/zpVectorFileHeader.h>

namespace zephra {

/// A vertex of a feature.
class ZEPHRA_API TGeoPoint {
 public:
  /// The vertex (0, 0), which in a polygon is a ring separator.
  TGeoPoint() = default;
  /// The vertex (xIn, yIn).
  TGeoPoint(float xIn, float yIn) : FX(xIn), FY(yIn) {}

  float X() const { return FX; }          ///< X coordinate; the longitude in a lat/long layer.
  void SetX(float Value) { FX = Value; }  ///< Sets X().
  float Y() const { return FY; }          ///< Y coordinate.
  void SetY(float Value) { FY = Value; }  ///< Sets Y().

 private:
  float FX = 0.0f;
  float FY = 0.0f;
};

/// The vertices of a feature, by value, in file order.
using TPointList = std::vector<TGeoPoint>;

/// A vertex at exactly (0, 0) ends one ring of a polygon.
inline bool IsRingSeparator(const TGeoPoint& point) {
  return point.X() == 0.0f && point.Y() == 0.0f;
}

/// A point, line or polygon with an id. A polygon keeps all its rings in one vertex list: a vertex
/// at exactly (0, 0) is a ring separator, not a coordinate; the vertices before the first
/// separator are the outer ring, those after each separator a hole. Rings are stored closed, their
/// first vertex repeated at the end.
class ZEPHRA_API TFeature {
 public:
  /// An empty feature with the id id_In, no holes, not selected.
  explicit TFeature(float id_In) : Id(id_In) {}

  /// The feature's id.
  float Id;
  /// Ring separators among the vertices, counted by the file readers of polygon layers only; a
  /// host that builds holes in memory sets it itself.
  int32_t NumOfHoles = 0;

  /// Frees the vertices; the id, the hole count and the selection mark stay. Never raises.
  void Clear() { FPoints.clear(); }
  /// Appends a vertex; the hole count is left to the caller. Never raises.
  void AddPoint(float x, float y) { FPoints.emplace_back(x, y); }

  /// The vertex at a zero-based index, still owned by the feature and valid until the vertex list
  /// changes; a bad index raises EListError.
  TGeoPoint* GetPoint(int32_t ind);
  /// GetPoint(), read-only.
  const TGeoPoint* GetPoint(int32_t ind) const;
  /// GetPoint(), under the indexed property's name.
  TGeoPoint* Points(int32_t ind) { return GetPoint(ind); }
  /// GetPoint(), read-only.
  const TGeoPoint* Points(int32_t ind) const { return GetPoint(ind); }
  /// GetPoint(), as the default indexed property.
  TGeoPoint* operator[](int32_t ind) { return GetPoint(ind); }
  /// GetPoint(), read-only.
  const TGeoPoint* operator[](int32_t ind) const { return GetPoint(ind); }

  /// Number of vertices, separators included.
  int32_t GetCount() const { return static_cast<int32_t>(FPoints.size()); }
  /// GetCount(), under the property's name.
  int32_t Count() const { return GetCount(); }
  /// The selection mark; never stored in a file.
  bool Selected() const { return FSelected; }
  /// Sets the selection mark.
  void SetSelected(const bool Value) { FSelected = Value; }

 private:
  friend class TVector;  // the readers and the geometry walk the vertices directly

  TPointList FPoints;
  bool FSelected = false;
};

/// The features of a layer, owned by it.
using TFeatureList = std::vector<std::unique_ptr<TFeature>>;

/// A vector layer: its features, its header, and its live type and extent. The header's copies of
/// type and extent are what the .dvc said at load time; SaveToFile() overwrites them. Planar
/// throughout: no great-circle arithmetic and no wrap at 360, also in a lat/long layer.
class ZEPHRA_API TVector {
 public:
  /// An empty layer of type ltNull with an empty header. Never raises.
  TVector();
  /// An empty layer of the given type; the header's object type follows at SaveToFile().
  explicit TVector(TLayerType layerTypeIn);
  /// Not copyable: the layer owns its features and header.
  TVector(const TVector&) = delete;
  /// Not assignable: the layer owns its features and header.
  TVector& operator=(const TVector&) = delete;
  /// Frees the features and the header; saves nothing.
  ~TVector();

  /// A new layer loaded from the coordinate file vectorFN and the .dvc beside it. Raises what
  /// LoadFromFile() raises; the half-loaded layer is freed.
  static std::unique_ptr<TVector> Open(const std::string& vectorFN);

  /// Frees all features; the extent, the header, FileName and WrittenTo stay. Never raises.
  void Clear();
  /// Number of features.
  int32_t GetCount() const { return static_cast<int32_t>(FFeatures.size()); }
  /// GetCount(), under the property's name.
  int32_t Count() const { return GetCount(); }
  /// The feature at a zero-based index, still owned by the layer; a bad index raises EListError.
  TFeature* GetFeature(int32_t ind);
  /// GetFeature(), read-only.
  const TFeature* GetFeature(int32_t ind) const;
  /// GetFeature(), under the indexed property's name.
  TFeature* Features(int32_t ind) { return GetFeature(ind); }
  /// GetFeature(), read-only.
  const TFeature* Features(int32_t ind) const { return GetFeature(ind); }
  /// GetFeature(), as the default indexed property.
  TFeature* operator[](int32_t ind) { return GetFeature(ind); }
  /// GetFeature(), read-only.
  const TFeature* operator[](int32_t ind) const { return GetFeature(ind); }

  /// The layer's header, still owned by the layer; never null.
  TVectorHeader* Header() { return FHeader.get(); }
  /// Header(), read-only.
  const TVectorHeader* Header() const { return FHeader.get(); }
  /// Takes the header over; a null header raises EArgumentNullException.
  void SetHeader(std::unique_ptr<TVectorHeader>&& headerIn);

  /// Widens the extent by the feature's vertices, separators included, takes it over and sets
  /// WrittenTo. A feature without vertices raises EVectorFileError "Can't add a feature with zero
  /// points" and stays the caller's; a null one raises EArgumentNullException.
  void AddFeature(std::unique_ptr<TFeature>&& feature);

  /// Stores FileName and clears WrittenTo, reads the .dvc beside FileName, then appends the
  /// coordinate file's features. Raises EVectorFileError "Vector file (<name>) does not exist" or
  /// "<.dvc name> does not exist", EFOpenError when a file can't be opened, and what the header's
  /// load and LoadFromStream() raise; the features read before a failure stay.
  void LoadFromFile(const std::string& FileName);
  /// Appends the features of a coordinate file in the form the loaded header names; a negative
  /// longitude of a lat/long layer gains 360. Raises EVectorFileError "Can't determine feature
  /// type of <FileName>" when the header names no layer type, EVectorFileError naming the line or
  /// byte of malformed data, EAssertionFailed for a binary record header cut short, EConvertError
  /// for a field that is no number.
  void LoadFromStream(std::istream& Stream);
  /// Writes both files under FileName, once a feature has been added; does nothing while
  /// WrittenTo is false. Raises EVectorFileError "A filename must be specified to save the vector
  /// file" when FileName is empty, and what SaveToFile() raises.
  void Save();
  /// FileName becomes fileNameIn, then Save().
  void SaveAs(const std::string& fileNameIn);
  /// Writes the coordinates in the text form, then the .dvc beside them with the live extent and
  /// type; the field FileName stays. Raises EInOutError when a file can't be written, and what
  /// SaveToStream() raises, leaving the .dvc untouched.
  void SaveToFile(const std::string& FileName);
  /// Writes the coordinates in the text form; the header's file type becomes "ASCII" first, also
  /// when the save then fails. Raises EVectorFileError "Vector file feature has zero points" for a
  /// feature emptied after it was added, EVectorFileError for one of more than 65535 vertices,
  /// EInOutError when the stream fails.
  void SaveToStream(std::ostream& Stream);

  /// Marks one feature; the others keep their marks. Raises EVectorFileError "Feature index out of
  /// range" for an index outside the list.
  void SelectFeature(int32_t nFeature);
  /// Marks every feature. Never raises.
  void SelectAll();
  /// Unmarks every feature. Never raises.
  void ClearSelect();
  /// The feature at a position: in a point layer the one with the nearest vertex, in a polygon
  /// layer the last one that holds it; 0 otherwise, and -1 for a layer without features. Raises
  /// only for features emptied after they were added (EListError, EVectorFileError).
  int32_t FindNearest(float x, float y) const;
  /// FindNearest(), then marks that feature unless the result is -1. Raises as FindNearest().
  int32_t SelectNearest(float x, float y);
  /// Whether polygon ind holds the position, its holes considered; a position on a ring counts as
  /// in it. Raises EVectorFileError "Layer type must be polygon for point in polygon test" unless
  /// LayerType is ltPolygon, EListError for a bad ind, EVectorFileError "No points in feature".
  bool PointInPoly(float x, float y, int32_t ind) const;
  /// The signed area: positive for an outer ring turning clockwise, holes counted with the
  /// opposite sign. Fewer than 3 vertices raise EImageFileError "Area can not be calculated. Check
  /// file to make sure it includes a closed area."; a null Polygon EArgumentNullException.
  double CalcArea(const TFeature* Polygon) const;
  /// The centroid: the moments come from the vertices before the first separator, the area sum
  /// from all rings, holes subtracted. Fewer than 3 vertices raise EImageFileError "The Centroid
  /// can not be calculated. make sure the file includes a closed area.", an area sum of 0 another
  /// EImageFileError, a null Polygon EArgumentNullException.
  TFloatPoint CalcCentroid(const TFeature* Polygon) const;

  TLayerType LayerType = ltNull;  ///< What the features are; the live value.
  float MinX = 0.0f;              ///< West end of the extent of all vertices so far.
  float MaxX = 0.0f;              ///< East end of the extent.
  float MinY = 0.0f;              ///< South end of the extent.
  float MaxY = 0.0f;              ///< North end of the extent.
  std::string FileName;           ///< The coordinate file's path, not the .dvc's.
  bool WrittenTo = false;         ///< True once a feature was added; Save() acts only then.

 private:
  void LoadText(std::istream& Stream);
  void LoadBinary(std::istream& Stream);
  // Shifts a negative longitude of a lat/long layer by 360, appends the vertex, and counts it as
  // a hole when it separates the rings of a polygon.
  void AddLoadedVertex(TFeature& feature, float x, float y, bool isLatLon) const;

  TFeatureList FFeatures;
  std::unique_ptr<TVectorHeader> FHeader;
};

}  // namespace zephra
