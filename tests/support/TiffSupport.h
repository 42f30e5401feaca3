#pragma once
// Reading GeoTIFF files back in tests: libtiff for the cells and tags, listgeo for the
// georeferencing. Users define ZEPHRA_LISTGEO, the path of the listgeo tool.

#include <gtest/gtest.h>
#include <tiffio.h>

#include <array>
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace zephra::test {

struct TTiffClose {
  void operator()(TIFF* tif) const { TIFFClose(tif); }
};
using TTiff = std::unique_ptr<TIFF, TTiffClose>;

inline TTiff OpenTiff(const std::string& fileName) {
  return TTiff(TIFFOpen(fileName.c_str(), "r"));
}

inline std::vector<uint32_t> ReadRowBits(TIFF* tif, uint32_t row, uint32_t width) {
  std::vector<uint32_t> bits(width);
  EXPECT_EQ(TIFFReadScanline(tif, bits.data(), row, 0), 1) << "row " << row;
  return bits;
}

template <typename T>
T Tag(TIFF* tif, ttag_t tag) {
  T value{};
  EXPECT_EQ(TIFFGetField(tif, tag, &value), 1) << "tag " << tag;
  return value;
}

// libtiff doesn't know the no-data tag either, so it reads it as an anonymous counted field.
inline std::string NoDataText(TIFF* tif) {
  uint32_t count = 0;
  const char* text = nullptr;
  if (TIFFGetField(tif, 42113, &count, &text) != 1 || text == nullptr) {
    return "<missing>";
  }
  return std::string(text, count > 0 ? count - 1 : 0);
}

struct TPipeClose {
  void operator()(FILE* pipe) const { pclose(pipe); }
};

inline std::string ListGeo(const std::string& fileName) {
  const std::string command = std::string(ZEPHRA_LISTGEO) + " '" + fileName + "' 2>/dev/null";
  const std::unique_ptr<FILE, TPipeClose> pipe(popen(command.c_str(), "r"));
  std::string output;
  std::array<char, 4096> chunk{};
  while (pipe && fgets(chunk.data(), chunk.size(), pipe.get()) != nullptr) {
    output += chunk.data();
  }
  return output;
}

// The `count` numbers that follow the line holding `label` in listgeo's report.
inline std::vector<double> ListGeoNumbers(const std::string& report, const std::string& label,
                                          int count) {
  const size_t at = report.find(label);
  if (at == std::string::npos) {
    return {};
  }
  std::istringstream numbers(report.substr(report.find('\n', at)));
  std::vector<double> values(count);
  for (double& value : values) {
    numbers >> value;
  }
  return values;
}

}  // namespace zephra::test
