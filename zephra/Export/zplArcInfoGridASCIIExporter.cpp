#include <zephra/Export/zplArcInfoGridASCIIExporter.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include <zephra/Common/private/zpTextOutputFile.h>
#include <zephra/Common/zpNumberText.h>
#include <zephra/Common/zpSpatialConst.h>
#include <zephra/Raster/Images/private/zplbZephraRowRead.h>
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

  // One row's text is built in place: room for the widest number and its blank per cell.
  const auto width = static_cast<size_t>(std::max(header.Width, 0));
  std::vector<char> line(width * (TNumberFormat::MaxLength + 1));
  std::vector<float> cells(width);
  for (int32_t r = 1; r <= header.Height; ++r) {
    ReadRowSingles(*Source, r - 1, cells, [&](int32_t c) { return Source->ReadCR(c + 1, r); });
    char* out = line.data();
    for (size_t c = 0; c < width; ++c) {
      if (c > 0) {
        *out++ = ' ';
      }
      const float value = cells[c];
      out = TSpatialConst::IsFlag(value) ? CopyText(out, "-9999") : format.Fixed(out, value, 4);
    }
    file.WriteLine(std::string_view(line.data(), static_cast<size_t>(out - line.data())));
    if (OnProgress) {
      OnProgress(r - 1, header.Height - 1);
    }
  }
  file.Commit();
}

}  // namespace zephra
