#pragma once
// The one way the suites make a small raster of any cell type: in memory through the image
// classes, or on disk as a .doc written by hand (so that reading tests do not lean on the header
// writer) beside a raw .img. Also a snapshot of a folder, to prove that nothing changed.

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include "support/TestSupport.h"

namespace zephra::test {

// The frame of a test raster: its size, the south-west corner and the cell size on each axis.
struct TGrid {
  int32_t Width = 4;
  int32_t Height = 3;
  float Minx = 0.0f;
  float Miny = 0.0f;
  float CellX = 1.0f;
  float CellY = 1.0f;

  float Maxx() const { return Minx + CellX * static_cast<float>(Width); }
  float Maxy() const { return Miny + CellY * static_cast<float>(Height); }
};

inline TImageHeader GridHeader(const TGrid& grid = {}) {
  TImageHeader header;
  header.Width = grid.Width;
  header.Height = grid.Height;
  header.Minx = grid.Minx;
  header.Maxx = grid.Maxx();
  header.Miny = grid.Miny;
  header.Maxy = grid.Maxy();
  header.ResolutionX = grid.CellX;
  header.ResolutionY = grid.CellY;
  return header;
}

// 0, 1, 2, ...: every cell holds its own index.
inline std::vector<float> Iota(int32_t count) {
  std::vector<float> cells(static_cast<size_t>(std::max(count, 0)));
  for (size_t i = 0; i < cells.size(); ++i) {
    cells[i] = static_cast<float>(i);
  }
  return cells;
}

// A raster of class TImage on the header, memory-only unless a file name is given. The cells go
// straight into the buffer, row by row from the north-west, as if the image had read them: neither
// the header's range nor FirstWrite moves. Cells past them keep the fill of a new image. Each
// value must fit the cell type.
template <typename TImage = TRealImage>
std::unique_ptr<TImage> MakeImage(const TImageHeader& header, const std::vector<float>& cells = {},
                                  const std::string& fileName = "") {
  using TCell = typename decltype(TImage::Buffer)::value_type;
  auto image = TImage::Create(fileName, &header);
  image->MemOnly = fileName.empty();
  for (size_t i = 0; i < cells.size() && i < image->Buffer.size(); ++i) {
    image->Buffer[i] = static_cast<TCell>(cells[i]);
  }
  return image;
}

// A binary .doc of the grid; the Extra lines, each ended by CR LF, follow the bounds. An empty
// data type is "real", or the cells' own type in WriteRaster.
struct TRasterDoc {
  TGrid Grid{};
  std::string DataType{};
  std::string Extra{};
};

inline std::string DocText(const TRasterDoc& doc) {
  const TGrid& g = doc.Grid;
  return "data type : " + (doc.DataType.empty() ? "real" : doc.DataType) +
         "\r\nfile type : binary\r\ncolumns : " + std::to_string(g.Width) +
         "\r\nrows : " + std::to_string(g.Height) + "\r\nmin. X : " + std::to_string(g.Minx) +
         "\r\nmax. X : " + std::to_string(g.Maxx()) + "\r\nmin. Y : " + std::to_string(g.Miny) +
         "\r\nmax. Y : " + std::to_string(g.Maxy()) + "\r\n" + doc.Extra;
}

template <typename TCell>
std::string CellBytes(const std::vector<TCell>& cells) {
  return std::string(reinterpret_cast<const char*>(cells.data()), cells.size() * sizeof(TCell));
}

template <typename TCell>
std::vector<TCell> CellsOf(const std::string& bytes) {
  std::vector<TCell> cells(bytes.size() / sizeof(TCell));
  if (!cells.empty()) {
    std::memcpy(cells.data(), bytes.data(), cells.size() * sizeof(TCell));
  }
  return cells;
}

// Writes base.doc and base.img into dir and returns the .img name.
template <typename TCell>
std::string WriteRaster(const TTempDir& dir, const std::string& base,
                        const std::vector<TCell>& cells, TRasterDoc doc = {}) {
  if (doc.DataType.empty()) {
    doc.DataType = std::is_floating_point_v<TCell> ? "real"
                   : sizeof(TCell) == 1            ? "byte"
                   : sizeof(TCell) == 2            ? "integer"
                                                   : "integer32";
  }
  WriteFileBytes(dir.File(base + ".doc"), DocText(doc));
  WriteFileBytes(dir.File(base + ".img"), CellBytes(cells));
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
