#pragma once
// Whole-stream reads that the text reader and the binary file readers share.

#include <istream>
#include <string>

namespace zephra {

// The stream from its current position to its end: one read where the stream can tell its size,
// else byte by byte. A stream that fails hard raises EInOutError.
std::string ReadStreamToEnd(std::istream& stream);

}  // namespace zephra
