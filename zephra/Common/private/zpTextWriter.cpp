#include <zephra/Common/private/zpTextWriter.h>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

TTextWriter::TTextWriter(std::ostream& Stream) : FStream(Stream) {
  FBuffer.reserve(kBufferSize);
}

TTextWriter::~TTextWriter() {
  try {
    Flush();
  } catch (...) {
    // Destructors never throw; a caller that needs the error calls Flush() itself.
  }
}

void TTextWriter::Write(std::string_view Text) {
  if (Text.size() >= kBufferSize) {
    // A block of text as large as the buffer goes to the stream as it is, not through a copy.
    Flush();
    FStream.write(Text.data(), static_cast<std::streamsize>(Text.size()));
    if (!FStream) {
      throw EInOutError("Failed to write text to the stream");
    }
    return;
  }
  FBuffer.append(Text);
  if (FBuffer.size() >= kBufferSize) {
    Flush();
  }
}

void TTextWriter::WriteLine(std::string_view Line) {
  FBuffer.append(Line);
  FBuffer.append("\r\n");
  if (FBuffer.size() >= kBufferSize) {
    Flush();
  }
}

void TTextWriter::Flush() {
  if (!FBuffer.empty()) {
    FStream.write(FBuffer.data(), static_cast<std::streamsize>(FBuffer.size()));
    FBuffer.clear();
  }
  FStream.flush();
  if (!FStream) {
    throw EInOutError("Failed to write text to the stream");
  }
}

}  // namespace zephra
