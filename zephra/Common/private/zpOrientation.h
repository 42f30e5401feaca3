#pragma once
// The exact turn of three points: the one geometric decision that point-in-polygon tests make,
// taken without rounding error so that a point on an edge is found on it, whatever the magnitude
// of the coordinates.

#include <zephra/Common/zpCommonTypes.h>

namespace zephra {

// The exact sign of the cross product (b - a) x (c - a): 1 when c lies left of the directed line
// from a to b, -1 when it lies right of it, 0 when the three points are collinear (two equal
// points are collinear with any third). Coordinates must be finite.
//
// Why it is exact: the cross product expands into six products of two floats, and each of these
// is exact in a double (24-bit significands give a 48-bit product; float exponents stay far
// inside the double range). A plain double sum of the six decides the sign whenever it exceeds
// a rigorous bound on its rounding error; otherwise the six are summed without error into a
// floating-point expansion, whose largest non-zero component carries the sign. Needs IEEE
// double arithmetic rounding to nearest, without -ffast-math; contracted multiply-adds cannot
// change a result, because every product is exact anyway.
int Orientation(TFloatPoint a, TFloatPoint b, TFloatPoint c);

}  // namespace zephra
