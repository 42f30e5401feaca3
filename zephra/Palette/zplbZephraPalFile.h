#pragma once
// The colour table and its palette file. Files store each channel on a 6-bit scale (0 to 63)
// as lines of four right-aligned three-column integers (index, red, green, blue); the table in
// memory holds 8-bit channels. Writing shifts a channel right by 2, reading scales it by the
// float nearest to 4.048, so a saved 252 comes back as 255.

#include <cstdint>
#include <string>
#include <vector>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExceptions.h>

namespace zephra {

using TColorArray = std::vector<TColor>;

class TZephraPalFile {
 public:
  // Writes through SetColor and reads through GetColor, so that `palette[i] = c` and
  // `TColor c = palette[i]` behave as the named operations do.
  class TColourRef {
   public:
    operator TColor() const { return FOwner.GetColor(FIndex); }
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

  // The 16 built-in colours.
  TZephraPalFile();

  // Replaces the table by the file's lines, one colour a line. A missing file, or the name
  // loaded or saved last, changes nothing. A line that is not exactly 12 characters of three
  // integers after the index column becomes black.
  void LoadFromFile(const std::string& FileName);
  // Writes every entry; an empty name writes nothing. FileName() stays as it was.
  void SaveToFile(const std::string& FileName) const;
  // As above; with UpdateFileName the name becomes FileName(), so loading it is skipped.
  void SaveToFile(const std::string& FileName, bool UpdateFileName);

  // Overwrites Index1 .. Index2 with a ramp from the colour at Index1 towards the one at
  // Index2 that stops one step short of it. Reading the two ends may grow the table.
  void Blend(int32_t Index1, int32_t Index2);

  // A negative index reads entry 0; an index past the end first grows the table to reach it.
  TColor GetColor(int32_t index);
  // A negative index raises EZephraPalette; an index past the end wraps modulo Count().
  void SetColor(int32_t index, TColor color);
  void FillPalette(TColor Color);

  int32_t Count() const { return FCount; }
  // Cuts or extends the table; new entries repeat the last one. 0 is ignored, a negative
  // count raises EListError and leaves the table alone.
  void SetCount(int32_t nColors);

  const std::string& FileName() const { return FPaletteFile; }
  void SetFileName(const std::string& value) { FPaletteFile = value; }

  TColor Colours(int32_t index) { return GetColor(index); }
  void SetColours(int32_t index, TColor color) { SetColor(index, color); }
  TColourRef operator[](int32_t index) { return TColourRef(*this, index); }

  // The table as it stands, for readers that must not grow it.
  const TColorArray& Colors() const { return FColors; }

 private:
  std::string FPaletteFile;
  TColorArray FColors;
  int32_t FCount;
};

}  // namespace zephra
