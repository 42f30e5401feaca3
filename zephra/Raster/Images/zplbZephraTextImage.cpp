// TAsciiImage: construction, cell access, and the data file of one number per line.

#include <zephra/Raster/Images/zplbZephraTextImage.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include <zephra/Common/private/zpOutputFile.h>
#include <zephra/Common/private/zpTextReader.h>
#include <zephra/Common/private/zpTextWriter.h>
#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpNumberText.h>
#include <zephra/Raster/Images/private/zplbZephraImageClassOf.h>
#include <zephra/Raster/Images/private/zplbZephraRangeScan.h>
#include <zephra/Raster/Images/private/zplbZephraTextCells.h>

namespace zephra {

template <typename TImage>
std::unique_ptr<TImage> TAsciiImage::CreateAs(const std::string& inFileName,
                                              const TImageHeader* headerIn) {
  return Construct<TImage>([&](TImage& image) {
    image.CreateImage(inFileName, headerIn);
    image.FHeader->DataType = dtReal;
    image.FHeader->FileType = ftAscii;
    image.Buffer = FilledCells(static_cast<size_t>(image.NumRecs), 0.0f);
  });
}

template <typename TImage>
std::unique_ptr<TImage> TAsciiImage::CopyAs(const TImage& Source) {
  return Construct<TImage>([&](TImage& image) {
    image.CreateCopy(Source);
    image.Buffer = Source.Buffer;
  });
}

template <typename TImage, typename... TBounds>
std::unique_ptr<TImage> TAsciiImage::OpenReducedAs(const std::string& inFileName,
                                                   TBounds... bounds) {
  return Construct<TImage>([&](TImage& image) { image.OpenImage(inFileName, bounds...); });
}

std::unique_ptr<TAsciiImage> TAsciiImage::Create(const std::string& inFileName,
                                                 const TImageHeader* headerIn) {
  return CreateAs<TAsciiImage>(inFileName, headerIn);
}

std::unique_ptr<TAsciiImage> TAsciiImage::Create(const TAsciiImage& Source) {
  return CopyAs(Source);
}

// Text rasters are never thinned: the base steps run unscaled, LoadData sizes the buffer, and the
// whole file is read into it.
std::unique_ptr<TAsciiImage> TAsciiImage::Open(const std::string& inFileName, bool /*aScaleBuff*/) {
  return Construct<TAsciiImage>([&](TAsciiImage& image) {
    image.OpenImage(inFileName, false);
    image.ReadDataFile();
  });
}

std::unique_ptr<TAsciiImage> TAsciiImage::Open(const std::string& inFileName, float aRequestedRes) {
  return OpenReducedAs<TAsciiImage>(inFileName, aRequestedRes);
}

std::unique_ptr<TAsciiImage> TAsciiImage::Open(const std::string& inFileName, float aminx,
                                               float amaxx, float aminy, float amaxy) {
  return OpenReducedAs<TAsciiImage>(inFileName, aminx, amaxx, aminy, amaxy);
}

TAbstractImageClass TAsciiImage::ClassRef() {
  static const TImageClassOf<TAsciiImage> classRef("TAsciiImage");
  return &classRef;
}

TAsciiImage::~TAsciiImage() {
  CloseOnDestruction();
}

TRange TAsciiImage::GetRangeBetween(float minVal, float maxVal, bool silent) {
  return ScanBuffer(Buffer, minVal, maxVal, silent);
}

float TAsciiImage::BufferRead(int32_t index) const {
  TAbstractImage::BufferRead(index);
  CheckCellIndex(index, Buffer.size());
  return Buffer[static_cast<size_t>(index)];
}

void TAsciiImage::BufferWrite(int32_t index, float val) {
  TAbstractImage::BufferWrite(index, val);
  CheckCellIndex(index, Buffer.size());
  Buffer[static_cast<size_t>(index)] = val;
}

void TAsciiImage::LoadBufferValues(int32_t& /*cursor*/, int32_t /*startCol*/) {}

// A zero-filled buffer of NumRecs cells. The thinned and windowed forms read no text and keep it
// so, so that every index they report is backed by a cell.
void TAsciiImage::LoadData() {
  Buffer = TCellVector<float>(static_cast<size_t>(NumRecs));
  FUnreadFrom = 0;
}

// The cells the reading did not reach are all 0.0, and one of them stands for them all: the scan
// then gives what a scan of every cell in buffer order gives.
TRange TAsciiImage::FreshRangeBetween(float minVal, float maxVal, bool silent) {
  const size_t read = std::min(FUnreadFrom, Buffer.size());
  if (read == Buffer.size()) {
    return GetRangeBetween(minVal, maxVal, silent);
  }
  return ScanCells(
      read + 1, [this, read](size_t i) { return i < read ? Buffer[i] : 0.0f; }, minVal, maxVal,
      silent);
}

// One number per line into the buffer that LoadData made; the rest of each line is passed over.
// A file that ends early gives 0.0 for the cells it lacks: the reading stops there and leaves
// them as the system zero-filled them, untouched.
void TAsciiImage::ReadDataFile() {
  const TTextReader reader = TTextReader::FromFile(FileName());
  TCellTokens tokens(reader.Text());
  size_t read = 0;
  for (; read < Buffer.size(); ++read) {
    const std::string_view token = tokens.Next();
    if (token.empty()) {
      break;
    }
    Buffer[read] = ParseCellToken(token);
    tokens.SkipLine();
  }
  FUnreadFrom = read;
  BufferPointer = 0;
}

void TAsciiImage::WriteDataFile(TOutputFile& File) const {
  TTextWriter writer(File.Stream());
  const TNumberFormat format;
  constexpr size_t kCellsPerBlock = 1 << 14;
  std::vector<char> block(kCellsPerBlock * (TNumberFormat::MaxLength + 2));
  for (size_t first = 0; first < Buffer.size(); first += kCellsPerBlock) {
    const size_t last = std::min(Buffer.size(), first + kCellsPerBlock);
    char* out = block.data();
    for (size_t i = first; i < last; ++i) {
      out = format.General(out, Buffer[i], 15);
      *out++ = '\r';
      *out++ = '\n';
    }
    writer.Write(std::string_view(block.data(), static_cast<size_t>(out - block.data())));
  }
  writer.Flush();
}

template std::unique_ptr<TArcGridImage> TAsciiImage::CreateAs<TArcGridImage>(const std::string&,
                                                                             const TImageHeader*);
template std::unique_ptr<TArcGridImage> TAsciiImage::CopyAs<TArcGridImage>(const TArcGridImage&);
template std::unique_ptr<TArcGridImage> TAsciiImage::OpenReducedAs<TArcGridImage, float>(
    const std::string&, float);
template std::unique_ptr<TArcGridImage>
TAsciiImage::OpenReducedAs<TArcGridImage, float, float, float, float>(const std::string&, float,
                                                                      float, float, float);

}  // namespace zephra
