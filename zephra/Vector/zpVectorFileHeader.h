#pragma once
/// @file
/// TVectorHeader: the documentation record of a vector layer, kept in a .dvc text file beside the
/// layer's coordinate file. It stores almost everything as text and validates nothing.

#include <istream>
#include <ostream>
#include <span>
#include <string>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExport.h>

namespace zephra {

/// The .dvc header of a vector layer: thirteen keys, kept as text except the unit distance and
/// the extent. TVector reads its file type and layer type and writes its extent back on save.
class ZEPHRA_API TVectorHeader {
 public:
  /// Every text empty, every number 0. Never raises.
  TVectorHeader() = default;

  /// Raises EFOpenError for a missing or unreadable file, and what LoadFromStream() raises.
  void LoadFromFile(const std::string& FileName);
  /// Forgets all fields, then takes every known key up to the end of the stream; later lines win.
  /// A number that does not convert raises EConvertError and leaves the fields read before it.
  void LoadFromStream(std::istream& Stream);
  /// Writes the thirteen lines; a file that can't be created or written raises EInOutError.
  void SaveToFile(const std::string& FileName) const;
  /// Writes the thirteen lines at the stream's position, numbers with four decimals. Raises
  /// EInOutError when the stream fails.
  void SaveToStream(std::ostream& Stream) const;

  /// Reference system name; decides IsLatLon().
  const std::string& RefSystem() const { return FRefSystem; }
  void SetRefSystem(const std::string& Value) { FRefSystem = Value; }  ///< Sets RefSystem().
  /// Unit distance ("unit dist.").
  float UnitDist() const { return FUnitDist; }
  void SetUnitDist(float Value) { FUnitDist = Value; }  ///< Sets UnitDist().
  /// Id type, as text.
  const std::string& IDType() const { return FIDType; }
  void SetIDType(const std::string& Value) { FIDType = Value; }  ///< Sets IDType().
  /// Reference units, as text.
  const std::string& RefUnits() const { return FRefUnits; }
  void SetRefUnits(const std::string& Value) { FRefUnits = Value; }  ///< Sets RefUnits().
  /// Resolution, as text.
  const std::string& Resolution() const { return FResolution; }
  void SetResolution(const std::string& Value) { FResolution = Value; }  ///< Sets Resolution().
  /// Positional error ("pos'n error"), as text.
  const std::string& PosNError() const { return FPosNError; }
  void SetPosNError(const std::string& Value) { FPosNError = Value; }  ///< Sets PosNError().
  /// File title.
  const std::string& Title() const { return FTitle; }
  void SetTitle(const std::string& Value) { FTitle = Value; }  ///< Sets Title().
  /// East end of the extent, as the file said or the last save wrote.
  float MaxX() const { return FMaxX; }
  void SetMaxX(float Value) { FMaxX = Value; }  ///< Sets MaxX().
  /// North end of the extent.
  float MaxY() const { return FMaxY; }
  void SetMaxY(float Value) { FMaxY = Value; }  ///< Sets MaxY().
  /// Feature kind as text; decides LayerType().
  const std::string& ObjectType() const { return FObjType; }
  void SetObjectType(const std::string& Value) { FObjType = Value; }  ///< Sets ObjectType().
  /// Form of the coordinate file: "BINARY" in any letter case for binary, anything else text.
  const std::string& FileType() const { return FFileType; }
  void SetFileType(const std::string& Value) { FFileType = Value; }  ///< Sets FileType().
  /// West end of the extent.
  float MinX() const { return FMinX; }
  void SetMinX(float Value) { FMinX = Value; }  ///< Sets MinX().
  /// South end of the extent.
  float MinY() const { return FMinY; }
  void SetMinY(float Value) { FMinY = Value; }  ///< Sets MinY().

  /// True for the reference systems "latlong", "latlon" and "lat/long" in any letter case.
  bool IsLatLon() const { return GetIsLatLon(); }
  /// IsLatLon(), under its accessor's name. Never raises.
  bool GetIsLatLon() const;

  /// Read from and written to the object type text; unknown text reads as ltNull.
  TLayerType LayerType() const { return GetLayerType(); }
  /// LayerType(), under its accessor's name: "POINT", "LINE" or "POLYGON" in any letter case.
  /// Never raises.
  TLayerType GetLayerType() const;
  /// Stores "POINT", "LINE", "POLYGON", or "NULL" for any other value. Never raises.
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
