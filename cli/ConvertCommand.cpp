#include "ConvertCommand.h"

#include <CLI/CLI.hpp>

#include "Errors.h"
#include "RasterInput.h"

namespace zephra::cli {

void TConvertCommand::Declare(CLI::App& app) {
  app.add_option("IN", Options.In, "The raster to read")->required();
  app.add_option("OUT", Options.Out, "The file to write")->required();
  app.add_option("--to", Options.To,
                 "doc, real, byte, integer, integer32 (binary .doc raster), ascii (text raster), "
                 "grid, xyz or geotiff; default: from the extension of OUT (.doc .img .txt .asc "
                 ".xyz .tif)");
  app.add_option("--window", Options.Window, "Only the window XMIN XMAX YMIN YMAX of the map")
      ->expected(4);
  app.add_option("--res", Options.Res, "Thinned to about R map units a cell")
      ->check(CLI::PositiveNumber);
  app.add_option_function<float>(
      "--nodata", [this](const float& value) { Options.NoData = value; },
      "The no-data value of the output (default: the input's)");
  app.add_flag("--overwrite", Options.Overwrite, "Replace OUT if it exists");
}

TWriteResult TConvertCommand::Run(const TContext& context) const {
  TOutputRequest request = OutputRequestFor(Options.Out, Options.To);
  request.NoData = Options.NoData;
  request.Overwrite = Options.Overwrite;
  // Refused before the input is read, which may take long.
  CheckOutputs(OutputFiles(request), {Options.In}, request.Overwrite);
  TRasterOpenOptions open;
  open.RequestedRes = Options.Res;
  if (!Options.Window.empty()) {
    open.Window = {Options.Window[0], Options.Window[1], Options.Window[2], Options.Window[3]};
  }
  const auto image = OpenRaster(Options.In, open);
  if ((open.Window || open.RequestedRes > 0.0f) && ReadsWholeOnly(*image)) {
    throw TCommandError(Options.In +
                        ": text rasters and ArcInfo grids are read whole; --window and --res "
                        "apply to binary rasters and GeoTIFF");
  }
  return WriteRaster(*image, request, FilesOf(*image, Options.In), context);
}

}  // namespace zephra::cli
