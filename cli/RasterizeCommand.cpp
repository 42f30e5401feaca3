#include "RasterizeCommand.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>

#include <zephra/Common/zpPolyMap.h>
#include <zephra/Common/zpShapeAttributes.h>
#include <CLI/CLI.hpp>

#include "Errors.h"
#include "NumberText.h"
#include "RasterInput.h"

namespace zephra::cli {

namespace fs = std::filesystem;

namespace {

void CheckArguments(const TRasterizeCommand::TOptions& options) {
  if (options.Like.empty() == options.Extent.empty()) {
    throw TUsageError("rasterize needs the grid: --like RASTER, or --extent XMIN YMIN XMAX YMAX");
  }
  if (!options.Extent.empty() && options.Size.empty() == (options.Res <= 0.0)) {
    throw TUsageError("--extent needs the cells: --size W H, or --res R");
  }
  if (!options.Extent.empty() &&
      (options.Extent[2] <= options.Extent[0] || options.Extent[3] <= options.Extent[1])) {
    throw TUsageError("--extent XMIN YMIN XMAX YMAX needs XMIN < XMAX and YMIN < YMAX");
  }
  if (!options.Size.empty() && (options.Size[0] <= 0 || options.Size[1] <= 0)) {
    throw TUsageError("--size W H needs W and H above 0");
  }
  if (options.Field.empty() == !options.Burn) {
    throw TUsageError("rasterize needs the values: --field NAME, or --burn V");
  }
}

TImageHeader ExtentHeader(const TRasterizeCommand::TOptions& options) {
  const double minx = options.Extent[0], miny = options.Extent[1];
  const double maxx = options.Extent[2], maxy = options.Extent[3];
  TImageHeader header;
  header.SetRefSystem("plane");  // a .shp says nothing of its reference system
  header.Minx = static_cast<float>(minx);
  header.Maxy = static_cast<float>(maxy);
  if (!options.Size.empty()) {
    header.Width = options.Size[0];
    header.Height = options.Size[1];
    header.Maxx = static_cast<float>(maxx);
    header.Miny = static_cast<float>(miny);
  } else {
    // Whole cells of R that cover the extent, from its north-west corner.
    header.Width = static_cast<int32_t>(std::ceil((maxx - minx) / options.Res));
    header.Height = static_cast<int32_t>(std::ceil((maxy - miny) / options.Res));
    header.Maxx = static_cast<float>(minx + header.Width * options.Res);
    header.Miny = static_cast<float>(maxy - header.Height * options.Res);
  }
  header.ResolutionX = (header.Maxx - header.Minx) / static_cast<float>(header.Width);
  header.ResolutionY = (header.Maxy - header.Miny) / static_cast<float>(header.Height);
  return header;
}

// One value per polygon part: the value of its feature, so that every part of a multi-part
// feature burns the same. A feature without a value burns no data.
TSingleArray PartValues(const TPolyMap& map, const TRasterizeCommand::TOptions& options,
                        float noData, const TContext& context) {
  std::vector<std::optional<double>> features;
  if (!options.Field.empty()) {
    features =
        OnFile(options.Shp, [&] { return ReadNumericAttribute(options.Shp, options.Field); });
  }
  TSingleArray values;
  int64_t missing = 0, belowNoData = 0;
  for (int32_t i = 0; i < map.GetShapeCount(); ++i) {
    const auto id = static_cast<size_t>(map.GetShape(i)->ShapeId);
    const std::optional<double> value =
        options.Burn ? options.Burn : (id < features.size() ? features[id] : std::nullopt);
    missing += !value;
    belowNoData += value && *value <= noData;
    values.push_back(value ? static_cast<float>(*value) : noData);
  }
  if (missing > 0) {
    context.Warn(options.Shp + ": " + std::to_string(missing) + " polygon parts have no value in " +
                 options.Field + " and stay no data");
  }
  if (belowNoData > 0) {
    context.Warn(options.Shp + ": " + std::to_string(belowNoData) +
                 " polygon parts burn a value at or below the no-data value " + ShortText(noData) +
                 " and read as no data");
  }
  return values;
}

std::vector<std::string> InputsOf(const TRasterizeCommand::TOptions& options) {
  const fs::path shp(options.Shp);
  std::vector<std::string> inputs = {options.Shp, fs::path(shp).replace_extension(".shx").string(),
                                     fs::path(shp).replace_extension(".dbf").string()};
  if (!options.Like.empty()) {
    inputs.push_back(options.Like);
    inputs.push_back(fs::path(options.Like).replace_extension(".doc").string());
  }
  return inputs;
}

}  // namespace

void TRasterizeCommand::Declare(CLI::App& app) {
  app.add_option("SHP", Options.Shp, "The polygon shapefile (.shp, with .shx and .dbf beside)")
      ->required();
  app.add_option("OUT", Options.Out, "The raster to write (.doc, .img, or another format)")
      ->required();
  auto* like = app.add_option("--like", Options.Like, "Take the grid of this raster");
  auto* extent = app.add_option("--extent", Options.Extent, "The grid covers XMIN YMIN XMAX YMAX")
                     ->expected(4);
  auto* size = app.add_option("--size", Options.Size, "W H cells over the extent")->expected(2);
  auto* res = app.add_option("--res", Options.Res, "Square cells of R map units")
                  ->check(CLI::PositiveNumber);
  auto* field = app.add_option("--field", Options.Field, "Burn this numeric field of the .dbf");
  auto* burn = app.add_option_function<double>(
      "--burn", [this](const double& value) { Options.Burn = value; }, "Burn this value");
  app.add_option("--type", Options.Type, "Cell type: real (default), byte, integer, integer32");
  app.add_option_function<float>(
      "--nodata", [this](const float& value) { Options.NoData = value; },
      "The no-data value of the background (default -9999, 0 for byte)");
  app.add_flag("--overwrite", Options.Overwrite, "Replace OUT if it exists");
  like->excludes(extent);
  size->excludes(res);
  field->excludes(burn);
}

TWriteResult TRasterizeCommand::Run(const TContext& context) const {
  CheckArguments(Options);
  TOutputRequest request = OutputRequestFor(Options.Out, "");
  if (!Options.Type.empty()) {
    if (request.Format != TOutputFormat::Doc) {
      throw TUsageError("--type applies to .doc rasters, and " + Options.Out + " is none");
    }
    request.CellType = CellTypeFromName(Options.Type);
  }
  const float noData = Options.NoData.value_or(DefaultNoData(request.CellType.value_or(dtReal)));
  request.CellType = request.CellType.value_or(dtReal);
  request.NoData = noData;
  request.Overwrite = Options.Overwrite;
  const std::vector<std::string> inputs = InputsOf(Options);
  CheckOutputs(OutputFiles(request), inputs, request.Overwrite);

  TImageHeader header = Options.Like.empty() ? ExtentHeader(Options) : RasterHeader(Options.Like);
  header.DataType = dtReal;
  header.FileType = ftBinary;
  header.Categories.clear();
  header.FileTitle = "Polygons of " + fs::path(Options.Shp).filename().string();
  header.ValueUnits = Options.Field.empty() ? "Unspecified" : Options.Field;
  header.Flag = true;
  header.FlagValue = noData;
  header.FlagDef = "Outside the polygons";

  const auto map = OnFile(Options.Shp, [&] { return std::make_unique<TPolyMap>(Options.Shp, 0); });
  const TSingleArray values = PartValues(*map, Options, noData, context);
  const auto image = TRealImage::Create("", &header);
  image->MemOnly = true;
  // The background, which FillShape leaves alone outside the polygons. Straight into the buffer
  // of our own float image: BufferWrite would skip the no-data value anyway, leaving the range.
  std::fill(image->Buffer.begin(), image->Buffer.end(), noData);
  OnFile(Options.Shp, [&] { image->FillShape(Options.Shp, values); });
  // FillShape declares the library's flag value; the background is the tool's no-data value.
  image->Header()->Flag = true;
  image->Header()->FlagValue = noData;
  image->Header()->FlagDef = header.FlagDef;
  if (image->FirstWrite) {
    throw TCommandError(Options.Shp +
                        ": no polygon holds the north-west corner of any cell: try smaller cells");
  }
  return WriteRaster(*image, request, inputs, context);
}

}  // namespace zephra::cli
