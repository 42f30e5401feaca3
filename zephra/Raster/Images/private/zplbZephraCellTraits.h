#pragma once
// What sets the four typed images apart: their names, the header's data type, the value of a new
// cell, and the conversion of a cell to and from the Single that every caller sees.

#include <cstdint>
#include <type_traits>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpSpatialConst.h>

namespace zephra {

template <typename TCell>
struct TCellTraits;

template <>
struct TCellTraits<float> {
  static constexpr const char* ClassName = "TRealImage";
  static constexpr const char* TypeID = "REAL";
  static constexpr TDataType DataType = dtReal;
  static constexpr float NewCell = TSpatialConst::MissingValue;
};

template <>
struct TCellTraits<uint8_t> {
  static constexpr const char* ClassName = "TByteImage";
  static constexpr const char* TypeID = "BYTE";
  static constexpr TDataType DataType = dtByte;
  static constexpr uint8_t NewCell = 0;
};

template <>
struct TCellTraits<int16_t> {
  static constexpr const char* ClassName = "TIntegerImage";
  static constexpr const char* TypeID = "INT";
  static constexpr TDataType DataType = dtInteger;
  static constexpr int16_t NewCell = 0;
};

template <>
struct TCellTraits<int32_t> {
  static constexpr const char* ClassName = "TInteger32Image";
  static constexpr const char* TypeID = "INT32";
  static constexpr TDataType DataType = dtInteger32;
  static constexpr int32_t NewCell = 0;
};

// val rounded to the nearest integer, ties to even. Raises EMathError for a value with no 64-bit
// integer form: NaN, an infinity, or a magnitude of 2^63 and more.
int64_t RoundToInt64(float val);

// Integer cells keep the low bits of the rounded value, with no clamping: 300 in a byte is 44.
template <typename TCell>
TCell CellFromSingle(float val) {
  if constexpr (std::is_floating_point_v<TCell>) {
    return val;
  } else {
    return static_cast<TCell>(RoundToInt64(val));
  }
}

// Bytes and 16-bit values are exact; 32-bit integers round to the nearest float, ties to even.
template <typename TCell>
float CellToSingle(TCell cell) {
  return static_cast<float>(cell);
}

}  // namespace zephra
