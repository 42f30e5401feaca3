#pragma once
/// @file
/// The colour table and its palette file. Files store each channel on a 6-bit scale (0 to 63) as
/// lines of four right-aligned three-column integers (index, red, green, blue); the table in
/// memory holds 8-bit channels. Writing shifts a channel right by 2, reading scales it by the
/// float nearest to 4.048, so a saved 252 comes back as 255.

#include <cstdint>
#include <string>
#include <vector>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpExport.h>

namespace zephra {

/// A colour table, entry 0 first.
using TColorArray = std::vector<TColor>;

/// A colour table that starts with 16 built-in colours, loads and saves palette files, grows and
/// shrinks, and blends ramps between entries. Never empty.
class ZEPHRA_API TZephraPalFile {
 public:
  /// One entry of the table: writes through SetColor and reads through GetColor, so that
  /// `palette[i] = c` and `TColor c = palette[i]` behave as the named operations do.
  class TColourRef {
   public:
    /// GetColor() of the entry; reading past the end grows the table.
    operator TColor() const { return FOwner.GetColor(FIndex); }
    /// SetColor() of the entry; raises as that does.
    TColourRef& operator=(TColor color) {
      FOwner.SetColor(FIndex, color);
      return *this;
    }

   private:
    friend class TZephraPalFile;
    TColourRef(TZephraPalFile& owner, int32_t index) : FOwner(owner), FIndex(index) {}

    TZephraPalFile& FOwner;
    int32_t FIndex;
  };

  /// The 16 built-in colours, their 6-bit channels times 4 (entry 0 is 252 grey). Never raises.
  TZephraPalFile();

  /// Replaces the table by the file's lines, one colour a line. A missing file, or the name
  /// loaded or saved last, changes nothing. A line that is not exactly 12 characters of three
  /// integers after the index column becomes black. Raises EFOpenError or EInOutError when an
  /// existing file can't be read.
  void LoadFromFile(const std::string& FileName);
  /// Writes every entry; an empty name writes nothing. FileName() stays as it was. Raises
  /// EInOutError when the file can't be written.
  void SaveToFile(const std::string& FileName) const;
  /// As above; with UpdateFileName the name becomes FileName(), so loading it is skipped. Raises
  /// as above.
  void SaveToFile(const std::string& FileName, bool UpdateFileName);

  /// Overwrites Index1 .. Index2 with a ramp from the colour at Index1 towards the one at Index2
  /// that stops one step short of it. Reading the two ends may grow the table. Raises
  /// EZephraPalette "Index out of range", changing nothing, unless 0 <= Index1 <= Index2.
  void Blend(int32_t Index1, int32_t Index2);

  /// A negative index reads entry 0; an index past the end first grows the table to reach it.
  /// Raises EZephraPalette "Index out of range" only for INT32_MAX, which no table can reach.
  TColor GetColor(int32_t index);
  /// A negative index raises EZephraPalette "Index out of range"; an index past the end wraps
  /// modulo Count().
  void SetColor(int32_t index, TColor color);
  /// Every entry becomes Color. Never raises.
  void FillPalette(TColor Color);

  /// Number of entries; never 0.
  int32_t Count() const { return FCount; }
  /// Cuts or extends the table; new entries repeat the last one. 0 is ignored, a negative count
  /// raises EListError and leaves the table alone.
  void SetCount(int32_t nColors);

  /// The palette file loaded last, or stored by a save that asked for it; empty at first.
  const std::string& FileName() const { return FPaletteFile; }
  /// Sets FileName(); a later LoadFromFile() of that name does nothing.
  void SetFileName(const std::string& value) { FPaletteFile = value; }

  /// GetColor(), under the indexed property's name.
  TColor Colours(int32_t index) { return GetColor(index); }
  /// SetColor(), under the indexed property's name.
  void SetColours(int32_t index, TColor color) { SetColor(index, color); }
  /// The entry at index, read through GetColor() and written through SetColor().
  TColourRef operator[](int32_t index) { return TColourRef(*this, index); }

  /// The table as it stands, for readers that must not grow it.
  const TColorArray& Colors() const { return FColors; }

 private:
  std::string FPaletteFile;
  TColorArray FColors;
  int32_t FCount;
};

}  // namespace zephra
