#include "RasterOutput.h"

#include <algorithm>
#include <cctype>
#include <cfloat>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <system_error>
#include <typeinfo>
#include <vector>

#include "CellBlocks.h"
#include "Errors.h"
#include "GridWriter.h"
#include "NumberText.h"
#include "PendingFile.h"
#include "Progress.h"
#include "RasterInput.h"
#include "XyzWriter.h"

namespace zephra::cli {

namespace fs = std::filesystem;

namespace {

// What a cell type holds: its range, and whether only whole numbers.
struct TCellLimits {
  double Min;
  double Max;
  bool Whole;
};

TCellLimits LimitsOf(TDataType type) {
  switch (type) {
    case dtByte:
      return {0.0, 255.0, true};
    case dtInteger:
      return {-32768.0, 32767.0, true};
    case dtInteger32:
      return {-2147483648.0, 2147483647.0, true};
    case dtReal:
      break;
  }
  return {-FLT_MAX, FLT_MAX, false};
}

// How the cells of the source meet the output: counted in one pass before anything is written.
struct TCellScan {
  int64_t NoData = 0;     // no-data cells of the source
  int64_t Outside = 0;    // values outside the cell type's range
  int64_t Rounded = 0;    // values with a fraction, for whole-number cells
  int64_t AtOrBelow = 0;  // values that the output would read as no data
};

// The plan of one write: cell type and no-data value, checked against the cells.
struct TPlan {
  TDataType CellType = dtReal;
  TNoData SourceNoData;
  float NoDataOut = TSpatialConst::FlagValue;  // what no-data cells become
  std::optional<float> Declared;               // the no-data value the output declares
  TCellScan Scan;
};

TCellScan ScanCells(const TAbstractImage& source, const TNoData& noData, const TCellLimits& limits,
                    float threshold) {
  constexpr int64_t kBlockCells = 1 << 16;
  TCellScan scan;
  std::vector<float> scratch;
  for (int64_t first = 0; first < source.NumRecs; first += kBlockCells) {
    const int64_t count = std::min<int64_t>(kBlockCells, source.NumRecs - first);
    for (const float value : CellBlock(source, first, count, scratch)) {
      if (noData.Holds(value)) {
        ++scan.NoData;
        continue;
      }
      scan.Outside += value < limits.Min || value > limits.Max;
      scan.Rounded += limits.Whole && value != std::nearbyint(value);
      scan.AtOrBelow += value <= threshold;
    }
  }
  return scan;
}

std::string Count(int64_t count, const std::string& what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

bool Fits(float value, const TCellLimits& limits) {
  return value >= limits.Min && value <= limits.Max &&
         (!limits.Whole || value == std::trunc(value));
}

// Refuses a plan that would lose cells where a lossless route exists, and says what the format
// itself loses.
void CheckPlan(const TPlan& plan, const TCellLimits& limits, float threshold, bool tiff,
               const std::string& file, const TContext& context) {
  const std::string type = CellTypeName(plan.CellType);
  if (plan.Declared && !Fits(*plan.Declared, limits)) {
    throw TCommandError(file + ": the no-data value " + ShortText(*plan.Declared) +
                        " does not fit " + type + " cells: give --nodata");
  }
  if (plan.Scan.Outside > 0) {
    throw TCommandError(file + ": " + Count(plan.Scan.Outside, "cell") + " outside " +
                        ShortText(limits.Min) + " .. " + ShortText(limits.Max) + ", which " + type +
                        " cells cannot hold: choose another cell type");
  }
  const std::string below = Count(plan.Scan.AtOrBelow, "cell") + " at or below " +
                            ShortText(threshold) + " would read as no data";
  if (tiff && plan.Scan.AtOrBelow > 0) {
    context.Warn(file + ": " + below + " in the GeoTIFF");
  } else if (plan.Declared && plan.Scan.AtOrBelow > 0) {
    throw TCommandError(file + ": " + below + ": give another --nodata");
  }
  if (plan.Scan.Rounded > 0) {
    context.Warn(file + ": " + Count(plan.Scan.Rounded, "cell") + " with a fraction rounded to " +
                 type + " cells");
  }
}

// The output's cell type and no-data value, checked against every cell of the source.
TPlan PlanWrite(const TAbstractImage& source, const TOutputRequest& request,
                const TContext& context) {
  TPlan plan;
  plan.CellType = request.Format == TOutputFormat::Doc
                      ? request.CellType.value_or(source.Header()->DataType)
                      : dtReal;
  plan.SourceNoData = NoDataOf(*source.Header());
  plan.NoDataOut =
      request.NoData.value_or(plan.SourceNoData.Value.value_or(DefaultNoData(plan.CellType)));
  // The GeoTIFF export turns everything at or below -9990 into no data (NaN in the file), and
  // nothing else: no-data cells go to it as the library's flag value.
  const bool tiff = request.Format == TOutputFormat::GeoTiff;
  if (tiff) {
    plan.NoDataOut = TSpatialConst::FlagValue;
  }
  const float threshold = tiff ? TSpatialConst::MissingValue : plan.NoDataOut;
  const TCellLimits limits = LimitsOf(plan.CellType);
  plan.Scan = ScanCells(source, plan.SourceNoData, limits, threshold);
  if (request.NoData || plan.SourceNoData.Value || plan.Scan.NoData > 0) {
    plan.Declared = plan.NoDataOut;
  }
  CheckPlan(plan, limits, threshold, tiff, request.File, context);
  return plan;
}

// What a format keeps of the header besides the cells.
void WarnHeaderLosses(const TImageHeader& header, const TOutputRequest& request, const TPlan& plan,
                      const TContext& context) {
  const bool keepsRefSystem =
      request.Format != TOutputFormat::Grid && request.Format != TOutputFormat::Xyz;
  const bool keepsLegend =
      request.Format == TOutputFormat::Doc || request.Format == TOutputFormat::Ascii;
  if (!keepsRefSystem && !header.IsPlane() && !header.RefSystem().empty()) {
    context.Warn(request.File + ": the format keeps no reference system: " + header.RefSystem() +
                 " is lost");
  }
  if (!keepsLegend && !header.Categories.empty()) {
    context.Warn(request.File + ": the format keeps no legend: " +
                 Count(static_cast<int64_t>(header.Categories.size()), "category") + " lost");
  }
  if (request.Format == TOutputFormat::Xyz && plan.Scan.NoData > 0) {
    context.Warn(request.File +
                 ": XYZ has no no-data marker: " + Count(plan.Scan.NoData, "no-data cell") +
                 " written as " + ShortText(plan.NoDataOut));
  }
}

// Every cell of source with no-data cells set to noDataOut, through write(index, value), read
// a row at a time.
template <typename TWrite>
void CopyCells(const TAbstractImage& source, const TNoData& noData, float noDataOut,
               TProgress& progress, TWrite write) {
  const int64_t width = std::max(source.Header()->Width, 1);
  std::vector<float> scratch;
  for (int64_t first = 0; first < source.NumRecs; first += width) {
    const auto cells =
        CellBlock(source, first, std::min<int64_t>(width, source.NumRecs - first), scratch);
    for (size_t c = 0; c < cells.size(); ++c) {
      const float value = cells[c];
      write(static_cast<int32_t>(first + static_cast<int64_t>(c)),
            noData.Holds(value) ? noDataOut : value);
    }
    progress.Update(first);
  }
}

// Cells of a binary raster into a new one of the same cell type, straight from buffer to
// buffer: BufferWrite would store each value unchanged, and the range it would keep (no-data and
// flag values left out, the first counted value setting both ends) is kept here. False, with
// nothing written, where the two are not both exactly that typed class or the no-data value is
// not a cell of the type.
template <typename TCell>
bool CopyTypedCells(const TAbstractImage& source, TAbstractImage& target, const TPlan& plan,
                    TProgress& progress) {
  using TImage = TTypedImage<TCell>;
  using TLimits = std::numeric_limits<TCell>;
  if (typeid(source) != typeid(TImage) || typeid(target) != typeid(TImage) ||
      !(plan.NoDataOut >= static_cast<float>(TLimits::lowest()) &&
        plan.NoDataOut <= static_cast<float>(TLimits::max()))) {
    return false;
  }
  const auto noDataOut = static_cast<TCell>(plan.NoDataOut);
  if (static_cast<float>(noDataOut) != plan.NoDataOut) {
    return false;
  }
  const auto& in = static_cast<const TImage&>(source).Buffer;
  auto& out = static_cast<TImage&>(target).Buffer;
  const auto count = static_cast<size_t>(std::max(source.NumRecs, 0));
  if (in.size() < count || out.size() < count || target.NumRecs != source.NumRecs) {
    return false;
  }
  TImageHeader& header = *target.Header();
  const int64_t width = std::max(header.Width, 1);
  float lo = 0.0f, hi = 0.0f;
  bool counted = false;
  for (size_t i = 0; i < count; ++i) {
    const float value = static_cast<float>(in[i]);
    const bool noData = plan.SourceNoData.Holds(value);
    out[i] = noData ? noDataOut : in[i];
    if (static_cast<int64_t>(i) % width == 0) {
      progress.Update(static_cast<int64_t>(i));
    }
    const float stored = noData ? plan.NoDataOut : value;
    if ((header.Flag && stored <= header.FlagValue) || TSpatialConst::IsFlag(stored)) {
      continue;
    }
    lo = counted ? std::min(lo, stored) : stored;
    hi = counted ? std::max(hi, stored) : stored;
    counted = true;
  }
  if (counted) {
    header.MinValue = lo;
    header.MaxValue = hi;
  }
  return true;
}

bool CopyTypedCells(const TAbstractImage& source, TAbstractImage& target, const TPlan& plan,
                    TProgress& progress) {
  return CopyTypedCells<float>(source, target, plan, progress) ||
         CopyTypedCells<uint8_t>(source, target, plan, progress) ||
         CopyTypedCells<int16_t>(source, target, plan, progress) ||
         CopyTypedCells<int32_t>(source, target, plan, progress);
}

void WriteDoc(const TAbstractImage& source, const TOutputRequest& request, const TPlan& plan,
              const fs::path& dataFile, TProgress& progress) {
  TImageHeader header(*source.Header());
  header.Flag = plan.Declared.has_value();
  header.FlagValue = plan.Declared.value_or(0.0f);
  if (!plan.SourceNoData.Value && header.Flag) {
    header.FlagDef = "No data";
  }
  std::unique_ptr<TAbstractImage> image;
  if (request.Format == TOutputFormat::Ascii) {
    image = TAsciiImage::Create(dataFile.string(), &header);
  } else {
    image = TImageFactory::GetImageClass(plan.CellType)->Create(dataFile.string(), &header);
  }
  // Create copies the header with TImageHeader::Copy, which leaves these to the new image.
  image->Header()->ValueUnits = header.ValueUnits;
  image->Header()->FlagDef = header.FlagDef;
  image->Header()->UnitDistance = header.UnitDistance;
  try {
    if (!CopyTypedCells(source, *image, plan, progress)) {
      CopyCells(source, plan.SourceNoData, plan.NoDataOut, progress,
                [&](int32_t i, float value) { image->BufferWrite(i, value); });
    }
    image->FirstWrite = false;  // written back even when every cell is no data
    image->Close();
  } catch (...) {
    image->MemOnly = true;  // nothing half-made reaches the disk from the destructor
    throw;
  }
}

// A float copy in memory with no-data cells set to the library's flag value, which the GeoTIFF
// export turns into NaN, whatever no-data value the raster declares.
std::unique_ptr<TRealImage> ExportCopy(const TAbstractImage& source, const TPlan& plan,
                                       TProgress& progress) {
  TImageHeader header(*source.Header());
  header.DataType = dtReal;
  auto copy = TRealImage::Create("", &header);
  copy->MemOnly = true;
  // The copy is a plain float image of our own: its buffer takes the cells directly, and the
  // range it keeps is the source's.
  CopyCells(source, plan.SourceNoData, plan.NoDataOut, progress,
            [&](int32_t i, float value) { copy->Buffer[static_cast<size_t>(i)] = value; });
  return copy;
}

// The GeoTIFF export writes NaN for every cell at or below the library's missing value. Where
// the raster's no-data cells are all there already (NaN, or a no-data value at or below it), the
// export of the raster itself writes what the export of a copy would, without the copy.
bool ExportsNoDataAsIs(const TPlan& plan) {
  return !plan.SourceNoData.Value || *plan.SourceNoData.Value <= TSpatialConst::MissingValue;
}

void WriteSingleFile(const TAbstractImage& source, const TOutputRequest& request, const TPlan& plan,
                     TProgress& progress) {
  TPendingFile pending(request.File);
  if (request.Format == TOutputFormat::Grid) {
    WriteGrid(source, plan.SourceNoData, plan.NoDataOut, pending.Path(), progress);
  } else if (request.Format == TOutputFormat::Xyz) {
    WriteXyz(source, plan.SourceNoData, plan.NoDataOut, pending.Path(), progress);
  } else if (ExportsNoDataAsIs(plan)) {
    TGeoTiffExporter().ExportImage(&source, pending.Path().string(), nullptr);
  } else {
    const auto copy = ExportCopy(source, plan, progress);
    TGeoTiffExporter().ExportImage(copy.get(), pending.Path().string(), nullptr);
  }
  pending.Commit();
}

std::string FormatName(TOutputFormat format) {
  static const std::map<TOutputFormat, std::string> names = {{TOutputFormat::Doc, "doc"},
                                                             {TOutputFormat::Ascii, "ascii"},
                                                             {TOutputFormat::Grid, "grid"},
                                                             {TOutputFormat::Xyz, "xyz"},
                                                             {TOutputFormat::GeoTiff, "geotiff"}};
  return names.at(format);
}

}  // namespace

float DefaultNoData(TDataType type) {
  return type == dtByte ? 0.0f : TSpatialConst::FlagValue;
}

TDataType CellTypeFromName(const std::string& name) {
  for (const TDataType type : {dtReal, dtInteger, dtByte, dtInteger32}) {
    if (SameText(name, CellTypeName(type))) {
      return type;
    }
  }
  throw TUsageError("unknown cell type '" + name + "': real, byte, integer or integer32");
}

std::string CellTypeName(TDataType type) {
  switch (type) {
    case dtInteger:
      return "integer";
    case dtByte:
      return "byte";
    case dtInteger32:
      return "integer32";
    case dtReal:
      break;
  }
  return "real";
}

TOutputRequest OutputRequestFor(const std::string& file, const std::string& to) {
  static const std::map<std::string, TOutputFormat> extensions = {
      {".doc", TOutputFormat::Doc},     {".img", TOutputFormat::Doc},
      {".txt", TOutputFormat::Ascii},   {".asc", TOutputFormat::Grid},
      {".xyz", TOutputFormat::Xyz},     {".tif", TOutputFormat::GeoTiff},
      {".tiff", TOutputFormat::GeoTiff}};
  static const std::map<std::string, TOutputFormat> words = {{"doc", TOutputFormat::Doc},
                                                             {"ascii", TOutputFormat::Ascii},
                                                             {"grid", TOutputFormat::Grid},
                                                             {"xyz", TOutputFormat::Xyz},
                                                             {"geotiff", TOutputFormat::GeoTiff}};
  TOutputRequest request;
  request.File = file;
  if (to.empty()) {
    std::string extension = fs::path(file).extension().string();
    for (char& c : extension) {
      c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    const auto found = extensions.find(extension);
    if (found == extensions.end()) {
      throw TUsageError("cannot tell the format of " + file +
                        " from its extension: name it with --to");
    }
    request.Format = found->second;
  } else if (const auto found = words.find(to); found != words.end()) {
    request.Format = found->second;
  } else {
    request.CellType = CellTypeFromName(to);  // a cell type word means a binary .doc raster
  }
  return request;
}

std::vector<fs::path> OutputFiles(const TOutputRequest& request) {
  const fs::path file(request.File);
  if (request.Format != TOutputFormat::Doc && request.Format != TOutputFormat::Ascii) {
    return {file};
  }
  fs::path data = file;
  if (SameText(file.extension().string(), ".doc")) {
    data.replace_extension(request.Format == TOutputFormat::Doc ? ".img" : ".txt");
  }
  return {data, fs::path(file).replace_extension(".doc")};
}

void CheckOutputs(const std::vector<fs::path>& outputs, const std::vector<std::string>& inputs,
                  bool overwrite) {
  for (const fs::path& output : outputs) {
    std::error_code error;
    for (const std::string& input : inputs) {
      if (fs::equivalent(output, input, error)) {
        throw TCommandError(output.string() + " is an input of this command: write elsewhere");
      }
    }
    if (fs::exists(output, error) && !overwrite) {
      throw TCommandError(output.string() + " exists: give --overwrite to replace it");
    }
  }
}

TWriteResult WriteRaster(const TAbstractImage& source, const TOutputRequest& request,
                         const std::vector<std::string>& inputs, const TContext& context) {
  const std::vector<fs::path> files = OutputFiles(request);
  CheckOutputs(files, inputs, request.Overwrite);
  const TPlan plan = PlanWrite(source, request, context);
  WarnHeaderLosses(*source.Header(), request, plan, context);
  OnFile(request.File, [&] {
    context.Progress.Begin("writing " + request.File, source.NumRecs);
    if (request.Format == TOutputFormat::Doc || request.Format == TOutputFormat::Ascii) {
      WriteDoc(source, request, plan, files.front(), context.Progress);
    } else {
      WriteSingleFile(source, request, plan, context.Progress);
    }
    context.Progress.Clear();
  });
  TWriteResult result;
  for (const fs::path& file : files) {
    result.Files.push_back(file.string());
  }
  result.Format = FormatName(request.Format);
  result.Width = source.Header()->Width;
  result.Height = source.Header()->Height;
  result.CellType = CellTypeName(plan.CellType);
  result.NoData = plan.Declared;
  return result;
}

}  // namespace zephra::cli
