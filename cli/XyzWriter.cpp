#include "XyzWriter.h"

#include <fstream>
#include <stdexcept>
#include <string>

#include "NumberText.h"
#include "Progress.h"

namespace zephra::cli {

void WriteXyz(const TAbstractImage& source, const TNoData& noData, float noDataOut,
              const std::filesystem::path& path, TProgress& progress) {
  const TImageHeader& header = *source.Header();
  std::ofstream out(path, std::ios::binary);
  const std::string noDataText = ShortText(noDataOut);
  std::string line;
  for (int32_t r = 0; r < header.Height; ++r) {
    const std::string y = ShortText(header.Maxy - (r + 0.5) * header.ResolutionY);
    for (int32_t c = 0; c < header.Width; ++c) {
      const float value = source.ReadCR0(c, r);
      line = ShortText(header.Minx + (c + 0.5) * header.ResolutionX);
      line += ' ' + y + ' ' + (noData.Holds(value) ? noDataText : ShortText(value)) + "\r\n";
      out << line;
    }
    progress.Update(static_cast<int64_t>(r + 1) * header.Width);
  }
  out.close();
  if (!out) {
    throw std::runtime_error("cannot be written");
  }
}

}  // namespace zephra::cli
