#include <zephra/Export/zplArcInfoGridASCIIExporter.h>

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

#include <zephra/Common/private/zpTextOutputFile.h>
#include <zephra/Common/zpNumberText.h>
#include <zephra/Common/zpSpatialConst.h>
#include <zephra/Export/private/zplRowTexts.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

namespace zephra {

namespace {

void WriteHeaderLines(TTextOutputFile& file, const TImageHeader& header,
                      const TNumberFormat& format) {
  file.WriteLine("ncols        " + std::to_string(header.Width));
  file.WriteLine("nrows        " + std::to_string(header.Height));
  file.WriteLine("xllcorner    " + format.Fixed(header.Minx, 4));
  file.WriteLine("yllcorner    " + format.Fixed(header.Miny, 4));
  file.WriteLine("cellsize     " + format.Fixed(header.ResolutionX, 4));
  file.WriteLine("NODATA_value -9999");
}

char* CopyText(char* out, std::string_view text) {
  return std::copy(text.begin(), text.end(), out);
}

}  // namespace

void TArcInfoGridASCIIExporter::ExportImage(const TAbstractImage* Source,
                                            const std::string& FileName,
                                            const TExportProgressEvent& OnProgress) {
  CheckExportArguments(Source, FileName);
  const TImageHeader& header = *Source->Header();
  const TNumberFormat format;
  TTextOutputFile file(FileName, TOutputFile::omInPlace);
  WriteHeaderLines(file, header, format);

  // Each row's text is built in place: room for the widest number and its blank per cell.
  WriteRowTexts(
      file, *Source,
      [&format](int32_t, std::span<const float> cells, std::string& text) {
        const size_t start = text.size();
        text.resize(start + cells.size() * (TNumberFormat::MaxLength + 1) + 2);
        char* out = text.data() + start;
        for (size_t c = 0; c < cells.size(); ++c) {
          if (c > 0) {
            *out++ = ' ';
          }
          const float value = cells[c];
          out = TSpatialConst::IsFlag(value) ? CopyText(out, "-9999") : format.Fixed(out, value, 4);
        }
        out = CopyText(out, "\r\n");
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
