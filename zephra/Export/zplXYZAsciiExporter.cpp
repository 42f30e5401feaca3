#include <zephra/Export/zplXYZAsciiExporter.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <zephra/Common/zpNumberText.h>
#include <zephra/Common/private/zpTextOutputFile.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

namespace zephra {

namespace {

float RowY(const TImageHeader& header, int32_t r) {
  const double step = static_cast<double>(r) * header.ResolutionY;
  return static_cast<float>(header.IsLatLon() ? header.Maxy - step : header.Miny + step);
}

}  // namespace

void TXYZAsciiExporter::ExportImage(const TAbstractImage* Source, const std::string& FileName,
                                    const TExportProgressEvent& OnProgress) {
  CheckExportArguments(Source, FileName);
  const TImageHeader& header = *Source->Header();
  const TNumberFormat format;
  TTextOutputFile file(FileName, TOutputFile::omInPlace);

  // One row's lines are built in place: three numbers, two blanks and CR LF per cell.
  const size_t lineRoom = 3 * TNumberFormat::MaxLength + 4;
  std::vector<char> rows(static_cast<size_t>(std::max(header.Width, 0)) * lineRoom);
  for (int32_t r = 0; r < header.Height; ++r) {
    char yText[TNumberFormat::MaxLength];
    const std::string_view y(yText, format.Fixed(yText, RowY(header, r), 4) - yText);
    char* out = rows.data();
    for (int32_t c = 0; c < header.Width; ++c) {
      const auto x = static_cast<float>(header.Minx + static_cast<double>(c) * header.ResolutionX);
      out = format.Fixed(out, x, 4);
      *out++ = ' ';
      out = std::copy(y.begin(), y.end(), out);
      *out++ = ' ';
      out = format.Fixed(out, Source->ReadCR(c + 1, r + 1), 4);
      *out++ = '\r';
      *out++ = '\n';
    }
    file.Write(std::string_view(rows.data(), static_cast<size_t>(out - rows.data())));
    if (OnProgress) {
      OnProgress(r, header.Height - 1);
    }
  }
  file.Commit();
}

}  // namespace zephra
