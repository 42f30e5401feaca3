#pragma once
// The value types that every part of the library shares: cell and file kinds, ranges, points,
// the array types and colours.

#include <cstdint>
#include <vector>

namespace zephra {

using Single = float;

enum TDataType : uint8_t { dtReal, dtInteger, dtByte, dtInteger32 };
enum TFileType : uint8_t { ftAscii, ftBinary };
enum TLayerType : uint8_t { ltNull, ltPoint, ltLine, ltPolygon };

struct TRange {
  float Min;
  float Max;
};

struct TFloatPoint {
  float X;
  float Y;
  static TFloatPoint Create(float X, float Y) { return TFloatPoint{X, Y}; }
};

using TSingleArray = std::vector<float>;
using TByteArray = std::vector<uint8_t>;
using TSmallIntArray = std::vector<int16_t>;
using TIntegerArray = std::vector<int32_t>;
using TFloatPointArray = std::vector<TFloatPoint>;

// Red in the low byte, green in the next, blue in the third.
using TColor = uint32_t;

}  // namespace zephra
