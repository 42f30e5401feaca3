#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/private/zpTextReader.h>
#include <zephra/Common/private/zpTextWriter.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/TestSupport.h"

namespace zephra {
namespace {

std::vector<std::string> Lines(const std::string& bytes) {
  std::istringstream stream(bytes);
  TTextReader reader(stream);
  std::vector<std::string> lines;
  std::string line;
  while (reader.ReadLine(line)) {
    lines.push_back(line);
  }
  return lines;
}

using Expected = std::vector<std::string>;

TEST(TextReader, EndsLinesAtCrLfLfAndLoneCrAndCountsAnUnendedLastLine) {
  EXPECT_EQ(Lines("a\r\nb\nc\rd"), (Expected{"a", "b", "c", "d"}));
  EXPECT_EQ(Lines("a\r\n"), (Expected{"a"}));
  EXPECT_EQ(Lines("\r\n\r\n"), (Expected{"", ""}));
  EXPECT_EQ(Lines("a\r\r\nb"), (Expected{"a", "", "b"}));
  EXPECT_EQ(Lines(""), Expected{});
}

TEST(TextReader, ByteOrderMarksSelectTheEncoding) {
  EXPECT_EQ(Lines("\xEF\xBB\xBFkey: w\xC3\xA4rme\r\n"), (Expected{"key: w\xC3\xA4rme"}));
  // "ab\r\n\u00E4" in UTF-16 of both byte orders, as "Unicode" editors save it.
  EXPECT_EQ(Lines(std::string("\xFF\xFE"
                              "a\0b\0\r\0\n\0\xE4\0",
                              12)),
            (Expected{"ab", "\xC3\xA4"}));
  EXPECT_EQ(Lines(std::string("\xFE\xFF\0a\0b\0\r\0\n\0\xE4", 12)), (Expected{"ab", "\xC3\xA4"}));
  // A surrogate pair and a lone surrogate.
  EXPECT_EQ(Lines(std::string("\xFF\xFE\x3D\xD8\x00\xDE\x00\xD8", 8)),
            (Expected{"\xF0\x9F\x98\x80\xEF\xBF\xBD"}));
}

TEST(TextReader, InvalidUtf8BecomesReplacementCharacters) {
  EXPECT_EQ(Lines("a\xFF"
                  "b\xC3"),
            (Expected{"a\xEF\xBF\xBD"
                      "b\xEF\xBF\xBD"}));
  EXPECT_EQ(Lines("\xC0\xAF\xED\xA0\x80"),  // an overlong slash and an encoded surrogate
            (Expected{"\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"}));
}

TEST(TextReader, ReadsFromTheStreamPositionAndWholeFiles) {
  std::istringstream stream("skip\nkeep\n");
  stream.seekg(5);
  TTextReader reader(stream);
  EXPECT_EQ(reader.Text(), "keep\n");

  test::TTempDir dir;
  test::WriteFileBytes(dir.File("a.txt"), "one\r\ntwo");
  auto fromFile = TTextReader::FromFile(dir.File("a.txt"));
  std::string line;
  ASSERT_TRUE(fromFile.ReadLine(line));
  EXPECT_EQ(line, "one");
  ASSERT_TRUE(fromFile.ReadLine(line));
  EXPECT_EQ(line, "two");
  EXPECT_FALSE(fromFile.ReadLine(line));
  EXPECT_THROW(TTextReader::FromFile(dir.File("missing.txt")), EFOpenError);
}

TEST(TextWriter, WritesCrLfAfterEveryLineAndReportsAFailedStream) {
  std::ostringstream out;
  {
    TTextWriter writer(out);
    writer.WriteLine("a");
    writer.Write("b");
    writer.WriteLine("");
    writer.WriteLine(std::string(100000, 'x'));  // more than one buffer
  }
  EXPECT_EQ(out.str(), "a\r\nb\r\n" + std::string(100000, 'x') + "\r\n");

  std::ostringstream broken;
  broken.setstate(std::ios::badbit);
  TTextWriter writer(broken);
  writer.WriteLine("lost");
  EXPECT_THROW(writer.Flush(), EInOutError);
}

}  // namespace
}  // namespace zephra
