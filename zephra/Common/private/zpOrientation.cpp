#include <zephra/Common/private/zpOrientation.h>

#include <array>
#include <cmath>
#include <cstddef>

namespace zephra {

namespace {

using TTerms = std::array<double, 6>;

// Knuth's error-free sum: returns fl(a + b) and stores the exact rounding error, so that
// result + error == a + b exactly.
double TwoSum(double a, double b, double& error) {
  const double sum = a + b;
  const double bVirtual = sum - a;
  const double aVirtual = sum - bVirtual;
  error = (a - aVirtual) + (b - bVirtual);
  return sum;
}

// Adds the terms one by one into a non-overlapping expansion of increasing magnitude (each new
// term runs through the components from the smallest up and leaves behind the rounding errors).
// The components sum exactly to the terms' sum, and in a non-overlapping expansion all smaller
// components together weigh less than the largest non-zero one, which thus gives the sign.
int ExactSignOfSum(const TTerms& terms) {
  TTerms expansion{};
  std::size_t length = 0;
  for (const double term : terms) {
    double carry = term;
    for (std::size_t i = 0; i < length; ++i) {
      carry = TwoSum(carry, expansion[i], expansion[i]);
    }
    expansion[length++] = carry;
  }
  for (std::size_t i = length; i-- > 0;) {
    if (expansion[i] != 0.0) {
      return expansion[i] > 0.0 ? 1 : -1;
    }
  }
  return 0;
}

double Product(float u, float v) {
  return static_cast<double>(u) * static_cast<double>(v);
}

}  // namespace

int Orientation(TFloatPoint a, TFloatPoint b, TFloatPoint c) {
  // (bx - ax)(cy - ay) - (by - ay)(cx - ax); the two ax*ay terms cancel.
  const TTerms terms{Product(b.X, c.Y),  -Product(b.X, a.Y), -Product(a.X, c.Y),
                     -Product(b.Y, c.X), Product(b.Y, a.X),  Product(a.Y, c.X)};
  // Recursive summation of six terms errs by at most 5u/(1-5u) times the sum of their magnitudes
  // (u = 2^-53), and the computed magnitude sum falls short of the true one by at most a factor
  // (1-u)^5; 2^-50 = 8u covers both with room to spare, and scaling by a power of two is exact.
  double sum = 0.0;
  double magnitude = 0.0;
  for (const double term : terms) {
    sum += term;
    magnitude += std::fabs(term);
  }
  if (std::fabs(sum) > std::ldexp(magnitude, -50)) {
    return sum > 0.0 ? 1 : -1;
  }
  return ExactSignOfSum(terms);
}

}  // namespace zephra
