#pragma once
// A vector layer and its coordinate file: TGeoPoint (a vertex), TFeature (a point, line or
// polygon with an id), TVector (the layer, with its TVectorHeader), and the geometry on them.
//
// A polygon keeps all its rings in one vertex list. A vertex at exactly (0, 0) is a ring
// separator, not a coordinate: the vertices before the first separator are the outer ring, those
// after each separator a hole. Rings are stored closed, their first vertex repeated at the end.

#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExceptions.h>
#include <zephra/Vector/zpVectorFileHeader.h>

namespace zephra {

class TGeoPoint {
 public:
  TGeoPoint() = default;
  TGeoPoint(float xIn, float yIn) : FX(xIn), FY(yIn) {}

  float X() const { return FX; }
  void SetX(float Value) { FX = Value; }
  float Y() const { return FY; }
  void SetY(float Value) { FY = Value; }

 private:
  float FX = 0.0f;
  float FY = 0.0f;
};

using TPointList = std::vector<TGeoPoint>;

// A vertex at exactly (0, 0) ends one ring of a polygon.
inline bool IsRingSeparator(const TGeoPoint& point) {
  return point.X() == 0.0f && point.Y() == 0.0f;
}

class TFeature {
 public:
  explicit TFeature(float id_In) : Id(id_In) {}

  float Id;
  // Ring separators among the vertices, counted by the file readers of polygon layers only.
  int32_t NumOfHoles = 0;

  // Frees the vertices; the id, the hole count and the selection mark stay.
  void Clear() { FPoints.clear(); }
  // Appends a vertex; the hole count is left to the caller.
  void AddPoint(float x, float y) { FPoints.emplace_back(x, y); }

  // The vertex at a zero-based index, still owned by the feature and valid until the vertex list
  // changes; a bad index raises EListError.
  TGeoPoint* GetPoint(int32_t ind);
  const TGeoPoint* GetPoint(int32_t ind) const;
  TGeoPoint* Points(int32_t ind) { return GetPoint(ind); }
  const TGeoPoint* Points(int32_t ind) const { return GetPoint(ind); }
  TGeoPoint* operator[](int32_t ind) { return GetPoint(ind); }
  const TGeoPoint* operator[](int32_t ind) const { return GetPoint(ind); }

  int32_t GetCount() const { return static_cast<int32_t>(FPoints.size()); }
  int32_t Count() const { return GetCount(); }
  bool Selected() const { return FSelected; }
  void SetSelected(const bool Value) { FSelected = Value; }

 private:
  friend class TVector;  // the readers and the geometry walk the vertices directly

  TPointList FPoints;
  bool FSelected = false;
};

using TFeatureList = std::vector<std::unique_ptr<TFeature>>;

class TVector {
 public:
  TVector();
  explicit TVector(TLayerType layerTypeIn);
  TVector(const TVector&) = delete;
  TVector& operator=(const TVector&) = delete;
  ~TVector();

  // A new layer loaded from the coordinate file vectorFN and the .dvc beside it.
  static std::unique_ptr<TVector> Open(const std::string& vectorFN);

  // Frees all features; the extent, the header, FileName and WrittenTo stay.
  void Clear();
  int32_t GetCount() const { return static_cast<int32_t>(FFeatures.size()); }
  int32_t Count() const { return GetCount(); }
  // The feature at a zero-based index, still owned by the layer; a bad index raises EListError.
  TFeature* GetFeature(int32_t ind);
  const TFeature* GetFeature(int32_t ind) const;
  TFeature* Features(int32_t ind) { return GetFeature(ind); }
  const TFeature* Features(int32_t ind) const { return GetFeature(ind); }
  TFeature* operator[](int32_t ind) { return GetFeature(ind); }
  const TFeature* operator[](int32_t ind) const { return GetFeature(ind); }

  TVectorHeader* Header() { return FHeader.get(); }
  const TVectorHeader* Header() const { return FHeader.get(); }
  // Takes the header over; a null header raises EArgumentNullException.
  void SetHeader(std::unique_ptr<TVectorHeader>&& headerIn);

  // Widens the extent by the feature's vertices and takes it over. A feature without vertices
  // raises EVectorFileError and stays the caller's.
  void AddFeature(std::unique_ptr<TFeature>&& feature);

  // Reads the .dvc beside FileName, then appends the coordinate file's features.
  void LoadFromFile(const std::string& FileName);
  // Appends the features of a coordinate file in the form the loaded header names.
  void LoadFromStream(std::istream& Stream);
  // Writes both files under FileName, once a feature has been added.
  void Save();
  void SaveAs(const std::string& fileNameIn);
  // Writes the coordinates in the text form, then the .dvc beside them.
  void SaveToFile(const std::string& FileName);
  // Writes the coordinates in the text form; the header's file type becomes "ASCII".
  void SaveToStream(std::ostream& Stream);

  // Selection marks; SelectFeature raises EVectorFileError for an index outside the list.
  void SelectFeature(int32_t nFeature);
  void SelectAll();
  void ClearSelect();
  // The feature at a position: in a point layer the one with the nearest vertex, in a polygon
  // layer the last one that holds it; 0 otherwise, and -1 for a layer without features.
  int32_t FindNearest(float x, float y) const;
  int32_t SelectNearest(float x, float y);
  // Whether polygon ind holds the position, its holes considered.
  bool PointInPoly(float x, float y, int32_t ind) const;
  // The signed area: positive for an outer ring turning clockwise, holes counted with the
  // opposite sign. Fewer than 3 vertices raise EImageFileError.
  double CalcArea(const TFeature* Polygon) const;
  // The centroid: the moments come from the vertices before the first separator, the area sum
  // from all rings, holes subtracted. Fewer than 3 vertices, or an area sum of 0, raise
  // EImageFileError.
  TFloatPoint CalcCentroid(const TFeature* Polygon) const;

  TLayerType LayerType = ltNull;
  float MinX = 0.0f;
  float MaxX = 0.0f;
  float MinY = 0.0f;
  float MaxY = 0.0f;
  // The coordinate file's path, not the .dvc's.
  std::string FileName;
  // True once a feature was added; Save acts only then.
  bool WrittenTo = false;

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
