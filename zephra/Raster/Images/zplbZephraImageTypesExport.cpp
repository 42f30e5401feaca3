// Direct text exports of TAbstractImage: the ArcInfo ASCII grid, one XYZ line per cell, and the
// raster's values at the nodes of a node list. All three write the grid of Header(), in the
// decimal form of the locale in force, through the library's one text writer.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpNumberText.h>
#include <zephra/Common/zpSpatialConst.h>
#include <zephra/Common/private/zpTextReader.h>
#include <zephra/Common/private/zpTextOutputFile.h>

namespace zephra {

namespace {

// One line of text built field by field in a buffer of fixed size, which goes to the writer
// whenever it fills up: a row of any width streams through the same memory.
class TLineBuffer {
 public:
  // Room for three numbers with their blanks, the most that any export puts in one step.
  static constexpr size_t kFieldRoom = 3 * (TNumberFormat::MaxLength + 1);

  explicit TLineBuffer(TTextWriter& Writer) : FWriter(Writer), FText(kSize) {}

  // Where the next fields go; they may take up to kFieldRoom bytes.
  char* Next() {
    if (kSize - FUsed < kFieldRoom) {
      FWriter.Write(std::string_view(FText.data(), FUsed));
      FUsed = 0;
    }
    return FText.data() + FUsed;
  }
  void Commit(const char* end) { FUsed = static_cast<size_t>(end - FText.data()); }
  void EndLine() {
    FWriter.WriteLine(std::string_view(FText.data(), FUsed));
    FUsed = 0;
  }

 private:
  static constexpr size_t kSize = 1 << 16;

  TTextWriter& FWriter;
  std::vector<char> FText;
  size_t FUsed = 0;
};

// "%<width>s"-style padding of the text from begin to end: blanks in front up to width.
char* PadLeft(char* begin, char* end, std::ptrdiff_t width) {
  const std::ptrdiff_t missing = width - (end - begin);
  if (missing <= 0) {
    return end;
  }
  std::copy_backward(begin, end, end + missing);
  std::fill(begin, begin + missing, ' ');
  return end + missing;
}

std::string Labelled(const char* label, std::string_view value) {
  std::string line(label);
  line.append(value);
  return line;
}

void WriteArcGridHeader(TTextWriter& writer, const TNumberFormat& format,
                        const TImageHeader& header, float nullVal) {
  writer.WriteLine(Labelled("ncols         ", std::to_string(header.Width)));
  writer.WriteLine(Labelled("nrows         ", std::to_string(header.Height)));
  writer.WriteLine(Labelled("xllcorner     ", format.Fixed(header.Minx, 5)));
  writer.WriteLine(Labelled("yllcorner     ", format.Fixed(header.Miny, 5)));
  writer.WriteLine(Labelled("cellsize      ", format.Fixed(header.ResolutionX, 5)));
  writer.WriteLine(Labelled("nodata_value  ", format.Fixed(nullVal, 5)));
}

// The parts of a node line: a node with both coordinates, a line without the separator, which
// goes through as it stands, or a line whose coordinates don't read, which is dropped.
enum TNodeLine { nlNode, nlText, nlDropped };

// Splits at the first tab if the line holds one, else at the first blank; blanks around either
// coordinate are allowed. A coordinate that doesn't read stays at the flag value, and a node
// must lie above it in both.
TNodeLine ReadNode(const TNumberFormat& format, std::string_view line, float& x, float& y) {
  const char separator = line.find('\t') != std::string_view::npos ? '\t' : ' ';
  const size_t at = line.find(separator);
  if (at == std::string_view::npos) {
    return nlText;
  }
  x = TSpatialConst::FlagValue;
  y = TSpatialConst::FlagValue;
  float value = 0.0f;
  if (format.TryParseFloat(line.substr(0, at), value)) {
    x = value;
  }
  if (format.TryParseFloat(line.substr(at + 1), value)) {
    y = value;
  }
  return x > TSpatialConst::FlagValue && y > TSpatialConst::FlagValue ? nlNode : nlDropped;
}

}  // namespace

// The cells go out as they stand, each with four decimals and one blank behind it: nullVal reaches
// the header alone, and no cell is compared with it.
void TAbstractImage::ExportARCGrid(const std::string& outFN, float nullVal) {
  if (outFN.empty()) {
    return;
  }
  const TNumberFormat format;
  TTextOutputFile file(outFN, TOutputFile::omInPlace);
  const TImageHeader& header = *Header();
  WriteArcGridHeader(file.Writer(), format, header, nullVal);
  ResetFile();
  TLineBuffer line(file.Writer());
  for (int32_t row = 0; row < header.Height; ++row) {
    for (int32_t col = 0; col < header.Width; ++col) {
      char* const begin = line.Next();
      char* end = PadLeft(begin, format.Fixed(begin, FileRead(), 4), 5);
      *end++ = ' ';
      line.Commit(end);
    }
    line.EndLine();
  }
  file.Commit();
}

// Each line names the south-west corner of its cell: x from the west edge, y one cell below the
// row's north edge.
void TAbstractImage::ExportXYZGrid(const std::string& outFN, float /*nullVal*/) {
  if (outFN.empty()) {
    return;
  }
  const TNumberFormat format;
  TTextOutputFile file(outFN, TOutputFile::omInPlace);
  const TImageHeader& header = *Header();
  ResetFile();
  TLineBuffer line(file.Writer());
  for (int32_t r = 1; r <= header.Height; ++r) {
    const auto y = static_cast<float>(header.Maxy - static_cast<double>(r) * header.ResolutionY);
    for (int32_t c = 1; c <= header.Width; ++c) {
      const auto x =
          static_cast<float>((static_cast<double>(c) - 1) * header.ResolutionX + header.Minx);
      char* end = format.Fixed(line.Next(), x, 4);
      *end++ = ' ';
      end = format.Fixed(end, y, 4);
      *end++ = ' ';
      line.Commit(format.Fixed(end, FileRead(), 4));
      line.EndLine();
    }
  }
  file.Commit();
}

// The output is created before the node list is opened, so a node list that can't be read
// leaves an empty file behind; a node off the map ends the export with the lines before it
// written.
void TAbstractImage::ExportNodeGrid(const std::string& inFN, const std::string& outFN,
                                    float /*nullVal*/) {
  if (inFN.empty() || outFN.empty()) {
    return;
  }
  const TNumberFormat format;
  TTextOutputFile file(outFN, TOutputFile::omInPlace);
  TTextReader nodes = TTextReader::FromFile(inFN);
  ResetFile();
  std::string_view line;
  std::string text;
  char number[TNumberFormat::MaxLength];
  while (nodes.ReadLine(line)) {
    float x = 0.0f;
    float y = 0.0f;
    switch (ReadNode(format, line, x, y)) {
      case nlText:
        file.Writer().WriteLine(line);
        break;
      case nlNode: {
        const float value = ReadXY(x, y);
        text.assign(line);
        text.append("      ");
        text.append(number, format.General(number, value, 15));
        file.Writer().WriteLine(text);
        break;
      }
      case nlDropped:
        break;
    }
  }
  file.Commit();
}

}  // namespace zephra
