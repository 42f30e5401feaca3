#include "InfoCommand.h"

#include <CLI/CLI.hpp>

#include "RasterInput.h"

namespace zephra::cli {

void TInfoCommand::Declare(CLI::App& app) {
  app.add_option("FILE", Options.File, "The raster: its .doc, its data file, a grid or a GeoTIFF")
      ->required();
  app.add_flag("--stats", Options.Stats,
               "Scan the cells: minimum, maximum, mean, standard deviation, no-data count");
}

TInfoResult TInfoCommand::Run(const TContext& context) const {
  const auto image = OpenRaster(Options.File);
  TInfoResult result{Options.File,
                     FormOf(*image, Options.File),
                     image->GetImageTypeID(),
                     TImageHeader(*image->Header()),
                     {}};
  if (Options.Stats) {
    result.Stats = ScanStats(*image, NoDataOf(result.Header), context.Progress);
  }
  return result;
}

}  // namespace zephra::cli
