// The .doc writer and the printed report. Both give the same lines from one table of labels and
// differ only in how values are joined to labels and how numbers are shown.

#include <zephra/Raster/Header/zplbZephraImageHeader.h>

#include <filesystem>
#include <string_view>

#include <zephra/Common/zpNumberText.h>
#include <zephra/Common/private/zpOutputFile.h>
#include <zephra/Raster/Header/private/zplbZephraImageHeaderSave.h>
#include <zephra/Common/private/zpTextWriter.h>
#include <zephra/Raster/Header/zpHeaderUtils.h>

namespace zephra {

namespace {

// Every label holds key, padding, colon and the blank behind it, so keys take twelve places.
namespace Labels {
constexpr std::string_view FileTitle = "file title  : ";
constexpr std::string_view DataType = "data type   : ";
constexpr std::string_view Columns = "columns     : ";
constexpr std::string_view Rows = "rows        : ";
constexpr std::string_view RefSystem = "ref. system : ";
constexpr std::string_view RefUnits = "ref. units  : ";
constexpr std::string_view UnitDist = "unit dist.  : ";
constexpr std::string_view MinX = "min. X      : ";
constexpr std::string_view MaxX = "max. X      : ";
constexpr std::string_view MinY = "min. Y      : ";
constexpr std::string_view MaxY = "max. Y      : ";
constexpr std::string_view Resolution = "resolution  : ";
constexpr std::string_view MinValue = "min. value  : ";
constexpr std::string_view MaxValue = "max. value  : ";
constexpr std::string_view ValueUnits = "value units : ";
constexpr std::string_view FlagValue = "flag value  : ";
constexpr std::string_view FlagDef = "flag def'n  : ";
constexpr std::string_view LegendCats = "legend cats : ";
constexpr std::string_view Comment = "Comment     : ";
constexpr std::string_view Lineage = "Lineage     : ";
constexpr std::string_view Completeness = "Completeness: ";
constexpr std::string_view Consistency = "Consistency : ";

constexpr std::string_view FileTypeBinary = "file type   : binary";
constexpr std::string_view FileTypeAscii = "file type   : ascii";
constexpr std::string_view PosnError = "pos'n error : unknown";
constexpr std::string_view ValueError = "value error : unknown";

constexpr std::string_view WordReal = "real";
constexpr std::string_view WordInteger = "integer";
constexpr std::string_view WordByte = "byte";
constexpr std::string_view WordNone = "none";
constexpr std::string_view CategoryPrefix = "category ";
constexpr std::string_view Separator = " : ";
}  // namespace Labels

// How one output shows values and where its lines go.
class THeaderFormatter {
 public:
  virtual ~THeaderFormatter() = default;

  virtual void Emit(std::string_view line) = 0;
  virtual std::string Join(std::string_view label, std::string_view value) const = 0;
  virtual std::string Integer(int32_t value) const = 0;
  virtual std::string Float(float value) const = 0;
  virtual std::string Resolution(double value) const = 0;
  virtual std::string FlagValue(float value) const = 0;
  virtual std::string Category(size_t index, std::string_view text) const = 0;

  void Pair(std::string_view label, std::string_view value) { Emit(Join(label, value)); }

 protected:
  const TNumberFormat FFormat;
};

// The .doc form: two blanks between colon and value, "%d" integers, "%e" floats.
class TDocFormatter final : public THeaderFormatter {
 public:
  explicit TDocFormatter(std::ostream& stream) : FWriter(stream) {}

  void Flush() { FWriter.Flush(); }

  void Emit(std::string_view line) override { FWriter.WriteLine(line); }
  std::string Join(std::string_view label, std::string_view value) const override {
    return std::string(label) + ' ' + std::string(value);
  }
  std::string Integer(int32_t value) const override { return std::to_string(value); }
  std::string Float(float value) const override { return FFormat.Scientific(value); }
  std::string Resolution(double value) const override { return FFormat.Scientific(value); }
  std::string FlagValue(float value) const override { return FFormat.Scientific(value); }
  // "category" and the index right-aligned in two places, then " : " and the text.
  std::string Category(size_t index, std::string_view text) const override {
    std::string number = std::to_string(index);
    if (number.size() < 2) {
      number.insert(0, 1, ' ');
    }
    return std::string(Labels::CategoryPrefix) + ' ' + number + ' ' +
           std::string(Labels::Separator) + std::string(text);
  }

 private:
  TTextWriter FWriter;
};

// The report: one blank after the colon and the general number form.
class TReportFormatter final : public THeaderFormatter {
 public:
  explicit TReportFormatter(std::string& text) : FText(text) {}

  void Emit(std::string_view line) override {
    FText.append(line);
    FText.append("\r\n");
  }
  std::string Join(std::string_view label, std::string_view value) const override {
    return std::string(label) + std::string(value);
  }
  // Counts pass through a 32-bit float on their way to the general form.
  std::string Integer(int32_t value) const override {
    return FFormat.General(static_cast<float>(value));
  }
  std::string Float(float value) const override { return FFormat.General(value); }
  std::string Resolution(double value) const override { return FFormat.General(value, 6, 6); }
  std::string FlagValue(float value) const override { return FFormat.General(value, 7, 2); }
  std::string Category(size_t index, std::string_view text) const override {
    return std::string(Labels::CategoryPrefix) + std::to_string(index) +
           std::string(Labels::Separator) + std::string(text);
  }

 private:
  std::string& FText;
};

std::string_view DataTypeWord(TDataType type) {
  switch (type) {
    case dtReal:
      return Labels::WordReal;
    case dtInteger:
      return Labels::WordInteger;
    case dtByte:
      return Labels::WordByte;
    case dtInteger32:
      return "integer32";
  }
  throw EImageHeaderError("");
}

std::string_view FileTypeLine(TFileType type) {
  switch (type) {
    case ftAscii:
      return Labels::FileTypeAscii;
    case ftBinary:
      return Labels::FileTypeBinary;
  }
  throw Exception("Unknown File Type");
}

// The quotient is shown as worked out, in double, and never stored: the reader derives its own.
double ResolutionOf(const TImageHeader& header) {
  if (header.Width == 0) {
    throw EMathError("Division by zero: the header has no columns to work out its resolution");
  }
  return (static_cast<double>(header.Maxx) - header.Minx) / header.Width;
}

void WriteLines(const TImageHeader& h, THeaderFormatter& out) {
  out.Pair(Labels::FileTitle, h.FileTitle);
  out.Pair(Labels::DataType, DataTypeWord(h.DataType));
  out.Emit(FileTypeLine(h.FileType));
  out.Pair(Labels::Columns, out.Integer(h.Width));
  out.Pair(Labels::Rows, out.Integer(h.Height));
  out.Pair(Labels::RefSystem, h.RefSystem());
  out.Pair(Labels::RefUnits, h.RefUnits);
  out.Pair(Labels::UnitDist, out.Float(h.UnitDistance));
  out.Pair(Labels::MinX, out.Float(h.Minx));
  out.Pair(Labels::MaxX, out.Float(h.Maxx));
  out.Pair(Labels::MinY, out.Float(h.Miny));
  out.Pair(Labels::MaxY, out.Float(h.Maxy));
  out.Emit(Labels::PosnError);
  out.Pair(Labels::Resolution, out.Resolution(ResolutionOf(h)));
  out.Pair(Labels::MinValue, out.Float(h.MinValue));
  out.Pair(Labels::MaxValue, out.Float(h.MaxValue));
  out.Pair(Labels::ValueUnits, h.ValueUnits);
  out.Emit(Labels::ValueError);
  out.Pair(Labels::FlagValue, h.Flag ? out.FlagValue(h.FlagValue) : std::string(Labels::WordNone));
  if (h.Flag) {
    out.Pair(Labels::FlagDef, h.FlagDef);
  } else {
    out.Emit(Labels::FlagDef);  // the label alone: there is no definition of an absent flag
  }
  out.Pair(Labels::LegendCats, out.Integer(static_cast<int32_t>(h.Categories.size())));
  for (size_t i = 0; i < h.Categories.size(); ++i) {
    out.Emit(out.Category(i, h.Categories[i]));
  }
  out.Pair(Labels::Comment, h.Comment);
  out.Pair(Labels::Lineage, h.Lineage);
  out.Pair(Labels::Completeness, h.Completeness);
  out.Pair(Labels::Consistency, h.Consistency);
}

// What the field FileName holds after a save under imageFN.
std::string DocFieldName(const std::string& imageFN) {
  return std::filesystem::path(imageFN).replace_extension(".DOC").string();
}

}  // namespace

// A name that ends in .doc (any case) is written as given. Any other name - an image, or a name
// without extension - is never replaced: the header goes beside it under the .doc name, in
// lower case so that LoadFromFile finds it. The field FileName takes the ".DOC" form either way.
void TImageHeader::SaveToFile(const std::string& FileName) {
  const std::filesystem::path given(FileName);
  const std::string target = SameText(given.extension().string(), ".doc")
                                 ? FileName
                                 : std::filesystem::path(given).replace_extension(".doc").string();
  this->FileName = DocFieldName(FileName);  // also when the file then can't be written
  TOutputFile file(target);
  SaveToStream(file.Stream());
  file.Commit();
}

void SaveHeaderTo(TImageHeader& Header, TOutputFile& File, const std::string& imageFN) {
  Header.FileName = DocFieldName(imageFN);
  Header.SaveToStream(File.Stream());
}

void TImageHeader::SaveAs(const std::string& imageFN) {
  SaveToFile(imageFN);
}

void TImageHeader::SaveToStream(std::ostream& Stream) const {
  TDocFormatter out(Stream);
  WriteLines(*this, out);
  out.Flush();
}

std::string TImageHeader::Text() const {
  std::string text;
  TReportFormatter out(text);
  WriteLines(*this, out);
  return text;
}

}  // namespace zephra
