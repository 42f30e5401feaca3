#include <zephra/Common/private/zpTextReader.h>
#include <zephra/Common/private/zpTextWriter.h>
#include <zephra/Common/zpExceptions.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/TestSupport.h"

namespace zephra {
namespace {

using TLines = std::vector<std::string>;

TLines Lines(TTextReader reader) {
  TLines lines;
  for (std::string line; reader.ReadLine(line);) {
    lines.push_back(line);
  }
  return lines;
}

TLines Lines(const std::string& bytes) {
  std::istringstream stream(bytes);
  return Lines(TTextReader(stream));
}

const std::string kBad = "\xEF\xBF\xBD";  // the replacement character

TEST(TextReader, SplitsLinesAndDecodesEveryEncodingToUtf8) {
  using namespace std::string_literals;
  const struct {
    std::string Bytes;
    TLines Expected;
  } cases[] = {
      {"a\r\nb\nc\rd", {"a", "b", "c", "d"}},
      {"a\r\n", {"a"}},
      {"\r\n\r\n", {"", ""}},
      {"a\r\r\nb", {"a", "", "b"}},
      {"", {}},
      {"\xEF\xBB\xBFkey: w\xC3\xA4rme\r\n", {"key: w\xC3\xA4rme"}},
      // "ab\r\n\u00E4" in UTF-16 of both byte orders, as "Unicode" editors save it.
      {"\xFF\xFE"s
       "a\0b\0\r\0\n\0\xE4\0"s,
       {"ab", "\xC3\xA4"}},
      {"\xFE\xFF\0a\0b\0\r\0\n\0\xE4"s, {"ab", "\xC3\xA4"}},
      // A surrogate pair, a lone high surrogate, and one cut off by the end of the file.
      {"\xFF\xFE\x3D\xD8\x00\xDE\x00\xD8"s, {"\xF0\x9F\x98\x80" + kBad}},
      {"\xFE\xFF\xD8\x3D\xDC"s, {kBad + kBad}},
      // Invalid UTF-8: a stray byte, a cut sequence, an overlong slash, an encoded surrogate.
      {"a\xFF"
       "b\xC3",
       {"a" + kBad + "b" + kBad}},
      {"\xC0\xAF\xED\xA0\x80", {kBad + kBad + kBad + kBad + kBad}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Lines(c.Bytes), c.Expected) << testing::PrintToString(c.Bytes);
  }
}

TEST(TextReader, ReadsFromTheStreamPositionAndWholeFiles) {
  std::istringstream stream("skip\nkeep\n");
  stream.seekg(5);
  EXPECT_EQ(TTextReader(stream).Text(), "keep\n");

  const test::TTempDir dir;
  test::WriteFileBytes(dir.File("a.txt"), "one\r\ntwo");
  EXPECT_EQ(Lines(TTextReader::FromFile(dir.File("a.txt"))), (TLines{"one", "two"}));
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
