// The binary form of the coordinate file, read only: records of a 32-bit id, a 32-bit vertex
// count n and n pairs of 32-bit floats, all little-endian, up to the end of the data.

#include <zephra/Vector/zpVectorFile.h>

#include <bit>
#include <iterator>

namespace zephra {

namespace {

constexpr size_t kRecordHeaderSize = 8;
constexpr size_t kVertexSize = 8;

// The stream from its position to its end, in one read where the stream can tell its size.
std::vector<uint8_t> ReadRemaining(std::istream& stream) {
  std::vector<uint8_t> bytes;
  const auto start = stream.tellg();
  if (start != std::istream::pos_type(-1) && stream.seekg(0, std::ios::end)) {
    const auto end = stream.tellg();
    stream.seekg(start);
    if (end > start) {
      bytes.resize(static_cast<size_t>(end - start));
      stream.read(reinterpret_cast<char*>(bytes.data()),
                  static_cast<std::streamsize>(bytes.size()));
      bytes.resize(static_cast<size_t>(stream.gcount()));
    }
  } else {
    stream.clear();
    bytes.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }
  if (stream.bad()) {
    throw EInOutError("Failed to read the vector file's data");
  }
  return bytes;
}

[[noreturn]] void Fail(const std::string& fileName, size_t offset, const std::string& what) {
  throw EVectorFileError("Vector file (" + fileName + "), byte " + std::to_string(offset) + ": " +
                         what);
}

template <typename T>
T ReadLittleEndian(const uint8_t* at) {
  static_assert(sizeof(T) == 4);
  const uint32_t bits = static_cast<uint32_t>(at[0]) | static_cast<uint32_t>(at[1]) << 8 |
                        static_cast<uint32_t>(at[2]) << 16 | static_cast<uint32_t>(at[3]) << 24;
  return std::bit_cast<T>(bits);
}

}  // namespace

void TVector::LoadBinary(std::istream& Stream) {
  const std::vector<uint8_t> data = ReadRemaining(Stream);
  const bool isLatLon = FHeader->IsLatLon();
  size_t pos = 0;
  while (pos < data.size()) {
    // A fragment too short for a record header is a truncated file, neither padded nor dropped.
    // It is the format's own assertion, raised before any byte past the end is looked at.
    if (data.size() - pos < kRecordHeaderSize) {
      throw EAssertionFailed("Assertion failure (Vector/zpVectorFile): vector file (" + FileName +
                             "), byte " + std::to_string(pos) +
                             ": a record header passes the end of the data (" +
                             std::to_string(data.size()) + " bytes)");
    }
    const int32_t n = ReadLittleEndian<int32_t>(&data[pos + 4]);
    if (n < 1) {
      pos += kRecordHeaderSize;
      continue;
    }
    auto feature =
        std::make_unique<TFeature>(static_cast<float>(ReadLittleEndian<int32_t>(&data[pos])));
    const size_t recordStart = pos;
    pos += kRecordHeaderSize;
    // The count is a 16-bit field of the format: a larger one keeps only its low 16 bits.
    const auto vertices = static_cast<uint16_t>(n);
    if ((data.size() - pos) / kVertexSize < vertices) {
      Fail(FileName, recordStart,
           "the record's " + std::to_string(vertices) + " vertices pass the end of the data (" +
               std::to_string(data.size()) + " bytes)");
    }
    feature->FPoints.reserve(vertices);
    for (uint16_t k = 0; k < vertices; ++k, pos += kVertexSize) {
      AddLoadedVertex(*feature, ReadLittleEndian<float>(&data[pos]),
                      ReadLittleEndian<float>(&data[pos + 4]), isLatLon);
    }
    AddFeature(std::move(feature));
  }
}

}  // namespace zephra
