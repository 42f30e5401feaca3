#include "PaletteCommands.h"

#include <filesystem>

#include <CLI/CLI.hpp>

#include "Errors.h"

namespace zephra::cli {

namespace {

// The library takes a missing palette file for its built-in table; the tool says it is missing.
TZephraPalFile LoadPalette(const std::string& file) {
  if (!std::filesystem::is_regular_file(file)) {
    throw TCommandError(file + ": no such palette file");
  }
  TZephraPalFile palette;
  OnFile(file, [&] { palette.LoadFromFile(file); });
  return palette;
}

}  // namespace

void TPaletteShowCommand::Declare(CLI::App& app) {
  app.add_option("FILE", Options.File, "The palette file")->required();
}

TPaletteResult TPaletteShowCommand::Run(const TContext&) const {
  return {Options.File, LoadPalette(Options.File).Colors()};
}

void TPaletteBlendCommand::Declare(CLI::App& app) {
  app.add_option("FILE", Options.File, "The palette file")->required();
  app.add_option("I1", Options.Index1, "First entry of the ramp")->required();
  app.add_option("I2", Options.Index2, "Last entry of the ramp")->required();
  app.add_option("OUT", Options.Out, "The palette file to write")->required();
  app.add_flag("--overwrite", Options.Overwrite, "Replace OUT if it exists");
}

TWriteResult TPaletteBlendCommand::Run(const TContext&) const {
  if (Options.Index1 < 0 || Options.Index2 < Options.Index1) {
    throw TUsageError("blend needs 0 <= I1 <= I2");
  }
  CheckOutputs({Options.Out}, {Options.File}, Options.Overwrite);
  TZephraPalFile palette = LoadPalette(Options.File);
  OnFile(Options.Out, [&] {
    palette.Blend(Options.Index1, Options.Index2);
    palette.SaveToFile(Options.Out);  // the library replaces the file only when it is whole
  });
  return {{Options.Out}, "palette", palette.Count(), 1, "", {}};
}

}  // namespace zephra::cli
