#pragma once
// The one reader of every text format of the library. It decodes the whole text to UTF-8 up
// front (a byte-order mark selects UTF-8 or UTF-16 of either byte order; invalid UTF-8 becomes
// U+FFFD), then hands out lines that end at CR LF, LF or a lone CR. A last line without an end
// counts. Bulk parsers take the decoded text whole through Text().

#include <istream>
#include <string>
#include <string_view>

namespace zephra {

// Turns raw file bytes into UTF-8 text, as the reader does.
std::string DecodeText(std::string bytes);

class TTextReader {
 public:
  // Reads the stream from its current position to its end; the stream stays the caller's.
  explicit TTextReader(std::istream& Stream);
  // Reads a whole file with one read; a file that can't be opened raises EFOpenError.
  static TTextReader FromFile(const std::string& FileName);

  // The next line without its end; false when the text is exhausted.
  bool ReadLine(std::string& Line);
  bool ReadLine(std::string_view& Line);
  bool EndOfStream() const { return FPos >= FText.size(); }

  std::string_view Text() const { return FText; }
  // What the lines read so far have left.
  std::string_view Remaining() const { return std::string_view(FText).substr(FPos); }

 private:
  explicit TTextReader(std::string Text) : FText(std::move(Text)) {}

  std::string FText;
  size_t FPos = 0;
};

}  // namespace zephra
