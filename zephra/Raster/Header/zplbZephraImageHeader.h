#pragma once
/// @file
/// TImageHeader: the metadata record of a raster and its .doc text form (reader, writer, report),
/// with the geometry and unit arithmetic on it. Every raster class owns or borrows one; hosts read
/// and assign its public fields directly.

#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpExport.h>

namespace zephra {

/// The metadata of a raster: size, cell type, data file form, map bounds, value range, no-data
/// flag, legend and notes. Its .doc text names the keys; a load overlays the fields it finds.
class ZEPHRA_API TImageHeader {
 public:
  /// Defaults: "Unspecified" units, "Missing data" flag text, unit distance 1, everything else
  /// zero or empty. Never raises.
  TImageHeader();
  /// Equal to Source in every field, FileName included, with a legend of its own. Never raises.
  TImageHeader(const TImageHeader& Source);
  /// Not assignable: Copy() says which fields move.
  TImageHeader& operator=(const TImageHeader&) = delete;
  /// Frees the legend; writes nothing.
  ~TImageHeader() = default;

  /// A new header loaded from the .doc beside imageFN (any extension, or none). Raises as
  /// LoadFromFile(); the half-made header is freed.
  static std::unique_ptr<TImageHeader> Open(const std::string& imageFN);

  /// Reads the .doc beside FileName; the field FileName takes the .doc name first, so it holds it
  /// also after a failure. Raises EFOpenError when the .doc can't be opened, EInOutError when it
  /// can't be read, and what LoadFromStream() raises.
  void LoadFromFile(const std::string& FileName);
  /// Reads header text from the stream's position to its end, over the current fields; the legend
  /// grows. Raises EConvertError for a "columns", "rows", "unit dist.", bound, "min. value" or
  /// "max. value" that is no number; Exception "Unknown data type: <value>" or "Unknown file type:
  /// <value>" for a word it doesn't know; Exception "Header doesn't contain required Width or
  /// Height value" when either is 0 at the end; EImageFileError for a legend count beyond what an
  /// open may allocate. Fields read before a failure stay set.
  void LoadFromStream(std::istream& Stream);

  /// Writes the .doc text. A name with an extension other than .doc never replaces that file: the
  /// header goes beside it under the .doc name. The field FileName takes the ".DOC" form of the
  /// name, also when the save fails. The old .doc stays whole until the new one is complete on the
  /// disk; raises EInOutError when it can't be written (and leaves it as it was), and what
  /// SaveToStream() raises.
  void SaveToFile(const std::string& FileName);
  /// Exactly SaveToFile(imageFN).
  void SaveAs(const std::string& imageFN);
  /// Writes the .doc lines at the stream's position; the stream stays the caller's. Raises
  /// EImageHeaderError "Unknown Image Header DataType" or Exception "Unknown File Type" for a
  /// DataType or FileType outside its enumeration, EMathError when Width is 0 (the resolution
  /// line divides by it), EInOutError when the stream fails. Lines before a failure stay written.
  void SaveToStream(std::ostream& Stream) const;

  /// The printed report: the lines of the .doc in display form. Raises as SaveToStream() for a
  /// bad DataType, FileType or a Width of 0.
  std::string Text() const;
  /// Text(), under its accessor's name.
  std::string GetHeaderText() const { return Text(); }

  /// Copies most fields into an existing header; FileName, ValueUnits, FlagDef and UnitDistance of
  /// headerOut stay, and its legend is replaced. Copying onto itself does nothing. Raises
  /// EArgumentNullException when headerOut is null.
  void Copy(TImageHeader* headerOut) const;

  /// True when the reference system is "Latlon", in any letter case.
  bool IsLatLon() const { return FIsLatLon; }
  /// True when the reference system is "Plane", in any letter case.
  bool IsPlane() const { return FIsPlane; }
  /// The reference system's name, trimmed.
  const std::string& RefSystem() const { return FRefSystem; }
  /// Trims the name and derives IsLatLon() and IsPlane() from it; any other name is kept as text
  /// and looked up nowhere. Never raises.
  void SetRefSystem(const std::string& RefSystem);

  /// Minx <= x <= Maxx, both ends closed. Never raises.
  bool WithinXRange(float x) const;
  /// Miny <= y <= Maxy, both ends closed. Never raises.
  bool WithinYRange(float y) const;
  /// Both range tests. Never raises.
  bool PointWithin(float X, float Y) const;
  /// Width, Height and the four bounds exactly equal. Raises EArgumentNullException when
  /// compareHeader is null.
  bool CompareDimensions(const TImageHeader* compareHeader) const;
  /// Width and Height exactly equal, the bounds within max(0.0001, 0.0001 x the smaller
  /// magnitude). Raises EArgumentNullException when Header is null.
  bool EqualsBounds(const TImageHeader* Header) const;
  /// MinValue and MaxValue become the range's ends. Never raises.
  void SetRange(const TRange& range);
  /// A lat/long raster that runs past 180 degrees east (Maxx above 180). Never raises.
  bool RequiresLongitudeTranslation() const;
  /// RequiresLongitudeTranslation(), under its accessor's name.
  bool GetRequiresLongitudeTranslation() const { return RequiresLongitudeTranslation(); }

  std::string FileName;                    ///< The header file's own path; set by load and save.
  std::string FileTitle;                   ///< Title of the raster ("file title").
  std::string RefUnits = "Unspecified";    ///< Unit of the map coordinates; see UnitDistanceM().
  std::string ValueUnits = "Unspecified";  ///< Unit of the cell values; see ValueUnitsM().
  std::string FlagDef = "Missing data";    ///< What the flag value means.
  TDataType DataType = dtReal;             ///< Stored cell type.
  TFileType FileType = ftAscii;            ///< Form of the data file.
  int32_t Width = 0;                       ///< Number of columns; non-zero after a load.
  int32_t Height = 0;                      ///< Number of rows; non-zero after a load.
  float UnitDistance = 1.0f;               ///< Length of one coordinate unit, in RefUnits.
  float ResolutionX = 0.0f;                ///< Cell width; derived from the bounds by a load.
  float ResolutionY = 0.0f;                ///< Cell height; derived from the bounds by a load.
  float MinValue = 0.0f;                   ///< Smallest cell value.
  float MaxValue = 0.0f;                   ///< Largest cell value.
  float Minx = 0.0f;                       ///< West map bound.
  float Maxx = 0.0f;                       ///< East map bound.
  float Miny = 0.0f;                       ///< South map bound.
  float Maxy = 0.0f;                       ///< North map bound.
  float FlagValue = 0.0f;                  ///< The no-data value; meaningful while Flag is true.
  bool Flag = false;                       ///< The header declares a no-data value.
  std::vector<std::string> Categories;     ///< Legend texts, in file order.
  std::string Comment;                     ///< Free text.
  std::string Lineage;                     ///< Free text.
  std::string Completeness;                ///< Free text.
  std::string Consistency;                 ///< Free text.

 private:
  bool FIsLatLon = false;
  bool FIsPlane = false;
  std::string FRefSystem;
};

/// Great-circle distance in kilometres between two points given in degrees, on a sphere of radius
/// 6371.2 km. Never raises.
ZEPHRA_API float LatLonDistance(float lat1, float lon1, float lat2, float lon2);
/// Ground length of header->UnitDistance in metres, for RefUnits M, KM, FT, MI, DEG or RAD in any
/// letter case. Raises EImageHeaderError "Unknown units in .doc file, can't convert to metres"
/// for any other unit, EArgumentNullException when header is null.
ZEPHRA_API float UnitDistanceM(const TImageHeader* header);
/// Metres per unit of header->ValueUnits (M, KM, FT or MI in any letter case). Raises
/// EImageHeaderError "Can't convert value units in .doc file to metres" for any other unit,
/// EArgumentNullException when header is null.
ZEPHRA_API float ValueUnitsM(const TImageHeader* header);

}  // namespace zephra
