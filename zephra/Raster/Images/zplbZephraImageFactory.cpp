#include <zephra/Raster/Images/zplbZephraImageFactory.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <filesystem>
#include <limits>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpSpatialConst.h>
#include <zephra/Raster/Header/zpHeaderUtils.h>
#include <zephra/Raster/Images/zplbZephraTextImage.h>
#include <zephra/Raster/Images/zplbZephraTypedImage.h>

namespace zephra {

namespace {

bool NamesHillshade(const std::string& fileName) {
  std::string upper = fileName;
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return upper.find("HILLSHADE") != std::string::npos;
}

// Strictly older than five minutes, by the file's last-write time (links followed).
bool WrittenLongAgo(const std::string& fileName) {
  std::error_code error;
  const auto written = std::filesystem::last_write_time(fileName, error);
  if (error) {
    return false;
  }
  return written < std::filesystem::file_time_type::clock::now() - std::chrono::minutes(5);
}

enum class TRefreshBound { FlagWhenSet, FlagAlways };

using TFreshRange = TRange (*)(TAbstractImage& image, float minVal, float maxVal, bool silent);

// The range of the header comes from the cells above the flag value, unless the raster is a
// hillshade or fresh from a writer that knows its range. The image is as its open left it, so
// freshRange may pass over cells that the reading left at zero.
void RefreshRange(TAbstractImage& image, const std::string& inFileName, TRefreshBound bound,
                  TImageHeader* fileHeader, TFreshRange freshRange) {
  if (NamesHillshade(inFileName) || !WrittenLongAgo(inFileName) || image.NumRecs <= 0) {
    return;
  }
  TImageHeader* header = image.Header();
  const float flag = (bound == TRefreshBound::FlagAlways || header->Flag)
                         ? header->FlagValue
                         : TSpatialConst::MissingValue;
  const auto lower = static_cast<float>(
      static_cast<double>(std::max(flag, TSpatialConst::MissingValue)) + 0.000001);
  const TRange range = freshRange(image, lower, std::numeric_limits<float>::max(), /*silent=*/true);
  header->SetRange(range);
  if (header != fileHeader) {
    fileHeader->MinValue = header->MinValue;
    fileHeader->MaxValue = header->MaxValue;
  }
}

// The steps both opens share: the temporary header chooses the class, text rasters open whole.
template <typename TOpenBinary>
std::unique_ptr<TAbstractImage> OpenByHeader(const std::string& inFileName,
                                             TOpenBinary openBinary) {
  const auto header = TImageHeader::Open(inFileName);
  if (header->FileType == ftAscii) {
    return TAsciiImage::Open(inFileName, false);
  }
  switch (header->DataType) {
    case dtReal:
    case dtInteger:
    case dtByte:
    case dtInteger32:
      return openBinary(TImageFactory::GetImageClass(header->DataType));
  }
  throw EImageHeaderError("");
}

}  // namespace

std::unique_ptr<TAbstractImage> TGenericImage::Open(const std::string& inFileName,
                                                    bool aScaleBuff) {
  auto image = OpenByHeader(inFileName, [&](TAbstractImageClass imageClass) {
    return imageClass->Open(inFileName, aScaleBuff);
  });
  RefreshRange(*image, inFileName, TRefreshBound::FlagWhenSet, FileHeaderOf(*image), &FreshRangeOf);
  return image;
}

std::unique_ptr<TAbstractImage> TGenericImage::OpenZoomed(const std::string& inFileName,
                                                          float aminx, float amaxx, float aminy,
                                                          float amaxy) {
  auto image = OpenByHeader(inFileName, [&](TAbstractImageClass imageClass) {
    return imageClass->Open(inFileName, aminx, amaxx, aminy, amaxy);
  });
  RefreshRange(*image, inFileName, TRefreshBound::FlagAlways, FileHeaderOf(*image), &FreshRangeOf);
  return image;
}

TAbstractImageClass TImageFactory::GetImageClass(TDataType DataType) {
  switch (DataType) {
    case dtReal:
      return TRealImage::ClassRef();
    case dtInteger:
      return TIntegerImage::ClassRef();
    case dtByte:
      return TByteImage::ClassRef();
    case dtInteger32:
      return TInteger32Image::ClassRef();
  }
  throw Exception("Unknown Image Class");
}

TAbstractImageClass TImageFactory::GetImageClass(const std::string& DataType) {
  const std::pair<const char*, TAbstractImageClass> words[] = {
      {"BYTE", TByteImage::ClassRef()},   {"REAL", TRealImage::ClassRef()},
      {"INT", TIntegerImage::ClassRef()}, {"INT32", TInteger32Image::ClassRef()},
      {"ASCII", TAsciiImage::ClassRef()}, {"ARCGRID", TArcGridImage::ClassRef()}};
  for (const auto& [word, imageClass] : words) {
    if (SameText(DataType, word)) {
      return imageClass;
    }
  }
  return nullptr;
}

TAbstractImageClass TImageFactory::GetImageClassFromHeader(const std::string& FileName) {
  return GetImageClass(TImageHeader::Open(FileName)->DataType);
}

std::unique_ptr<TAbstractImage> TImageFactory::Copy(const TAbstractImage* Source) {
  // The grid first: it descends from the text image.
  for (const TAbstractImageClass imageClass :
       {TArcGridImage::ClassRef(), TAsciiImage::ClassRef(), TRealImage::ClassRef(),
        TByteImage::ClassRef(), TIntegerImage::ClassRef(), TInteger32Image::ClassRef()}) {
    if (imageClass->IsClassOf(Source)) {
      return imageClass->Create(*Source);
    }
  }
  throw EInvalidOpException("Unable to copy image, unsupported image type");
}

}  // namespace zephra
