#include <zephra/Common/private/zpStreamBytes.h>

#include <iterator>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

std::string ReadStreamToEnd(std::istream& stream) {
  std::string bytes;
  const auto start = stream.tellg();
  if (start != std::istream::pos_type(-1) && stream.seekg(0, std::ios::end)) {
    const auto end = stream.tellg();
    stream.seekg(start);
    if (end > start) {
      bytes.resize(static_cast<size_t>(end - start));
      stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
      bytes.resize(static_cast<size_t>(stream.gcount()));
    }
  } else {
    stream.clear();
    bytes.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }
  if (stream.bad()) {
    throw EInOutError("Failed to read from the stream");
  }
  return bytes;
}

}  // namespace zephra
