// The text form of the coordinate file: a record header "id count" per feature, one "x y" line
// per vertex, and a closing "0 0". Reading parses the decoded text in place.

#include <zephra/Vector/zpVectorFile.h>

#include <algorithm>
#include <string_view>
#include <utility>

#include <zephra/Common/zpNumberText.h>
#include <zephra/Common/private/zpTextReader.h>
#include <zephra/Common/private/zpTextWriter.h>

namespace zephra {

namespace {

// The highest vertex count that the readers take from a record header.
constexpr int32_t kMaxFileVertices = 65535;

// Plain decimals such as "-12.34", the whole of what the writer produces, are parsed here: with at
// most 15 digits the digits form an exact integer and one division by an exact power of ten
// rounds correctly, so the result is the very float that the shared parser gives. Any other
// form (exponents, a plus sign, blanks, more digits, malformed text) goes to the shared parser.
float ParseCoordinate(const TNumberFormat& format, std::string_view text) {
  static constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                            1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  constexpr int kMaxDigits = 15;
  const bool negative = !text.empty() && text.front() == '-';
  int64_t mantissa = 0;
  int digits = 0;
  int decimals = -1;  // no separator yet
  for (size_t i = negative ? 1 : 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c >= '0' && c <= '9' && digits < kMaxDigits) {
      mantissa = mantissa * 10 + (c - '0');
      ++digits;
      decimals += decimals >= 0 ? 1 : 0;
    } else if (c == format.DecimalSeparator() && decimals < 0 && digits > 0) {
      decimals = 0;
    } else {
      return format.ParseFloat(text);
    }
  }
  if (digits == 0 || decimals == 0) {
    return format.ParseFloat(text);
  }
  const double value = static_cast<double>(mantissa) / kPowersOfTen[std::max(decimals, 0)];
  return static_cast<float>(negative ? -value : value);
}

// Hands out the lines of the decoded coordinate text split into their first two fields, and
// counts them so that an error can say where the text went wrong. Lines end at CR LF, LF or a
// lone CR, as everywhere in the library; one pass over each line finds its end and its blanks.
class TCoordinateLines {
 public:
  TCoordinateLines(std::string_view text, const std::string& fileName)
      : FText(text), FFileName(fileName) {}

  bool AtEnd() const { return FPos >= FText.size(); }

  // The first two blank-separated fields of the next line; what stands beyond them is ignored.
  // A missing line or a line with fewer than two fields raises EVectorFileError; `expected`
  // names what the line should have held.
  std::pair<std::string_view, std::string_view> Next(const char* expected) {
    if (AtEnd()) {
      Fail(FLineNumber + 1, std::string("the text ends where ") + expected + " must stand");
    }
    ++FLineNumber;
    const size_t start = FPos;
    size_t firstBlank = std::string_view::npos;
    size_t secondBlank = std::string_view::npos;
    size_t end = start;
    for (; end < FText.size() && FText[end] != '\n' && FText[end] != '\r'; ++end) {
      if (FText[end] == ' ' && secondBlank == std::string_view::npos) {
        (firstBlank == std::string_view::npos ? firstBlank : secondBlank) = end;
      }
    }
    FPos = end + 1;
    if (end + 1 < FText.size() && FText[end] == '\r' && FText[end + 1] == '\n') {
      ++FPos;
    }
    if (firstBlank == std::string_view::npos) {
      Fail(FLineNumber, std::string("expected ") + expected + ", found \"" +
                            std::string(FText.substr(start, end - start)) + "\"");
    }
    const size_t secondEnd = std::min(end, secondBlank);
    return {FText.substr(start, firstBlank - start),
            FText.substr(firstBlank + 1, secondEnd - firstBlank - 1)};
  }

 private:
  [[noreturn]] void Fail(int64_t lineNumber, const std::string& what) const {
    throw EVectorFileError("Vector file (" + FFileName + "), line " + std::to_string(lineNumber) +
                           ": " + what);
  }

  const std::string_view FText;
  const std::string& FFileName;
  size_t FPos = 0;
  int64_t FLineNumber = 0;
};

}  // namespace

void TVector::LoadText(std::istream& Stream) {
  const TTextReader reader(Stream);
  TCoordinateLines lines(reader.Text(), FileName);
  const TNumberFormat format;
  const bool isLatLon = FHeader->IsLatLon();
  const char* const recordHeader = "a record header of an id and a vertex count";

  auto [idText, countText] = lines.Next(recordHeader);
  float id = ParseCoordinate(format, idText);
  int32_t count = ParseInt(countText);
  while (!lines.AtEnd()) {
    // The count is a 16-bit field of the format: a larger one keeps only its low 16 bits.
    const auto vertices = static_cast<uint16_t>(count);
    if (vertices >= 1) {
      auto feature = std::make_unique<TFeature>(id);
      feature->FPoints.reserve(vertices);
      for (uint16_t k = 0; k < vertices; ++k) {
        const auto [xText, yText] = lines.Next("a vertex of an X and a Y");
        const float x = ParseCoordinate(format, xText);
        AddLoadedVertex(*feature, x, ParseCoordinate(format, yText), isLatLon);
      }
      AddFeature(std::move(feature));
    }
    std::tie(idText, countText) = lines.Next(recordHeader);
    id = ParseCoordinate(format, idText);
    count = ParseInt(countText);
  }
}

void TVector::SaveToStream(std::ostream& Stream) {
  FHeader->SetFileType("ASCII");
  TTextWriter writer(Stream);
  const TNumberFormat format;
  char line[2 * TNumberFormat::MaxLength + 1];
  for (size_t index = 0; index < FFeatures.size(); ++index) {
    const TFeature& feature = *FFeatures[index];
    if (feature.FPoints.empty()) {
      throw EVectorFileError("Vector file feature has zero points");
    }
    if (feature.GetCount() > kMaxFileVertices) {
      throw EVectorFileError("Vector file feature " + std::to_string(index) + " has " +
                             std::to_string(feature.GetCount()) +
                             " points; a coordinate file holds at most 65535 per feature");
    }
    char* end = format.Fixed(line, feature.Id, 2);
    *end++ = ' ';
    writer.WriteLine({line, format.Integer(end, feature.GetCount())});
    for (const TGeoPoint& point : feature.FPoints) {
      end = format.Fixed(line, point.X(), 2);
      *end++ = ' ';
      writer.WriteLine({line, format.Fixed(end, point.Y(), 2)});
    }
  }
  writer.WriteLine("0 0");
  writer.Flush();
}

}  // namespace zephra
