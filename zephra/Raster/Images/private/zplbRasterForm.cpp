#include <zephra/Raster/Images/private/zplbRasterForm.h>

#include <array>
#include <fstream>
#include <string_view>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Header/zpHeaderUtils.h>
#include <zephra/Raster/Images/private/zplbZephraImageGrid.h>

namespace zephra {

namespace {

// Enough for the magic numbers and for the grid's first keyword after any blank lines.
constexpr size_t kProbeBytes = 256;

std::string FirstBytes(const std::string& fileName) {
  std::ifstream file(fileName, std::ios::binary);
  if (!file) {
    throw EInOutError("Cannot open " + fileName + " to read it");
  }
  std::array<char, kProbeBytes> bytes{};
  file.read(bytes.data(), bytes.size());
  return std::string(bytes.data(), static_cast<size_t>(file.gcount()));
}

bool IsTiff(std::string_view bytes) {
  if (bytes.size() < 4) {
    return false;
  }
  const std::string_view magic = bytes.substr(0, 4);
  using namespace std::string_view_literals;
  return magic == "II*\0"sv || magic == "MM\0*"sv || magic == "II+\0"sv || magic == "MM\0+"sv;
}

// The grid's first line is "ncols <n>" in any letter case, from its first byte: its reader
// takes the header lines by position and each value from the line's first blank.
bool IsArcGrid(std::string_view bytes) {
  constexpr std::string_view keyword = "ncols";
  return bytes.size() > keyword.size() &&
         SameText(std::string(bytes.substr(0, keyword.size())), std::string(keyword)) &&
         bytes[keyword.size()] == ' ';
}

bool IsDocName(const std::string& fileName) {
  return DataFileName(fileName) != fileName;
}

}  // namespace

TRasterForm RasterFormOf(const std::string& fileName) {
  const bool docBeside = IsDocName(fileName) || FileExists(DocFileName(fileName));
  if (!FileExists(fileName)) {
    if (docBeside) {
      return TRasterForm::Doc;
    }
    throw EImageFileError(fileName + " does not exist.");
  }
  const std::string bytes = FirstBytes(fileName);
  if (IsTiff(bytes)) {
    return TRasterForm::GeoTiff;
  }
  if (docBeside) {
    return TRasterForm::Doc;
  }
  return IsArcGrid(bytes) ? TRasterForm::ArcGrid : TRasterForm::Unknown;
}

}  // namespace zephra
