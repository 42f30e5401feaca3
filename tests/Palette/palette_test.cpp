#include <zephra/Common/zpExceptions.h>
#include <zephra/Palette/zplbZephraPalFile.h>

#include <gtest/gtest.h>

#include <string>

#include "support/RaisedMessage.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

using test::ReadFileBytes;
using test::TTempDir;
using test::WriteFileBytes;

const TColorArray kBuiltIn{0xFCFCFC, 0xFCF8AC, 0xD8D800, 0xBCBC58, 0x789C30, 0x0CC44C,
                           0x00E000, 0x00FC00, 0x00F0FC, 0x00C8FC, 0x2898FC, 0x6098FC,
                           0x0070FC, 0x0000FC, 0x4C28A0, 0x280080};
// The built-in table written out and read back on the reader's wider scale.
const TColorArray kBuiltInReadBack{0xFFFFFF, 0xFFFBAE, 0xDBDB00, 0xBEBE59, 0x799E31, 0x0CC64D,
                                   0x00E300, 0x00FF00, 0x00F3FF, 0x00CAFF, 0x289AFF, 0x619AFF,
                                   0x0071FF, 0x0000FF, 0x4D28A2, 0x280082};

TColorArray Entries(const TZephraPalFile& palette, size_t first, size_t count) {
  return TColorArray(palette.Colors().begin() + first, palette.Colors().begin() + first + count);
}

TEST(ZephraPalFile, SavesTheBuiltInTableAndReadsItBackOnTheWiderScale) {
  const TTempDir dir;
  TZephraPalFile palette;
  EXPECT_EQ(palette.Colors(), kBuiltIn);
  palette.SaveToFile(dir.File("a.pal"));
  EXPECT_EQ(ReadFileBytes(dir.File("a.pal")), test::GoldenText("palette/builtin.pal"));
  EXPECT_EQ(palette.FileName(), "");

  TZephraPalFile loaded;
  loaded.FillPalette(0x123456);
  loaded.LoadFromFile(dir.File("a.pal"));
  EXPECT_EQ(loaded.Colors(), kBuiltInReadBack);
}

TEST(ZephraPalFile, ReadsLinesOfExactlyTwelveCharactersAndBlackForTheRest) {
  const TTempDir dir;
  WriteFileBytes(dir.File("p.pal"),
                 "\xEF\xBB\xBFxyz 63  1 -1\n"  // the index column is never read
                 " 1 63 63 63\r"               // 11 characters
                 "  2 63 63 63 \r\n"           // 13 characters
                 "  3 6x 63 63\r\n"            // not an integer
                 "  4999 63  0\r\n"            // beyond 63: only the low 8 bits count
                 "\xC3\xA4 5 10 10 10\r\n"     // 12 characters in 13 bytes
                 "\xC3\xA4  10 10 10\r\n"      // 12 bytes but 11 characters
                 "  7  0  0 63");
  TZephraPalFile palette;
  palette.LoadFromFile(dir.File("p.pal"));
  EXPECT_EQ(palette.Colors(), (TColorArray{0xFC04FF, 0, 0, 0, 0x00FFCC, 0x282828, 0, 0xFF0000}));

  palette.SetCount(1002);  // the writer makes rows from 1000 on 13 characters long
  palette.SaveToFile(dir.File("long.pal"));
  EXPECT_NE(ReadFileBytes(dir.File("long.pal")).find("\r\n1001  0  0 63\r\n"), std::string::npos);
  TZephraPalFile loaded;
  loaded.LoadFromFile(dir.File("long.pal"));
  EXPECT_EQ(Entries(loaded, 998, 4), (TColorArray{0xFF0000, 0xFF0000, 0, 0}));
}

TEST(ZephraPalFile, SkipsMissingFilesAndTheNameLoadedOrSavedLast) {
  const TTempDir dir;
  TZephraPalFile palette;
  palette.LoadFromFile(dir.File("missing.pal"));
  EXPECT_EQ(palette.Colors(), kBuiltIn);
  WriteFileBytes(dir.File("two.pal"), "  0 63  0  0\r\n  1  0 63  0\r\n");
  palette.LoadFromFile(dir.File("two.pal"));
  palette.SetColor(0, 7);
  WriteFileBytes(dir.File("two.pal"), "  0  0  0 63\r\n");
  palette.LoadFromFile(dir.File("two.pal"));
  EXPECT_EQ(palette.Colors(), (TColorArray{7, 0x00FF00}));

  WriteFileBytes(dir.File("empty.pal"), "");
  palette.LoadFromFile(dir.File("empty.pal"));  // no line keeps the table
  palette.SetFileName(dir.File("two.pal"));
  palette.LoadFromFile(dir.File("two.pal"));  // a name set by hand is skipped too
  palette.SaveToFile(dir.File("saved.pal"), true);
  palette.SetColor(1, 8);
  palette.LoadFromFile(dir.File("saved.pal"));
  EXPECT_EQ(palette.Colors(), (TColorArray{7, 8}));
  EXPECT_THROW(palette.SaveToFile(dir.File("no/such/folder.pal")), EInOutError);
}

TEST(ZephraPalFile, GrowsOnReadsPastTheEndAndWrapsWrites) {
  TZephraPalFile palette;
  EXPECT_EQ(palette.GetColor(-5), kBuiltIn[0]);
  EXPECT_EQ(palette.GetColor(19), kBuiltIn[15]);
  EXPECT_EQ(palette.Count(), 20);
  palette.SetCount(0);
  palette.SetCount(3);
  EXPECT_THROW(palette.SetCount(-1), EListError);
  palette.SetCount(5);
  EXPECT_EQ(palette.Colors(), (TColorArray{0xFCFCFC, 0xFCF8AC, 0xD8D800, 0xD8D800, 0xD8D800}));

  palette.SetColor(11, 0xAB000001);  // 11 mod 5 = 1; the top byte is kept
  palette[5] = 9;
  EXPECT_EQ(Entries(palette, 0, 2), (TColorArray{9, 0xAB000001}));
  EXPECT_EQ(test::RaisedMessage<EZephraPalette>([&] { palette.SetColor(-1, 0); }),
            "Index out of range");
  EXPECT_EQ(TColor(palette[6]), 0xD8D800u);
  palette.FillPalette(0x010203);
  EXPECT_EQ(palette.Colors(), TColorArray(7, 0x010203));
}

TEST(ZephraPalFile, BlendStopsOneStepShortOfTheSecondColour) {
  TZephraPalFile palette;
  palette.Blend(2, 5);  // (0,216,216) towards (76,196,12) in quarters
  palette.Blend(3, 3);
  EXPECT_EQ(Entries(palette, 1, 6),
            (TColorArray{kBuiltIn[1], 0xD8D800, 0xA5D313, 0x72CE26, 0x3FC939, kBuiltIn[6]}));

  palette.SetColor(0, 0x000000);
  palette.SetColor(1, 0x010305);  // halves 2.5, 1.5 and 0.5 round to even
  palette.Blend(0, 1);
  EXPECT_EQ(palette.GetColor(1), 0x000202u);
  palette.Blend(15, 17);  // the end grows the table with the last colour
  EXPECT_EQ(Entries(palette, 15, 3), TColorArray(3, kBuiltIn[15]));

  const TColorArray before = palette.Colors();
  EXPECT_THROW(palette.Blend(5, 2), EZephraPalette);
  EXPECT_THROW(palette.Blend(-1, 30), EZephraPalette);
  EXPECT_EQ(palette.Colors(), before);
}

}  // namespace
}  // namespace zephra
