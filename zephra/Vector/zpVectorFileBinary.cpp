// The binary form of the coordinate file, read only: records of a 32-bit id, a 32-bit vertex
// count n and n pairs of 32-bit floats, all little-endian, up to the end of the data.

#include <zephra/Vector/zpVectorFile.h>

#include <bit>
#include <span>

#include <zephra/Common/private/zpStreamBytes.h>

namespace zephra {

namespace {

constexpr size_t kRecordHeaderSize = 8;
constexpr size_t kVertexSize = 8;

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
  const std::string bytes = ReadStreamToEnd(Stream);
  const std::span<const uint8_t> data(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
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
