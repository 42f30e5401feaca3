#pragma once
// TImageHeader: the metadata record of a raster and its .doc text form (reader, writer, report),
// with the geometry and unit arithmetic on it.

#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExceptions.h>

namespace zephra {

class TOutputFile;

class TImageHeader {
 public:
  // Defaults: "Unspecified" units, "Missing data" flag text, unit distance 1, everything else
  // zero or empty.
  TImageHeader();
  // Equal to Source in every field, with a legend of its own.
  TImageHeader(const TImageHeader& Source);
  TImageHeader& operator=(const TImageHeader&) = delete;
  ~TImageHeader() = default;

  // A new header loaded from the .doc beside imageFN (any extension, or none).
  static std::unique_ptr<TImageHeader> Open(const std::string& imageFN);

  // Reads the .doc beside FileName; the field FileName takes the .doc name first.
  void LoadFromFile(const std::string& FileName);
  // Reads header text from the stream's position to its end, over the current fields.
  void LoadFromStream(std::istream& Stream);

  // Writes the .doc text. A name with an extension other than .doc never replaces that file:
  // the header goes beside it under the .doc name. The old .doc stays whole until the new one is
  // complete on the disk; a failure raises EInOutError and leaves it as it was.
  void SaveToFile(const std::string& FileName);
  void SaveAs(const std::string& imageFN);
  // The .doc text into a replacement that the caller commits together with other files (the
  // raster write-back); the field FileName takes the ".DOC" form of imageFN as in SaveToFile.
  void SaveToOutput(TOutputFile& File, const std::string& imageFN);
  void SaveToStream(std::ostream& Stream) const;

  // The printed report.
  std::string Text() const;
  std::string GetHeaderText() const { return Text(); }

  // Copies most fields into an existing header; FileName, ValueUnits, FlagDef and UnitDistance of
  // headerOut stay.
  void Copy(TImageHeader* headerOut) const;

  bool IsLatLon() const { return FIsLatLon; }
  bool IsPlane() const { return FIsPlane; }
  const std::string& RefSystem() const { return FRefSystem; }
  void SetRefSystem(const std::string& RefSystem);

  bool WithinXRange(float x) const;
  bool WithinYRange(float y) const;
  bool PointWithin(float X, float Y) const;
  bool CompareDimensions(const TImageHeader* compareHeader) const;
  bool EqualsBounds(const TImageHeader* Header) const;
  void SetRange(const TRange& range);
  bool RequiresLongitudeTranslation() const;
  bool GetRequiresLongitudeTranslation() const { return RequiresLongitudeTranslation(); }

  std::string FileName;
  std::string FileTitle;
  std::string RefUnits = "Unspecified";
  std::string ValueUnits = "Unspecified";
  std::string FlagDef = "Missing data";
  TDataType DataType = dtReal;
  TFileType FileType = ftAscii;
  int32_t Width = 0;
  int32_t Height = 0;
  float UnitDistance = 1.0f;
  float ResolutionX = 0.0f;
  float ResolutionY = 0.0f;
  float MinValue = 0.0f;
  float MaxValue = 0.0f;
  float Minx = 0.0f;
  float Maxx = 0.0f;
  float Miny = 0.0f;
  float Maxy = 0.0f;
  float FlagValue = 0.0f;
  bool Flag = false;
  std::vector<std::string> Categories;
  std::string Comment;
  std::string Lineage;
  std::string Completeness;
  std::string Consistency;

 private:
  bool FIsLatLon = false;
  bool FIsPlane = false;
  std::string FRefSystem;
};

// Great-circle distance in kilometres on a sphere of radius 6371.2 km.
float LatLonDistance(float lat1, float lon1, float lat2, float lon2);
// Ground length of header->UnitDistance in metres.
float UnitDistanceM(const TImageHeader* header);
// Metres per unit of header->ValueUnits.
float ValueUnitsM(const TImageHeader* header);

}  // namespace zephra
