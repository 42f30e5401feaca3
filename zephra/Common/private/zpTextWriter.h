#pragma once
// The one writer of every text format of the library: UTF-8 without a byte-order mark, every
// line ended by CR LF. It buffers and writes in large blocks; Flush() reports a failed write.

#include <ostream>
#include <string>
#include <string_view>

namespace zephra {

class TTextWriter {
 public:
  // The stream stays the caller's.
  explicit TTextWriter(std::ostream& Stream);
  TTextWriter(const TTextWriter&) = delete;
  TTextWriter& operator=(const TTextWriter&) = delete;
  // Flushes what is left; a failure there is lost, so callers that care call Flush() first.
  ~TTextWriter();

  void Write(std::string_view Text);
  void WriteLine(std::string_view Line);
  // Hands the buffer to the stream; raises EInOutError when the stream fails.
  void Flush();

 private:
  static constexpr size_t kBufferSize = 1 << 16;

  std::ostream& FStream;
  std::string FBuffer;
};

}  // namespace zephra
