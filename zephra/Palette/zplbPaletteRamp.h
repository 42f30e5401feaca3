#pragma once
// Maps cell values onto the entries of a colour table, the way pictures of a raster colour
// it: the range Min .. Max is cut into as many equal classes as the table has entries, values
// beyond the range take the first or last entry, and no-data cells take a colour of their own.

#include <cstdint>
#include <optional>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Palette/zplbZephraPalFile.h>

namespace zephra {

class TPaletteRamp {
 public:
  // Copies the palette's table as it stands, so later changes to the palette don't reach the
  // ramp. No data is what the library itself treats as no value (NaN, infinities, -9990 and
  // below) and, when flagValue is given, anything at or below it, as a raster's header flag
  // declares. A range that is not finite or whose Min lies above its Max raises
  // EArgumentException; Min equal to Max puts every value in the first entry.
  TPaletteRamp(const TZephraPalFile* palette, TRange range, TColor noDataColor,
               std::optional<float> flagValue = std::nullopt);

  bool IsNoData(float value) const;
  // The entry that value falls into, or -1 for no data.
  int32_t IndexOf(float value) const;
  TColor ColorOf(float value) const;

  int32_t Count() const { return static_cast<int32_t>(FColors.size()); }
  TColor NoDataColor() const { return FNoDataColor; }

 private:
  TColorArray FColors;
  double FMin;
  double FScale;  // entries per unit of value; 0 for a range of one value
  TColor FNoDataColor;
  std::optional<float> FFlagValue;
};

}  // namespace zephra
