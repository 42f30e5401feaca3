#pragma once
// The one reader of every text format of the library. It decodes the whole text to UTF-8 up
// front (a byte-order mark selects UTF-8 or UTF-16 of either byte order; invalid UTF-8 becomes
// U+FFFD), then hands out lines that end at CR LF, LF or a lone CR. A last line without an end
// counts. Bulk parsers take the decoded text whole through Text().

#include <cstdlib>
#include <istream>
#include <memory>
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
  bool EndOfStream() const { return FPos >= Text().size(); }

  std::string_view Text() const {
    return FRaw ? std::string_view(FRaw.get(), FRawSize) : std::string_view(FDecoded);
  }
  // What the lines read so far have left.
  std::string_view Remaining() const { return Text().substr(FPos); }

 private:
  struct TFreeBytes {
    void operator()(char* bytes) const noexcept { std::free(bytes); }
  };
  using TRawBytes = std::unique_ptr<char, TFreeBytes>;

  explicit TTextReader(std::string Text) : FDecoded(std::move(Text)) {}
  TTextReader(TRawBytes raw, size_t size);

  // A file that is UTF-8 already, as nearly every one is, is read once into memory that nothing
  // else writes (no zero fill before the read, no copy after it) and used as it is. Any other is
  // decoded into FDecoded.
  TRawBytes FRaw;
  size_t FRawSize = 0;
  std::string FDecoded;
  size_t FPos = 0;
};

}  // namespace zephra
