#pragma once
/// @file
/// Maps cell values onto the entries of a colour table, the way pictures of a raster colour it:
/// the range Min .. Max is cut into as many equal classes as the table has entries, values beyond
/// the range take the first or last entry, and no-data cells take a colour of their own.

#include <cstdint>
#include <optional>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExport.h>
#include <zephra/Palette/zplbZephraPalFile.h>

namespace zephra {

/// A value-to-colour mapping over a snapshot of a palette.
class ZEPHRA_API TPaletteRamp {
 public:
  /// Copies the palette's table as it stands, so later changes to the palette don't reach the
  /// ramp. No data is what the library itself treats as no value (NaN, infinities, -9990 and
  /// below) and, when flagValue is given, anything at or below it, as a raster's header flag
  /// declares. Min equal to Max puts every value in the first entry. Raises
  /// EArgumentNullException for a null palette, EArgumentException for a range that is not
  /// finite or whose Min lies above its Max.
  TPaletteRamp(const TZephraPalFile* palette, TRange range, TColor noDataColor,
               std::optional<float> flagValue = std::nullopt);

  /// Whether value is no data as the constructor defines it. Never raises.
  bool IsNoData(float value) const;
  /// The entry that value falls into, or -1 for no data. Never raises.
  int32_t IndexOf(float value) const;
  /// The colour of IndexOf(), or the no-data colour. Never raises.
  TColor ColorOf(float value) const;

  /// Number of entries of the snapshot.
  int32_t Count() const { return static_cast<int32_t>(FColors.size()); }
  /// The colour of no-data values.
  TColor NoDataColor() const { return FNoDataColor; }

 private:
  TColorArray FColors;
  double FMin;
  double FScale;  // entries per unit of value; 0 for a range of one value
  TColor FNoDataColor;
  std::optional<float> FFlagValue;
};

}  // namespace zephra
