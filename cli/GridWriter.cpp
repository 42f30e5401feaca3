#include "GridWriter.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>
#include <string>

#include "NumberText.h"
#include "Progress.h"

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
  std::string line;
  for (int32_t r = 0; r < header.Height; ++r) {
    line.clear();
    for (int32_t c = 0; c < header.Width; ++c) {
      const float value = source.ReadCR0(c, r);
      line += c > 0 ? " " : "";
      line += noData.Holds(value) ? noDataText : ShortText(value);
    }
    out << line << "\r\n";
    progress.Update(static_cast<int64_t>(r + 1) * header.Width);
  }
  out.close();
  if (!out) {
    throw std::runtime_error("cannot be written");
  }
}

}  // namespace zephra::cli
