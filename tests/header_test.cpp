#include <zephra/Raster/Header/zplbZephraImageHeader.h>

#include <gtest/gtest.h>

#include <bit>
#include <filesystem>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "support/RaisedMessage.h"
#include "support/TestSupport.h"

namespace zephra {
namespace {

using test::RaisedMessage;
using Strings = std::vector<std::string>;

const std::string kSize = "columns: 3\nrows: 2\n";

TImageHeader Read(const std::string& bytes, TImageHeader header = {}) {
  std::istringstream stream(bytes);
  header.LoadFromStream(stream);
  return header;
}

std::string Written(const TImageHeader& header) {
  std::ostringstream stream;
  header.SaveToStream(stream);
  return stream.str();
}

void ExpectLines(const std::string& text, const Strings& lines) {
  for (const std::string& line : lines) {
    EXPECT_NE(text.find("\r\n" + line + "\r\n"), std::string::npos) << line << " in\n" << text;
  }
}

TEST(HeaderText, DefaultHeaderWritesTheFullText) {
  const TImageHeader h = Read(kSize);
  EXPECT_EQ(h.FlagValue, 0.0f);
  EXPECT_EQ(h.ResolutionX, 0.0f);
  const std::string zero = "0.00000000000000E+000\r\n";
  EXPECT_EQ(Written(h),
            "file title  :  \r\ndata type   :  real\r\nfile type   : ascii\r\ncolumns     :  3\r\n"
            "rows        :  2\r\nref. system :  \r\nref. units  :  Unspecified\r\n"
            "unit dist.  :  1.00000000000000E+000\r\nmin. X      :  " +
                zero + "max. X      :  " + zero + "min. Y      :  " + zero +
                "max. Y      :  " + zero + "pos'n error : unknown\r\nresolution  :  " + zero +
                "min. value  :  " + zero + "max. value  :  " + zero +
                "value units :  Unspecified\r\nvalue error : unknown\r\n"
                "flag value  :  none\r\nflag def'n  : \r\nlegend cats :  0\r\nComment     :  \r\n"
                "Lineage     :  \r\nCompleteness:  \r\nConsistency :  \r\n");
}

TEST(HeaderText, ReaderFollowsKeysAnyCaseAndTheLastLineWins) {
  const TImageHeader h = Read(
      "FILE TITLE :  a: b :c  \nComment: 1\ncomment: 2\nLINEAGE: l\nmin.  X: 5\nrows: 9\n"
      "DaTa TyPe: InTeGeR32\nfile type: BINARY\nunit dist.: 2.5\nmax. value: 3.25E+2\n"
      "resolution: 77\nref. system:  LATLON \t\nflag value: -9999\nflag def'n: gap\n"
      "legend cats: 3\ncategory 0 : Water\ncolumns: 9\nno colon\nlegend cats: 1\n: x: y\n"
      "max. X: 6\n" +
      kSize);
  EXPECT_EQ(h.FileTitle, "a: b :c");
  EXPECT_EQ(h.Comment, "2");
  EXPECT_EQ(h.Lineage, "l");
  EXPECT_EQ(h.Minx, 0.0f);  // a second blank inside the key makes another key
  EXPECT_EQ(h.DataType, dtInteger32);
  EXPECT_EQ(h.FileType, ftBinary);
  EXPECT_EQ(h.UnitDistance, 2.5f);
  EXPECT_EQ(h.MaxValue, 325.0f);
  EXPECT_EQ(h.ResolutionX, 2.0f);
  EXPECT_EQ(h.RefSystem(), "LATLON");
  EXPECT_TRUE(h.IsLatLon() && !h.IsPlane());
  EXPECT_TRUE(h.Flag);
  EXPECT_EQ(h.FlagValue, -9999.0f);
  EXPECT_EQ(h.Categories, (Strings{"Water", "9", "", "x: y"}));
  EXPECT_EQ(h.Width, 3);
  // Later lines undo earlier ones; a line that is only a key counts with an empty value.
  const TImageHeader undone = Read("ref. system: Latlon WGS84\ncomment", h);
  EXPECT_FALSE(undone.IsLatLon() || undone.IsPlane());
  EXPECT_EQ(undone.Comment, "");
  EXPECT_EQ(undone.Categories.size(), 4u);  // a load adds to the legend, never clears it
  EXPECT_TRUE(Read(kSize + "ref. system: PLANE").IsPlane());
  for (const std::string flag : {"none", "", "1e300"}) {
    const TImageHeader none = Read("flag value: 5\nflag value: " + flag, h);
    EXPECT_FALSE(none.Flag);
    EXPECT_EQ(none.FlagValue, -999.0f);
  }
  // No count takes no line; a count at the very end gives empty categories.
  EXPECT_EQ(Read("legend cats: two\ncomment: seen\n" + kSize).Comment, "seen");
  EXPECT_EQ(Read(kSize + "legend cats: -4\n: c").Categories, Strings{});
  EXPECT_EQ(Read(kSize + "legend cats: 2").Categories, (Strings{"", ""}));
}

TEST(HeaderText, BadInputFailsWithTheRightWords) {
  const std::string noSize = "Header doesn't contain required Width or Height value";
  EXPECT_EQ(RaisedMessage<Exception>([] { Read(""); }), noSize);
  EXPECT_EQ(RaisedMessage<Exception>([] { Read("columns: 0\nrows: 2"); }), noSize);
  EXPECT_EQ(RaisedMessage<Exception>([] { Read("rows: 2\n\xFF\xFE garbage"); }), noSize);
  EXPECT_EQ(Read("columns: -3\nrows: +2").Width, -3);
  EXPECT_EQ(RaisedMessage<Exception>([] { Read(kSize + "data type: float"); }),
            "Unknown data type: float");
  EXPECT_EQ(RaisedMessage<Exception>([] { Read(kSize + "file type: Tape"); }),
            "Unknown file type: Tape");
  for (const std::string bad : {"columns: 3.0", "columns:", "rows: 99999999999", "min. X: 1e300",
                                "max. X: 3.4028236e38", "max. Y: abc", "unit dist.: 1.5.2"}) {
    RaisedMessage<EConvertError>([&] { Read(kSize + bad); });
  }
  // What was read before the failing line stays.
  TImageHeader partial;
  std::istringstream stream("file title: kept\ncolumns: 2\nmin. X: oops\nrows: 5");
  EXPECT_THROW(partial.LoadFromStream(stream), EConvertError);
  EXPECT_EQ(partial.FileTitle, "kept");
  EXPECT_EQ(partial.Height, 0);
}

TEST(HeaderText, EncodingsAndLineEnds) {
  const std::string text = "columns: 4\rrows: 5\r\nfile title: w\xC3\xA4rme\nlegend cats: 1\r: y";
  EXPECT_EQ(Read(text).Categories, Strings{"y"});
  EXPECT_EQ(Read("\xEF\xBB\xBF" + text).FileTitle, "w\xC3\xA4rme");
  std::string le = "\xFF\xFE";
  std::string be = "\xFE\xFF";
  for (const char c : std::string("columns: 4\r\nrows: 5\r\nfile title: w\xE4rme")) {
    le += {c, '\0'};
    be += {'\0', c};
  }
  EXPECT_EQ(Read(le).FileTitle, "w\xC3\xA4rme");
  EXPECT_EQ(Read(be).Height, 5);
  EXPECT_EQ(Read(kSize + "file title: a\xFF").FileTitle, "a\xEF\xBF\xBD");
}

TEST(HeaderText, FloatsReadBackBitIdenticalAndTextByteIdentical) {
  constexpr float kInf = std::numeric_limits<float>::infinity();
  for (const float value : {0.1f, 1.0f / 3.0f, -0.0f, 16777215.0f, 3.4028235e38f, -1.17549435e-38f,
                            1.4e-45f, 6.0e-39f, 9.999999e-5f, -kInf}) {
    TImageHeader h = Read(test::ReadFileBytes(ZEPHRA_EXAMPLES_DIR "/sample.doc"));
    h.UnitDistance = h.Minx = h.Maxy = h.MinValue = h.FlagValue = value;
    h.Categories = {"Water", "Land: dry", ""};
    const std::string first = Written(h);
    const TImageHeader back = Read(first);
    for (const float field :
         {back.UnitDistance, back.Minx, back.Maxy, back.MinValue, back.FlagValue}) {
      EXPECT_EQ(std::bit_cast<uint32_t>(field), std::bit_cast<uint32_t>(value)) << first;
    }
    EXPECT_EQ(Written(back), first);
  }
  TImageHeader h = Read(kSize + "max. X: 3\nmin. value: 0.1\nflag value: -999");
  h.DataType = dtInteger32;
  h.Categories = Strings(11, "c");
  h.Categories[0] = "Water";
  ExpectLines(Written(h), {"data type   :  integer32", "min. value  :  1.00000001490116E-001",
                           "flag value  :  -9.99000000000000E+002", "flag def'n  :  Missing data",
                           "resolution  :  1.00000000000000E+000",
                           "legend cats :  11\r\ncategory   0  : Water", "category  10  : c"});
}

TEST(HeaderText, NumbersFollowTheLocaleSeparator) {
  const TImageHeader h = Read("columns: 4\nrows: 2\nmax. X: 2\nmin. value: 0.1");
  std::string commaText;
  {
    const test::TScopedNumericLocale comma(test::kCommaLocale);
    ASSERT_TRUE(comma.Active()) << test::kCommaLocale << " is not installed: run setup.sh";
    commaText = Written(h);
    ExpectLines(commaText,
                {"unit dist.  :  1,00000000000000E+000", "resolution  :  5,00000000000000E-001"});
    EXPECT_EQ(Read(commaText).MinValue, 0.1f);
    ExpectLines(h.Text(), {"resolution  : 0,5", "min. value  : 0,100000001490116"});
    RaisedMessage<EConvertError>([] { Read(kSize + "min. X: 0.5"); });
  }
  RaisedMessage<EConvertError>([&] { Read(commaText); });
}

TEST(HeaderText, FailuresWhileWritingKeepTheLinesBefore) {
  TImageHeader h = Read(kSize);
  h.DataType = static_cast<TDataType>(9);
  std::ostringstream first;
  EXPECT_EQ(RaisedMessage<EImageHeaderError>([&] { h.SaveToStream(first); }),
            "Unknown Image Header DataType");
  EXPECT_EQ(first.str(), "file title  :  \r\n");
  RaisedMessage<EImageHeaderError>([&] { (void)h.Text(); });
  h.DataType = dtByte;
  h.FileType = static_cast<TFileType>(2);
  EXPECT_EQ(RaisedMessage<Exception>([&] { (void)h.Text(); }), "Unknown File Type");
  h.FileType = ftAscii;
  h.Width = 0;
  RaisedMessage<EMathError>([&] { (void)h.Text(); });
  std::ostringstream broken;
  broken.setstate(std::ios::badbit);
  RaisedMessage<EInOutError>([&] { Read(kSize).SaveToStream(broken); });
}

TEST(HeaderText, ReportUsesGeneralNumbers) {
  EXPECT_EQ(TImageHeader::Open(ZEPHRA_EXAMPLES_DIR "/sample.img")->Text(),
            "file title  : Annual mean temperature, sample\r\ndata type   : real\r\n"
            "file type   : binary\r\ncolumns     : 4\r\nrows        : 3\r\n"
            "ref. system : latlon\r\nref. units  : deg\r\nunit dist.  : 1\r\n"
            "min. X      : 110\r\nmax. X      : 114\r\nmin. Y      : -43\r\n"
            "max. Y      : -40\r\npos'n error : unknown\r\nresolution  : 1\r\n"
            "min. value  : 8.5\r\nmax. value  : 17.25\r\nvalue units : C\r\n"
            "value error : unknown\r\nflag value  : -9999\r\nflag def'n  : No data\r\n"
            "legend cats : 0\r\nComment     : Small sample shipped with the library\r\n"
            "Lineage     : \r\nCompleteness: \r\nConsistency : \r\n");
  TImageHeader h = Read("columns: 16777217\nrows: 2\nmax. X: 1\nflag value: -9999.123");
  h.Categories = Strings(11, "x");
  ExpectLines(h.Text(),
              {"columns     : 16777216", "resolution  : 5.96046E-000008", "flag value  : -9999.123",
               "legend cats : 11\r\ncategory 0 : x", "category 10 : x"});
  ExpectLines(Written(h), {"columns     :  16777217"});
}

TEST(HeaderFile, EveryNameLeadsToTheDocBesideIt) {
  const test::TTempDir dir;
  test::WriteFileBytes(dir.File("grid.img"), "cells");
  test::WriteFileBytes(dir.File("data"), "cells");
  TImageHeader h = Read(kSize);
  h.SaveAs(dir.File("grid.img"));
  EXPECT_EQ(h.FileName, dir.File("grid.DOC"));
  h.SaveToFile(dir.File("data"));
  EXPECT_EQ(test::ReadFileBytes(dir.File("grid.img")), "cells");
  EXPECT_EQ(test::ReadFileBytes(dir.File("data")), "cells");
  EXPECT_EQ(test::ReadFileBytes(dir.File("grid.doc")), Written(h));
  for (const std::string name : {"grid.img", "grid.doc", "grid.DOC", "grid", "data.x"}) {
    const auto loaded = TImageHeader::Open(dir.File(name));
    EXPECT_EQ(loaded->FileName, dir.File(name.substr(0, 4) + ".doc"));
  }
  h.SaveToFile(dir.File("upper.DOC"));  // a .doc name in any case is written as given
  EXPECT_EQ(test::ReadFileBytes(dir.File("upper.DOC")), Written(h));
  EXPECT_FALSE(std::filesystem::exists(dir.File("upper.doc")));

  TImageHeader missing;
  const std::string opened =
      RaisedMessage<EFOpenError>([&] { missing.LoadFromFile(dir.File("absent.img")); });
  EXPECT_NE(opened.find(dir.File("absent.doc")), std::string::npos) << opened;
  EXPECT_EQ(missing.FileName, dir.File("absent.doc"));
  const std::string created =
      RaisedMessage<EInOutError>([&] { h.SaveToFile(dir.File("no/dir/x.img")); });
  EXPECT_NE(created.find(dir.File("no/dir/x.doc")), std::string::npos) << created;
  EXPECT_EQ(h.FileName, dir.File("no/dir/x.DOC"));
}

TEST(HeaderCopy, ConstructorTakesAllAndCopyLeavesFourFields) {
  TImageHeader source = Read(kSize +
                             "max. X: 6\nref. system: latlon\nvalue units: km\n"
                             "flag def'n: gap\nunit dist.: 3\nlegend cats: 1\n: a");
  source.FileName = "source.doc";
  const TImageHeader made(source);
  EXPECT_EQ(made.Text(), source.Text());
  EXPECT_EQ(made.FileName, "source.doc");
  TImageHeader target =
      Read("value units: ft\nflag def'n: -\nref. system: plane\nlegend cats: 2", Read(kSize));
  source.Copy(&target);
  EXPECT_EQ(target.FileName, "");
  EXPECT_EQ(target.ValueUnits + target.FlagDef, "ft-");
  EXPECT_EQ(target.UnitDistance, 1.0f);
  EXPECT_TRUE(target.IsLatLon() && !target.IsPlane());
  EXPECT_EQ(target.ResolutionX, 2.0f);
  EXPECT_EQ(target.Categories, Strings{"a"});
  source.Categories.push_back("b");  // no list is shared
  EXPECT_EQ(made.Categories, Strings{"a"});
  source.Copy(&source);
  EXPECT_EQ(source.Categories, (Strings{"a", "b"}));
  RaisedMessage<EArgumentNullException>([&] { source.Copy(nullptr); });
}

}  // namespace
}  // namespace zephra
