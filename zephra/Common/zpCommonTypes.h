#pragma once
/// @file
/// The value types that every part of the library shares: cell and file kinds, ranges, points,
/// the array types and colours. Plain values only: nothing here allocates behind the caller's
/// back or raises.

#include <cstdint>
#include <vector>

/// Everything of the library: rasters and their headers, vector layers, palettes, exporters.
namespace zephra {

/// A 32-bit IEEE float: every cell value crosses a class boundary in this type.
using Single = float;

/// The stored type of a raster's cells. The ordinals are those of the .doc reader and writer.
enum TDataType : uint8_t {
  dtReal,      ///< 32-bit floats ("real").
  dtInteger,   ///< 16-bit signed integers ("integer").
  dtByte,      ///< Unsigned bytes ("byte").
  dtInteger32  ///< 32-bit signed integers ("integer32").
};

/// The form of a raster's data file.
enum TFileType : uint8_t {
  ftAscii,  ///< A text data file.
  ftBinary  ///< A headerless run of little-endian cells (.img).
};

/// What the features of a vector layer are.
enum TLayerType : uint8_t {
  ltNull,    ///< Unknown; a layer of this type can't be loaded.
  ltPoint,   ///< Points.
  ltLine,    ///< Lines.
  ltPolygon  ///< Polygons, with holes after ring separators.
};

/// A closed value range.
struct TRange {
  float Min;  ///< Lowest value.
  float Max;  ///< Highest value.
};

/// A planar point.
struct TFloatPoint {
  float X;  ///< X coordinate; the longitude on a lat/long map.
  float Y;  ///< Y coordinate; the latitude on a lat/long map.
  /// The point (X, Y). Never raises.
  static TFloatPoint Create(float X, float Y) { return TFloatPoint{X, Y}; }
};

using TSingleArray = std::vector<float>;            ///< Zero-based array of 32-bit floats.
using TByteArray = std::vector<uint8_t>;            ///< Zero-based array of bytes.
using TSmallIntArray = std::vector<int16_t>;        ///< Zero-based array of 16-bit integers.
using TIntegerArray = std::vector<int32_t>;         ///< Zero-based array of 32-bit integers.
using TFloatPointArray = std::vector<TFloatPoint>;  ///< Zero-based array of points.

/// A colour: red in the low byte, green in the next, blue in the third.
using TColor = uint32_t;

}  // namespace zephra
