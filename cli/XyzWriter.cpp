#include "XyzWriter.h"

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "CellBlocks.h"
#include "NumberText.h"
#include "TextRows.h"

namespace zephra::cli {

void WriteXyz(const TAbstractImage& source, const TNoData& noData, float noDataOut,
              const std::filesystem::path& path, TProgress& progress) {
  const TImageHeader& header = *source.Header();
  const std::string noDataText = ShortText(noDataOut);
  // Every row repeats the same x texts: each is formatted once, with the blank after it.
  std::vector<std::string> xs(static_cast<size_t>(std::max(header.Width, 0)));
  for (size_t c = 0; c < xs.size(); ++c) {
    xs[c] = ShortText(header.Minx + (static_cast<double>(c) + 0.5) * header.ResolutionX) + ' ';
  }
  size_t widestX = 0;
  for (const std::string& x : xs) {
    widestX = std::max(widestX, x.size());
  }
  const int32_t width = header.Width;
  std::ofstream out(path, std::ios::binary);
  WriteTextRows(out, header.Height, width, progress, [&](int32_t r, std::string& text) {
    thread_local std::vector<float> scratch;
    const auto cells = CellBlock(source, int64_t{r} * width, width, scratch);
    const std::string y = ShortText(header.Maxy - (r + 0.5) * header.ResolutionY) + ' ';
    // Room for the widest line of every cell, cut back to what was written.
    const size_t start = text.size();
    text.resize(start + cells.size() * (widestX + y.size() + kShortTextRoom + 2));
    char* at = text.data() + start;
    for (size_t c = 0; c < cells.size(); ++c) {
      at = std::copy(xs[c].begin(), xs[c].end(), at);
      at = std::copy(y.begin(), y.end(), at);
      at = WriteCellText(at, cells[c], noData, noDataText);
      *at++ = '\r';
      *at++ = '\n';
    }
    text.resize(static_cast<size_t>(at - text.data()));
  });
  CloseChecked(out);
}

}  // namespace zephra::cli
