#include <zephra/Raster/Header/zplbZephraImageHeader.h>

#include <gtest/gtest.h>

#include <bit>
#include <filesystem>
#include <limits>
#include <sstream>
#include <string>
#include <tuple>
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

// Every line of the .doc form, and of the report in general numbers.
TEST(HeaderText, FullTextsOfTheDocAndTheReport) {
  EXPECT_EQ(Written(Read(kSize)), test::GoldenText("header_default.doc"));
  TImageHeader h = Read(kSize + "max. X: 3\nmin. value: 0.1\nflag value: -999");
  h.DataType = dtInteger32;
  h.Categories = Strings(11, "c");
  h.Categories[0] = "Water";
  EXPECT_EQ(Written(h), test::GoldenText("header_written.doc"));
  EXPECT_EQ(TImageHeader::Open(ZEPHRA_EXAMPLES_DIR "/sample.img")->Text(),
            test::GoldenText("sample_report.txt"));
  TImageHeader big = Read("columns: 16777217\nrows: 2\nmax. X: 1\nflag value: -9999.123");
  big.Categories = Strings(11, "x");
  ExpectLines(big.Text(),
              {"columns     : 16777216", "resolution  : 5.96046E-000008", "flag value  : -9999.123",
               "legend cats : 11\r\ncategory 0 : x", "category 10 : x"});
  ExpectLines(Written(big), {"columns     :  16777217"});
}

TEST(HeaderText, ReaderFollowsKeysAnyCaseAndTheLastLineWins) {
  const TImageHeader h = Read(test::GoldenText("header_keys.doc"));
  EXPECT_EQ(h.FileTitle + "|" + h.Comment + "|" + h.Lineage, "a: b :c|2|l");
  EXPECT_EQ(h.Minx, 0.0f);  // a second blank inside the key makes another key
  EXPECT_EQ(std::tuple(h.DataType, h.FileType, h.Width), std::tuple(dtInteger32, ftBinary, 3));
  EXPECT_EQ(std::tuple(h.UnitDistance, h.MaxValue, h.ResolutionX), std::tuple(2.5f, 325.0f, 2.0f));
  EXPECT_EQ(h.RefSystem(), "LATLON");
  EXPECT_TRUE(h.IsLatLon() && !h.IsPlane() && h.Flag);
  EXPECT_EQ(h.FlagValue, -9999.0f);
  EXPECT_EQ(h.Categories, (Strings{"Water", "9", "", "x: y"}));
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
  for (const std::string text : {"", "columns: 0\nrows: 2", "rows: 2\n\xFF\xFE garbage"}) {
    EXPECT_EQ(RaisedMessage<Exception>([&] { Read(text); }), noSize);
  }
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

TEST(HeaderFile, EveryNameLeadsToTheDocBesideIt) {
  const test::TTempDir dir;
  test::WriteFileBytes(dir.File("grid.img"), "cells");
  test::WriteFileBytes(dir.File("data"), "cells");
  TImageHeader h = Read(kSize);
  h.SaveAs(dir.File("grid.img"));
  EXPECT_EQ(h.FileName, dir.File("grid.DOC"));
  h.SaveToFile(dir.File("data"));
  EXPECT_EQ(test::ReadFileBytes(dir.File("grid.img")) + test::ReadFileBytes(dir.File("data")),
            "cellscells");
  EXPECT_EQ(test::ReadFileBytes(dir.File("grid.doc")), Written(h));
  for (const std::string name : {"grid.img", "grid.doc", "grid.DOC", "grid", "data.x"}) {
    EXPECT_EQ(TImageHeader::Open(dir.File(name))->FileName, dir.File(name.substr(0, 4) + ".doc"));
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
  EXPECT_EQ(made.Text() + made.FileName, source.Text() + "source.doc");
  TImageHeader target =
      Read("value units: ft\nflag def'n: -\nref. system: plane\nlegend cats: 2", Read(kSize));
  source.Copy(&target);
  EXPECT_EQ(target.FileName + target.ValueUnits + target.FlagDef, "ft-");
  EXPECT_EQ(std::tuple(target.UnitDistance, target.ResolutionX), std::tuple(1.0f, 2.0f));
  EXPECT_TRUE(target.IsLatLon() && !target.IsPlane());
  EXPECT_EQ(target.Categories, Strings{"a"});
  source.Categories.push_back("b");  // no list is shared
  EXPECT_EQ(made.Categories, Strings{"a"});
  source.Copy(&source);
  EXPECT_EQ(source.Categories, (Strings{"a", "b"}));
  RaisedMessage<EArgumentNullException>([&] { source.Copy(nullptr); });
}

}  // namespace
}  // namespace zephra
