#pragma once
// The window around a point of a row inside which the rounded crossings of a ring's edges are
// not trusted: a crossing rounded to below LowKey lies exactly left of the point, one rounded to
// above HighKey exactly right of it. The point test and the run search share these, so that both
// take the exact test for the same crossings.

#include <bit>
#include <cstdint>
#include <limits>

namespace zephra {

// The next double towards -inf or +inf of a finite value; std::nextafter, but inline, as the run
// search asks for it at every step of its binary searches.
inline double StepOut(double value, bool up) {
  if (value == 0.0) {
    const double tiny = std::numeric_limits<double>::denorm_min();
    return up ? tiny : -tiny;
  }
  const auto bits = std::bit_cast<uint64_t>(value);
  return std::bit_cast<double>((value > 0.0) == up ? bits + 1 : bits - 1);
}

// The keys step one double outward, so that rounding in x -/+ bound cannot narrow the window.
inline double LowKey(float x, double bound) {
  return StepOut(static_cast<double>(x) - bound, false);
}

inline double HighKey(float x, double bound) {
  return StepOut(static_cast<double>(x) + bound, true);
}

}  // namespace zephra
