#pragma once
// TVectorHeader: the documentation record of a vector layer, kept in a .dvc text file beside the
// layer's coordinate file. It stores almost everything as text and validates nothing.

#include <istream>
#include <ostream>
#include <span>
#include <string>

#include <zephra/Common/zpCommonTypes.h>

namespace zephra {

class TVectorHeader {
 public:
  // Every text empty, every number 0.
  TVectorHeader() = default;

  // A missing or unreadable file raises EFOpenError.
  void LoadFromFile(const std::string& FileName);
  // Forgets all fields, then takes every known key up to the end of the stream. A number that
  // does not convert raises EConvertError and leaves the fields read before it.
  void LoadFromStream(std::istream& Stream);
  // Writes the thirteen lines; a file that can't be created or written raises EInOutError.
  void SaveToFile(const std::string& FileName) const;
  void SaveToStream(std::ostream& Stream) const;

  const std::string& RefSystem() const { return FRefSystem; }
  void SetRefSystem(const std::string& Value) { FRefSystem = Value; }
  float UnitDist() const { return FUnitDist; }
  void SetUnitDist(float Value) { FUnitDist = Value; }
  const std::string& IDType() const { return FIDType; }
  void SetIDType(const std::string& Value) { FIDType = Value; }
  const std::string& RefUnits() const { return FRefUnits; }
  void SetRefUnits(const std::string& Value) { FRefUnits = Value; }
  const std::string& Resolution() const { return FResolution; }
  void SetResolution(const std::string& Value) { FResolution = Value; }
  const std::string& PosNError() const { return FPosNError; }
  void SetPosNError(const std::string& Value) { FPosNError = Value; }
  const std::string& Title() const { return FTitle; }
  void SetTitle(const std::string& Value) { FTitle = Value; }
  float MaxX() const { return FMaxX; }
  void SetMaxX(float Value) { FMaxX = Value; }
  float MaxY() const { return FMaxY; }
  void SetMaxY(float Value) { FMaxY = Value; }
  const std::string& ObjectType() const { return FObjType; }
  void SetObjectType(const std::string& Value) { FObjType = Value; }
  const std::string& FileType() const { return FFileType; }
  void SetFileType(const std::string& Value) { FFileType = Value; }
  float MinX() const { return FMinX; }
  void SetMinX(float Value) { FMinX = Value; }
  float MinY() const { return FMinY; }
  void SetMinY(float Value) { FMinY = Value; }

  // True for the reference systems "latlong", "latlon" and "lat/long" in any letter case.
  bool IsLatLon() const { return GetIsLatLon(); }
  bool GetIsLatLon() const;

  // Read from and written to the object type text; unknown text reads as ltNull.
  TLayerType LayerType() const { return GetLayerType(); }
  TLayerType GetLayerType() const;
  void SetLayerType(TLayerType Value);

 private:
  struct TField;  // one line of the .dvc text
  static std::span<const TField> Fields();

  void Reset();

  std::string FRefSystem;
  float FUnitDist = 0.0f;
  std::string FIDType;
  std::string FRefUnits;
  std::string FResolution;
  std::string FPosNError;
  std::string FTitle;
  float FMaxX = 0.0f;
  float FMaxY = 0.0f;
  std::string FObjType;
  std::string FFileType;
  float FMinX = 0.0f;
  float FMinY = 0.0f;
};

}  // namespace zephra
