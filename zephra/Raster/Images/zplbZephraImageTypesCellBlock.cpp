// The cell block of TAbstractImage: the buffer's raw cells in and out of byte arrays and
// streams, exactly the byte layout of a binary data file.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <cstring>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

namespace {

size_t CellBlockSize(const TAbstractImage& image) {
  return static_cast<size_t>(image.NumRecs) * static_cast<size_t>(image.GetDataTypeSize());
}

}  // namespace

TByteArray TAbstractImage::GetBytes() const {
  const size_t size = CellBlockSize(*this);
  TByteArray bytes(size);
  if (size > 0) {
    std::memcpy(bytes.data(), GetElement0Ptr(), size);
  }
  return bytes;
}

void TAbstractImage::SetBytes(const TByteArray& Bytes) {
  const size_t size = CellBlockSize(*this);
  if (Bytes.size() != size) {
    throw Exception("Unexpected buffer size");
  }
  if (size > 0) {
    std::memcpy(GetElement0Ptr(), Bytes.data(), size);
  }
}

void TAbstractImage::SaveToStream(std::ostream& Stream) const {
  const TByteArray bytes = GetBytes();
  Stream.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
  if (!Stream) {
    throw EInOutError("Failed to write the cells of the image to the stream");
  }
}

void TAbstractImage::LoadFromStream(std::istream& Stream) {
  const auto start = Stream.tellg();
  Stream.seekg(0, std::ios::end);
  const auto end = Stream.tellg();
  if (start == std::istream::pos_type(-1) || end == std::istream::pos_type(-1) || !Stream) {
    throw EInOutError("Failed to read the cells of the image: the stream has no size");
  }
  Stream.seekg(start);
  TByteArray bytes(static_cast<size_t>(end - start));
  Stream.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  if (static_cast<size_t>(Stream.gcount()) != bytes.size()) {
    throw EInOutError("Failed to read the cells of the image from the stream");
  }
  SetBytes(bytes);
}

}  // namespace zephra
