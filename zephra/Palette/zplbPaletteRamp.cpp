#include <zephra/Palette/zplbPaletteRamp.h>

#include <algorithm>
#include <cmath>
#include <string>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpSpatialConst.h>

namespace zephra {

namespace {

const TZephraPalFile& CheckedPalette(const TZephraPalFile* palette) {
  if (palette == nullptr) {
    throw EArgumentNullException("A palette ramp needs a palette");
  }
  return *palette;
}

TRange CheckedRange(TRange range) {
  if (!std::isfinite(range.Min) || !std::isfinite(range.Max) || range.Min > range.Max) {
    throw EArgumentException("Invalid value range for a palette ramp: " +
                             std::to_string(range.Min) + " to " + std::to_string(range.Max));
  }
  return range;
}

double EntriesPerUnit(TRange range, size_t count) {
  const double span = double{range.Max} - double{range.Min};
  return span > 0.0 ? static_cast<double>(count) / span : 0.0;
}

}  // namespace

TPaletteRamp::TPaletteRamp(const TZephraPalFile* palette, TRange range, TColor noDataColor,
                           std::optional<float> flagValue)
    : FColors(CheckedPalette(palette).Colors()),
      FMin(CheckedRange(range).Min),
      FScale(EntriesPerUnit(range, FColors.size())),
      FNoDataColor(noDataColor),
      FFlagValue(flagValue) {}

bool TPaletteRamp::IsNoData(float value) const {
  return !TSpatialConst::IsValue(value) || (FFlagValue && value <= *FFlagValue);
}

int32_t TPaletteRamp::IndexOf(float value) const {
  if (IsNoData(value)) {
    return -1;
  }
  // Clamped while still a double: far outside a narrow range the class number overflows any
  // integer.
  const double position = std::floor((double{value} - FMin) * FScale);
  return static_cast<int32_t>(std::clamp(position, 0.0, static_cast<double>(Count() - 1)));
}

TColor TPaletteRamp::ColorOf(float value) const {
  const int32_t index = IndexOf(value);
  return index < 0 ? FNoDataColor : FColors[static_cast<size_t>(index)];
}

}  // namespace zephra
