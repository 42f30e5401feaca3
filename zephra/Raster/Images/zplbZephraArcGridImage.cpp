// TArcGridImage: reads an ArcInfo ASCII grid, header lines by position, cells as one stream of
// tokens, and the value range in the same pass.

#include <zephra/Raster/Images/zplbZephraTextImage.h>

#include <filesystem>
#include <limits>
#include <span>
#include <string_view>

#include <zephra/Common/private/zpTextReader.h>
#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpNumberText.h>
#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Header/zpHeaderUtils.h>
#include <zephra/Raster/Images/private/zplbCellTextParse.h>
#include <zephra/Raster/Images/private/zplbZephraImageClassOf.h>

namespace zephra {

namespace {

constexpr float kMissingHeaderValue = -999.0f;

// The value of a header line: from its first space (or its start, without one), at most 65
// characters, trimmed. The keyword is never looked at.
std::string HeaderValue(TTextReader& reader) {
  std::string line;
  reader.ReadLine(line);
  const size_t space = line.find(' ');
  return TrimControl(line.substr(space == std::string::npos ? 0 : space, 65));
}

// A count that is no whole number counts as 0, and the grid opens empty.
int32_t HeaderCount(TTextReader& reader) {
  int32_t value = 0;
  return TryParseInt(HeaderValue(reader), value) ? value : 0;
}

float HeaderFloat(TTextReader& reader, const TNumberFormat& format) {
  float value = 0.0f;
  return format.TryParseFloat(HeaderValue(reader), value) ? value : kMissingHeaderValue;
}

void ReadHeader(TTextReader& reader, TImageHeader& header) {
  const TNumberFormat format;
  header.Width = HeaderCount(reader);
  header.Height = HeaderCount(reader);
  header.Minx = HeaderFloat(reader, format);
  header.Miny = HeaderFloat(reader, format);
  header.ResolutionX = header.ResolutionY = HeaderFloat(reader, format);
  header.FlagValue = HeaderFloat(reader, format);
  header.FlagDef = "no data";
  header.Maxx =
      static_cast<float>(static_cast<double>(header.Width) * header.ResolutionX + header.Minx);
  header.Maxy =
      static_cast<float>(static_cast<double>(header.Height) * header.ResolutionY + header.Miny);
  header.SetRefSystem("plane");
  header.RefUnits = "unknown";
  header.DataType = dtReal;
  header.FileType = ftAscii;
}

[[noreturn]] void RaiseCellError(int32_t c, int32_t r, const std::string& message) {
  throw Exception("Error reading ArcGrid data at " + std::to_string(c) + "," + std::to_string(r) +
                  "\rMessage: " + message);
}

// The range of the cells above the flag value; the first one sets both ends.
class TGridRange {
 public:
  explicit TGridRange(TImageHeader& header) : FHeader(header) {}

  void Take(float value) {
    if (!(value > FHeader.FlagValue)) {
      return;
    }
    if (!FFound || value < FHeader.MinValue) {
      FHeader.MinValue = value;
    }
    if (!FFound || value > FHeader.MaxValue) {
      FHeader.MaxValue = value;
    }
    FFound = true;
  }

 private:
  TImageHeader& FHeader;
  bool FFound = false;
};

// The cells row by row into a zero-filled buffer, and their range; returns how many the text
// held. The reading stops where the text ends: the cells it did not reach keep the 0.0 they came
// with, and count for the range once.
size_t ReadCells(std::string_view text, std::span<float> cells, int32_t width,
                 TImageHeader& header) {
  const TParsedCells parsed = ParseCellText(text, cells, header.FlagValue);
  if (parsed.FailedAt) {
    const auto columns = static_cast<size_t>(width);
    RaiseCellError(static_cast<int32_t>(*parsed.FailedAt % columns) + 1,
                   static_cast<int32_t>(*parsed.FailedAt / columns) + 1, parsed.Failure);
  }
  TGridRange range(header);
  if (parsed.Min) {
    range.Take(*parsed.Min);
    range.Take(*parsed.Max);
  }
  if (parsed.Cells < cells.size()) {
    range.Take(0.0f);
  }
  return parsed.Cells;
}

}  // namespace

std::unique_ptr<TArcGridImage> TArcGridImage::Create(const std::string& inFileName,
                                                     const TImageHeader* headerIn) {
  return CreateAs<TArcGridImage>(inFileName, headerIn);
}

std::unique_ptr<TArcGridImage> TArcGridImage::Create(const TArcGridImage& Source) {
  return CopyAs(Source);
}

std::unique_ptr<TArcGridImage> TArcGridImage::Open(const std::string& inFileName,
                                                   bool /*aScaleBuff*/) {
  return Construct<TArcGridImage>([&](TArcGridImage& image) { image.ReadGrid(inFileName); });
}

std::unique_ptr<TArcGridImage> TArcGridImage::Open(const std::string& inFileName,
                                                   float aRequestedRes) {
  return OpenReducedAs<TArcGridImage>(inFileName, aRequestedRes);
}

std::unique_ptr<TArcGridImage> TArcGridImage::Open(const std::string& inFileName, float aminx,
                                                   float amaxx, float aminy, float amaxy) {
  return OpenReducedAs<TArcGridImage>(inFileName, aminx, amaxx, aminy, amaxy);
}

TAbstractImageClass TArcGridImage::ClassRef() {
  static const TImageClassOf<TArcGridImage> classRef("TArcGridImage");
  return &classRef;
}

TArcGridImage::~TArcGridImage() {
  CloseOnDestruction();
}

void TArcGridImage::ReadGrid(const std::string& inFileName) {
  std::error_code ignored;
  if (!std::filesystem::exists(inFileName, ignored)) {
    throw EImageFileError(inFileName + " does not exist.");
  }
  TTextReader reader = TTextReader::FromFile(inFileName);
  FHeader = std::make_unique<TImageHeader>();
  FZoomHeader = std::make_unique<TImageHeader>();
  TImageHeader& header = *FHeader;
  ReadHeader(reader, header);

  const int32_t width = header.Width;
  const int32_t height = header.Height;
  const int64_t cells = static_cast<int64_t>(width) * height;
  if (width < 0 && height < 0) {
    // The cell loops cannot run: the count check fails at the position never reached.
    RaiseCellError(-1, -1,
                   "Error reading Ascii Grid File. Read 0 record, expected to read " +
                       std::to_string(cells) + " records");
  }
  // Our choice: sizes no buffer can take are refused before anything is allocated.
  if (width < 0 || height < 0 || cells > std::numeric_limits<int32_t>::max()) {
    throw EImageFileError("ArcInfo grid " + inFileName + " has an impossible size of " +
                          std::to_string(width) + " columns and " + std::to_string(height) +
                          " rows");
  }
  CheckOpenAllocation(inFileName, cells * static_cast<int64_t>(sizeof(float)));
  FirstWrite = false;
  NumRecs = static_cast<int32_t>(cells);
  Buffer = TCellVector<float>(static_cast<size_t>(cells));
  FUnreadFrom = ReadCells(reader.Remaining(), Buffer, width, header);
  BufferPointer = 0;
}

}  // namespace zephra
