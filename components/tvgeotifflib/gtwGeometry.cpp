#include "gtwGeometry.h"

#include <array>
#include <charconv>

namespace tvgeotifflib {

double WidenAsWritten(float value) {
  std::array<char, 64> text{};
  const auto written = std::to_chars(text.data(), text.data() + text.size(), value);
  double widened = value;
  std::from_chars(text.data(), written.ptr, widened);
  return widened;
}

}  // namespace tvgeotifflib
