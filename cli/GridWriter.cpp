#include "GridWriter.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "CellBlocks.h"
#include "NumberText.h"
#include "TextRows.h"

namespace zephra::cli {

namespace {

void WriteHeaderLine(std::ofstream& out, const char* label, const std::string& value) {
  out << label << value << "\r\n";
}

}  // namespace

void WriteGrid(const TAbstractImage& source, const TNoData& noData, float noDataOut,
               const std::filesystem::path& path, TProgress& progress) {
  const TImageHeader& header = *source.Header();
  // A header derives both sizes from its bounds in floats, so square cells differ in the last
  // digits; the grid keeps the width, as the library's grid export does.
  const float rx = header.ResolutionX, ry = header.ResolutionY;
  if (std::fabs(rx - ry) > 1e-4f * std::max(std::fabs(rx), std::fabs(ry))) {
    throw std::runtime_error("cells of " + ShortText(header.ResolutionX) + " x " +
                             ShortText(header.ResolutionY) +
                             " are not square, and an ArcInfo grid has one cell size");
  }
  std::ofstream out(path, std::ios::binary);
  WriteHeaderLine(out, "ncols        ", std::to_string(header.Width));
  WriteHeaderLine(out, "nrows        ", std::to_string(header.Height));
  WriteHeaderLine(out, "xllcorner    ", ShortText(header.Minx));
  WriteHeaderLine(out, "yllcorner    ", ShortText(header.Miny));
  WriteHeaderLine(out, "cellsize     ", ShortText(header.ResolutionX));
  const std::string noDataText = ShortText(noDataOut);
  WriteHeaderLine(out, "NODATA_value ", noDataText);
  const int32_t width = header.Width;
  WriteTextRows(out, header.Height, width, progress, [&](int32_t r, std::string& text) {
    thread_local std::vector<float> scratch;
    const auto cells = CellBlock(source, int64_t{r} * width, width, scratch);
    // Room for every number and its blank, cut back to what was written.
    const size_t start = text.size();
    text.resize(start + cells.size() * (kShortTextRoom + 1) + 2);
    char* at = text.data() + start;
    for (size_t c = 0; c < cells.size(); ++c) {
      if (c > 0) {
        *at++ = ' ';
      }
      at = WriteCellText(at, cells[c], noData, noDataText);
    }
    *at++ = '\r';
    *at++ = '\n';
    text.resize(static_cast<size_t>(at - text.data()));
  });
  CloseChecked(out);
}

}  // namespace zephra::cli
