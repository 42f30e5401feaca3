#include <zephra/Export/zplXYZAsciiExporter.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <zephra/Common/private/zpTextOutputFile.h>
#include <zephra/Common/zpNumberText.h>
#include <zephra/Export/private/zplRowTexts.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

namespace zephra {

namespace {

float RowY(const TImageHeader& header, int32_t r) {
  const double step = static_cast<double>(r) * header.ResolutionY;
  return static_cast<float>(header.IsLatLon() ? header.Maxy - step : header.Miny + step);
}

// The x texts of the columns: every row repeats them, so each is formatted once.
class TColumnTexts {
 public:
  TColumnTexts(const TImageHeader& header, const TNumberFormat& format) {
    const auto width = static_cast<size_t>(std::max(header.Width, 0));
    FBytes.resize(width * TNumberFormat::MaxLength);
    FEnds.reserve(width);
    char* out = FBytes.data();
    for (size_t c = 0; c < width; ++c) {
      const auto x = static_cast<float>(header.Minx + static_cast<double>(c) * header.ResolutionX);
      out = format.Fixed(out, x, 4);
      FEnds.push_back(static_cast<size_t>(out - FBytes.data()));
    }
  }

  std::string_view operator[](size_t c) const {
    const size_t begin = c == 0 ? 0 : FEnds[c - 1];
    return {FBytes.data() + begin, FEnds[c] - begin};
  }

 private:
  std::vector<char> FBytes;
  std::vector<size_t> FEnds;
};

}  // namespace

void TXYZAsciiExporter::ExportImage(const TAbstractImage* Source, const std::string& FileName,
                                    const TExportProgressEvent& OnProgress) {
  CheckExportArguments(Source, FileName);
  const TImageHeader& header = *Source->Header();
  const TNumberFormat format;
  TTextOutputFile file(FileName, TOutputFile::omInPlace);

  // A row's lines are built in place: three numbers, two blanks and CR LF per cell.
  const size_t lineRoom = 3 * TNumberFormat::MaxLength + 4;
  const TColumnTexts xTexts(header, format);
  WriteRowTexts(
      file, *Source,
      [&](int32_t r, std::span<const float> cells, std::string& text) {
        char yText[TNumberFormat::MaxLength];
        const std::string_view y(yText, format.Fixed(yText, RowY(header, r), 4) - yText);
        const size_t start = text.size();
        text.resize(start + cells.size() * lineRoom);
        char* out = text.data() + start;
        for (size_t c = 0; c < cells.size(); ++c) {
          const std::string_view x = xTexts[c];
          out = std::copy(x.begin(), x.end(), out);
          *out++ = ' ';
          out = std::copy(y.begin(), y.end(), out);
          *out++ = ' ';
          out = format.Fixed(out, cells[c], 4);
          *out++ = '\r';
          *out++ = '\n';
        }
        text.resize(static_cast<size_t>(out - text.data()));
      },
      [&](int32_t r) {
        if (OnProgress) {
          OnProgress(r, header.Height - 1);
        }
      });
  file.Commit();
}

}  // namespace zephra
