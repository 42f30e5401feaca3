// The .doc reader: key dispatch, value parsing and the legend block.

#include <zephra/Raster/Header/zplbZephraImageHeader.h>

#include <array>
#include <filesystem>
#include <string_view>

#include <zephra/Common/zpNumberText.h>
#include <zephra/Common/zpPlatform.h>
#include <zephra/Common/private/zpTextReader.h>
#include <zephra/Raster/Header/zpHeaderUtils.h>

namespace zephra {

namespace {

// Fills a header from the lines of one reader. Numbers use the decimal separator of the locale
// in force when the load starts.
class THeaderParser {
 public:
  THeaderParser(TImageHeader& header, TTextReader& reader) : FHeader(header), FReader(reader) {}

  void Run();

 private:
  using TApply = void (*)(THeaderParser&, const std::string&);
  struct TKeyRule {
    std::string_view Key;
    TApply Apply;
  };

  void ApplyLine(const std::string& key, const std::string& value);
  void SetDataType(const std::string& value);
  void SetFileType(const std::string& value);
  void SetFlag(const std::string& value);
  void ReadLegend(const std::string& value);
  float Float(const std::string& value) const { return FFormat.ParseFloat(value); }

  static const std::array<TKeyRule, 22> kRules;

  TImageHeader& FHeader;
  TTextReader& FReader;
  const TNumberFormat FFormat;
};

// "pos'n error", "resolution" and "value error" are written but never read back: they are
// simply not in this table, like any unknown key.
const std::array<THeaderParser::TKeyRule, 22> THeaderParser::kRules = {{
    {"file title", [](THeaderParser& p, const std::string& v) { p.FHeader.FileTitle = v; }},
    {"data type", [](THeaderParser& p, const std::string& v) { p.SetDataType(v); }},
    {"file type", [](THeaderParser& p, const std::string& v) { p.SetFileType(v); }},
    {"columns", [](THeaderParser& p, const std::string& v) { p.FHeader.Width = ParseInt(v); }},
    {"rows", [](THeaderParser& p, const std::string& v) { p.FHeader.Height = ParseInt(v); }},
    {"ref. system", [](THeaderParser& p, const std::string& v) { p.FHeader.SetRefSystem(v); }},
    {"ref. units", [](THeaderParser& p, const std::string& v) { p.FHeader.RefUnits = v; }},
    {"unit dist.",
     [](THeaderParser& p, const std::string& v) { p.FHeader.UnitDistance = p.Float(v); }},
    {"min. X", [](THeaderParser& p, const std::string& v) { p.FHeader.Minx = p.Float(v); }},
    {"max. X", [](THeaderParser& p, const std::string& v) { p.FHeader.Maxx = p.Float(v); }},
    {"min. Y", [](THeaderParser& p, const std::string& v) { p.FHeader.Miny = p.Float(v); }},
    {"max. Y", [](THeaderParser& p, const std::string& v) { p.FHeader.Maxy = p.Float(v); }},
    {"min. value", [](THeaderParser& p, const std::string& v) { p.FHeader.MinValue = p.Float(v); }},
    {"max. value", [](THeaderParser& p, const std::string& v) { p.FHeader.MaxValue = p.Float(v); }},
    {"value units", [](THeaderParser& p, const std::string& v) { p.FHeader.ValueUnits = v; }},
    {"flag value", [](THeaderParser& p, const std::string& v) { p.SetFlag(v); }},
    {"flag def'n", [](THeaderParser& p, const std::string& v) { p.FHeader.FlagDef = v; }},
    {"legend cats", [](THeaderParser& p, const std::string& v) { p.ReadLegend(v); }},
    {"comment", [](THeaderParser& p, const std::string& v) { p.FHeader.Comment = v; }},
    {"Lineage", [](THeaderParser& p, const std::string& v) { p.FHeader.Lineage = v; }},
    {"Completeness", [](THeaderParser& p, const std::string& v) { p.FHeader.Completeness = v; }},
    {"Consistency", [](THeaderParser& p, const std::string& v) { p.FHeader.Consistency = v; }},
}};

void THeaderParser::Run() {
  std::string line;
  std::string key;
  std::string value;
  while (FReader.ReadLine(line)) {
    ZephraHeaderProcessLine(line, key, value);
    ApplyLine(key, value);
  }
  if (FHeader.Width == 0 || FHeader.Height == 0) {
    throw Exception("Header doesn't contain required Width or Height value");
  }
  FHeader.ResolutionX =
      static_cast<float>((static_cast<double>(FHeader.Maxx) - FHeader.Minx) / FHeader.Width);
  FHeader.ResolutionY =
      static_cast<float>((static_cast<double>(FHeader.Maxy) - FHeader.Miny) / FHeader.Height);
}

void THeaderParser::ApplyLine(const std::string& key, const std::string& value) {
  for (const TKeyRule& rule : kRules) {
    if (SameText(key, std::string(rule.Key))) {
      rule.Apply(*this, value);
      return;
    }
  }
}

void THeaderParser::SetDataType(const std::string& value) {
  static constexpr std::array<std::pair<std::string_view, TDataType>, 4> kWords = {{
      {"real", dtReal},
      {"integer", dtInteger},
      {"byte", dtByte},
      {"integer32", dtInteger32},
  }};
  for (const auto& [word, type] : kWords) {
    if (SameText(value, std::string(word))) {
      FHeader.DataType = type;
      return;
    }
  }
  throw Exception("Unknown data type: " + value);
}

void THeaderParser::SetFileType(const std::string& value) {
  if (SameText(value, "ascii")) {
    FHeader.FileType = ftAscii;
  } else if (SameText(value, "binary")) {
    FHeader.FileType = ftBinary;
  } else {
    throw Exception("Unknown file type: " + value);
  }
}

void THeaderParser::SetFlag(const std::string& value) {
  float flag = 0.0f;
  FHeader.Flag = FFormat.TryParseFloat(value, flag);
  FHeader.FlagValue = FHeader.Flag ? flag : -999.0f;
}

// The count takes the next lines whatever they say; lines missing at the end of the text count
// as empty categories.
void THeaderParser::ReadLegend(const std::string& value) {
  int32_t count = 0;
  if (!TryParseInt(value, count)) {
    return;
  }
  // Every category is a string, also those of lines the text lacks, so a damaged count in a tiny
  // file would cost that many strings: a count beyond the open allocation limit is refused
  // before the room for it is taken, all at once.
  if (count > 0) {
    const size_t total = FHeader.Categories.size() + static_cast<size_t>(count);
    CheckOpenAllocation(FHeader.FileName, static_cast<int64_t>(total * sizeof(std::string)));
    FHeader.Categories.reserve(total);
  }
  std::string line;
  std::string key;
  std::string text;
  for (int32_t i = 0; i < count; ++i) {
    text.clear();
    if (FReader.ReadLine(line)) {
      ZephraHeaderProcessLine(line, key, text);
    }
    FHeader.Categories.push_back(text);
  }
}

}  // namespace

void TImageHeader::LoadFromFile(const std::string& FileName) {
  // The image's name and the header's own name lead to the same file.
  this->FileName = std::filesystem::path(FileName).replace_extension(".doc").string();
  TTextReader reader = TTextReader::FromFile(this->FileName);
  THeaderParser(*this, reader).Run();
}

void TImageHeader::LoadFromStream(std::istream& Stream) {
  TTextReader reader(Stream);
  THeaderParser(*this, reader).Run();
}

}  // namespace zephra
