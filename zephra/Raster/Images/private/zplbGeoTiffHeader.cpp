#include <zephra/Raster/Images/private/zplbGeoTiffHeader.h>

#include <charconv>
#include <cmath>
#include <filesystem>
#include <limits>
#include <optional>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpSpatialConst.h>
#include <zephra/Raster/Header/zpHeaderUtils.h>
#include <zephra/Raster/Images/private/zplbGeoTiffGeoref.h>

namespace zephra {

namespace {

// The no-data text as a number: NaN for "nan" in any letter case, nullopt for no number.
std::optional<double> NoDataValue(const TTiffFile& file) {
  const std::optional<std::string> text = file.Text(kTiffTagNoData);
  if (!text) {
    return std::nullopt;
  }
  const std::string trimmed = TrimControl(*text);
  if (SameText(trimmed, "nan")) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  double value = 0;
  const char* end = trimmed.data() + trimmed.size();
  const auto [stop, error] =
      std::from_chars(trimmed.data() + (trimmed.starts_with('+') ? 1 : 0), end, value);
  if (error != std::errc() || stop != end) {
    return std::nullopt;
  }
  return value;
}

// NaN cells of a float raster read as the flag value: the file's own no-data number when it
// has one, or the library's -9990.0, which its GeoTIFF export writes back as NaN.
void SetNoData(const TTiffFile& file, const TTiffLayout& layout, TImageHeader& header) {
  const std::optional<double> value = NoDataValue(file);
  const bool floating = layout.Sample == TSampleType::Float32;
  const bool number = value && std::fabs(*value) <= std::numeric_limits<float>::max();
  if (number || floating) {
    header.Flag = true;
    header.FlagValue = number ? static_cast<float>(*value) : TSpatialConst::MissingValue;
    header.FlagDef = "no data";
  }
}

void SetGrid(const TTiffFile& file, const TTiffLayout& layout, TImageHeader& header) {
  constexpr uint32_t kMaxSide = std::numeric_limits<int32_t>::max();
  if (layout.Width > kMaxSide || layout.Height > kMaxSide) {
    throw EImageFileError(file.FileName() + " has an impossible size of " +
                          std::to_string(layout.Width) + " columns and " +
                          std::to_string(layout.Height) + " rows");
  }
  header.Width = static_cast<int32_t>(layout.Width);
  header.Height = static_cast<int32_t>(layout.Height);
  header.DataType = CellTypeOf(layout.Sample);
  header.FileType = ftBinary;
}

}  // namespace

std::unique_ptr<TImageHeader> ReadGeoTiffHeader(const TTiffFile& file, const TTiffLayout& layout) {
  auto header = std::make_unique<TImageHeader>();
  SetGrid(file, layout, *header);
  header->FileTitle = std::filesystem::path(file.FileName()).stem().string();
  ReadGeoreference(file, layout, *header);
  SetNoData(file, layout, *header);
  return header;
}

}  // namespace zephra
