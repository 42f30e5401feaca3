#pragma once
// Helpers of the image suites: a binary raster on disk (its .doc written by hand, so that the
// tests do not lean on the header writer) and a snapshot of a folder, to prove nothing changed.

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "support/TestSupport.h"

namespace zephra::test {

struct TRasterDoc {
  int32_t Width = 4;
  int32_t Height = 3;
  std::string DataType = "real";
  float Maxx = 4.0f;
  float Maxy = 3.0f;
};

inline std::string DocText(const TRasterDoc& doc) {
  return "data type : " + doc.DataType +
         "\r\nfile type : binary\r\ncolumns : " + std::to_string(doc.Width) +
         "\r\nrows : " + std::to_string(doc.Height) +
         "\r\nmin. X : 0\r\nmax. X : " + std::to_string(doc.Maxx) +
         "\r\nmin. Y : 0\r\nmax. Y : " + std::to_string(doc.Maxy) + "\r\n";
}

template <typename T>
std::vector<T> CellsOf(const std::string& bytes) {
  std::vector<T> cells(bytes.size() / sizeof(T));
  if (!cells.empty()) {
    std::memcpy(cells.data(), bytes.data(), cells.size() * sizeof(T));
  }
  return cells;
}

// Writes base.doc and base.img into dir; returns the .img name.
template <typename T>
std::string WriteRaster(const TTempDir& dir, const std::string& base, const TRasterDoc& doc,
                        const std::vector<T>& cells) {
  WriteFileBytes(dir.File(base + ".doc"), DocText(doc));
  WriteFileBytes(dir.File(base + ".img"), std::string(reinterpret_cast<const char*>(cells.data()),
                                                      cells.size() * sizeof(T)));
  return dir.File(base + ".img");
}

// Name, last-write time and bytes of every file in the folder.
inline std::vector<std::string> FolderState(const TTempDir& dir) {
  std::vector<std::string> state;
  for (const auto& entry : std::filesystem::directory_iterator(dir.Path())) {
    state.push_back(entry.path().string() + " " +
                    std::to_string(entry.last_write_time().time_since_epoch().count()) + " " +
                    ReadFileBytes(entry.path().string()));
  }
  std::sort(state.begin(), state.end());
  return state;
}

}  // namespace zephra::test
