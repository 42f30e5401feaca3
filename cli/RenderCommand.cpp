#include "RenderCommand.h"

#include <filesystem>

#include <CLI/CLI.hpp>

#include "Errors.h"
#include "PendingFile.h"
#include "PngWriter.h"
#include "Progress.h"
#include "RasterInput.h"
#include "RasterStats.h"

namespace zephra::cli {

namespace {

TZephraPalFile LoadPalette(const std::string& file) {
  TZephraPalFile palette;
  if (!file.empty()) {
    // The library takes a missing palette file for the built-in table; a user who named one
    // wants to hear that it is not there.
    if (!std::filesystem::is_regular_file(file)) {
      throw TCommandError(file + ": no such palette file");
    }
    OnFile(file, [&] { palette.LoadFromFile(file); });
  }
  return palette;
}

// The library's thinned open reads every n-th cell of every n-th row, for about width columns.
std::unique_ptr<TAbstractImage> OpenThinned(const std::string& file, int32_t width) {
  TRasterOpenOptions options;
  if (width > 0) {
    const TImageHeader header = RasterHeader(file);
    if (width < header.Width) {
      options.RequestedRes = (header.Maxx - header.Minx) / static_cast<float>(width);
    }
  }
  return OpenRaster(file, options);
}

TPicture Paint(const TAbstractImage& image, const TPaletteRamp& ramp, const TNoData& noData,
               TProgress& progress) {
  const TImageHeader& header = *image.Header();
  TPicture picture{header.Width, header.Height, {}};
  picture.Pixels.reserve(static_cast<size_t>(image.NumRecs) * 4);
  progress.Begin("rendering", image.NumRecs);
  for (int32_t i = 0; i < image.NumRecs; ++i) {
    const float value = image.BufferRead(i);
    const bool empty = noData.Holds(value) || ramp.IsNoData(value);
    const TColor color = empty ? 0 : ramp.ColorOf(value);
    const uint8_t alpha = empty ? 0 : 255;
    picture.Pixels.insert(picture.Pixels.end(), {static_cast<uint8_t>(color & 0xff),
                                                 static_cast<uint8_t>(color >> 8 & 0xff),
                                                 static_cast<uint8_t>(color >> 16 & 0xff), alpha});
    if (i % std::max(header.Width, 1) == 0) {
      progress.Update(i);
    }
  }
  progress.Clear();
  return picture;
}

}  // namespace

void TRenderCommand::Declare(CLI::App& app) {
  app.add_option("IN", Options.In, "The raster to render")->required();
  app.add_option("OUT", Options.Out, "The PNG to write")->required();
  app.add_option("--palette", Options.Palette, "A palette file (default: the built-in table)");
  app.add_option("--range", Options.Range,
                 "Stretch the palette over MIN MAX (default: the range of the cells)")
      ->expected(2);
  app.add_option("--width", Options.Width, "Thin the raster to about W columns")
      ->check(CLI::PositiveNumber);
  app.add_flag("--overwrite", Options.Overwrite, "Replace OUT if it exists");
}

TWriteResult TRenderCommand::Run(const TContext& context) const {
  if (!Options.Range.empty() && !(Options.Range[0] <= Options.Range[1])) {
    throw TUsageError("--range MIN MAX needs MIN <= MAX");
  }
  CheckOutputs({Options.Out}, {Options.In, Options.Palette}, Options.Overwrite);
  const TZephraPalFile palette = LoadPalette(Options.Palette);
  const auto image = OpenThinned(Options.In, Options.Width);
  std::vector<std::string> inputs = FilesOf(*image, Options.In);
  inputs.push_back(Options.Palette);
  CheckOutputs({Options.Out}, inputs, Options.Overwrite);
  const TNoData noData = NoDataOf(*image->Header());
  TRange range{};
  if (Options.Range.empty()) {
    const TRasterStats stats = ScanStats(*image, noData, context.Progress);
    if (stats.ValidCells() == 0) {
      throw TCommandError(Options.In + ": every cell is no data: nothing to render");
    }
    range = {static_cast<float>(stats.Min), static_cast<float>(stats.Max)};
  } else {
    range = {static_cast<float>(Options.Range[0]), static_cast<float>(Options.Range[1])};
  }
  const TPaletteRamp ramp(&palette, range, 0, noData.Value);
  const TPicture picture = Paint(*image, ramp, noData, context.Progress);
  TPendingFile pending(Options.Out);
  OnFile(Options.Out, [&] { WritePng(picture, pending.Path()); });
  pending.Commit();
  return {{Options.Out}, "png", picture.Width, picture.Height, "rgba", {}};
}

}  // namespace zephra::cli
