#include "ReclassCommand.h"

#include <algorithm>
#include <cmath>
#include <fstream>

#include <CLI/CLI.hpp>

#include "Errors.h"
#include "NumberText.h"
#include "RasterInput.h"

namespace zephra::cli {

namespace {

// "LO:HI=V" or "LO:HI=V:NAME"; the name may hold colons. Without a name the class is named
// after its range.
void AddClass(TKey& key, const std::string& text, const std::string& where) {
  const size_t equals = text.find('=');
  const size_t colon = text.find(':');
  const size_t nameColon = text.find(':', equals);
  double lower = 0.0, upper = 0.0, value = 0.0;
  const std::string range = text.substr(0, equals);
  const bool parsed = equals != std::string::npos && colon < equals &&
                      ParseNumber(range.substr(0, colon), lower) &&
                      ParseNumber(range.substr(colon + 1), upper) &&
                      ParseNumber(text.substr(equals + 1, nameColon - equals - 1), value);
  if (!parsed || value != std::trunc(value) || std::fabs(value) > 2147483647.0) {
    throw TUsageError(where + "'" + text + "' is no class LO:HI=V[:NAME] with a whole V");
  }
  const std::string name = nameColon == std::string::npos ? range : text.substr(nameColon + 1);
  key.AddClass(static_cast<float>(lower), static_cast<float>(upper), static_cast<int32_t>(value),
               name);
}

void ReadKeyFile(TKey& key, const std::string& file) {
  std::ifstream in(file);
  if (!in) {
    throw TCommandError(file + ": cannot be opened");
  }
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    line = TrimControl(line.substr(0, line.find('#')));
    if (!line.empty()) {
      AddClass(key, line, file + ":" + std::to_string(number) + ": ");
    }
  }
}

bool InAnyClass(const TKey& key, float value) {
  for (const auto& [name, keyClass] : key.KeyClasses) {
    if (value >= keyClass->Lower && value <= keyClass->Upper) {
      return true;
    }
  }
  return false;
}

// The smallest cell type that holds every class value and the no-data value; real where a cell
// kept a value with a fraction.
TDataType SmallestCellType(const TAbstractImage& image, const TNoData& noData) {
  double lowest = noData.Value.value_or(0.0f), highest = lowest;
  for (int32_t i = 0; i < image.NumRecs; ++i) {
    const float value = image.BufferRead(i);
    if (!noData.Holds(value)) {
      if (value != std::trunc(value)) {
        return dtReal;
      }
      lowest = std::min<double>(lowest, value);
      highest = std::max<double>(highest, value);
    }
  }
  if (lowest >= 0.0 && highest <= 255.0 && (!noData.Value || *noData.Value == 0.0f)) {
    return dtByte;
  }
  return lowest >= -32768.0 && highest <= 32767.0 ? dtInteger : dtInteger32;
}

}  // namespace

void TReclassCommand::Declare(CLI::App& app) {
  app.add_option("IN", Options.In, "The raster to reclassify")->required();
  app.add_option("OUT", Options.Out, "The raster to write")->required();
  auto* keyFile = app.add_option("--key-file", Options.KeyFile,
                                 "Classes from a file, one LO:HI=V[:NAME] a line");
  auto* classes = app.add_option("--class", Options.Classes,
                                 "Cells from LO to HI (both included) become V; NAME goes to the "
                                 "legend; the first class that holds a value wins");
  app.add_option("--type", Options.Type,
                 "Cell type of a .doc output (default: the smallest that holds the classes)");
  app.add_flag("--overwrite", Options.Overwrite, "Replace OUT if it exists");
  keyFile->excludes(classes);
}

TReclassResult TReclassCommand::Run(const TContext& context) const {
  if (Options.KeyFile.empty() == Options.Classes.empty()) {
    throw TUsageError("reclass needs the classes: --class LO:HI=V[:NAME] ..., or --key-file F");
  }
  TKey key;
  for (const std::string& text : Options.Classes) {
    AddClass(key, text, "--class ");
  }
  if (!Options.KeyFile.empty()) {
    ReadKeyFile(key, Options.KeyFile);
  }
  TOutputRequest request = OutputRequestFor(Options.Out, "");
  if (!Options.Type.empty() && request.Format != TOutputFormat::Doc) {
    throw TUsageError("--type applies to .doc rasters, and " + Options.Out + " is none");
  }
  request.Overwrite = Options.Overwrite;
  CheckOutputs(OutputFiles(request), {Options.In, Options.KeyFile}, request.Overwrite);
  const auto in = OpenRaster(Options.In);
  const TNoData noData = NoDataOf(*in->Header());
  TImageHeader header(*in->Header());
  header.DataType = dtReal;
  const auto out = TRealImage::Create("", &header);
  out->MemOnly = true;
  out->Header()->ValueUnits = "class";
  out->Header()->FlagDef = header.FlagDef;
  out->Header()->FileTitle = "Classes of " + header.FileTitle;
  OnFile(Options.In, [&] { in->Reclass(out.get(), &key); });

  TReclassResult result;
  for (int32_t i = 0; i < in->NumRecs; ++i) {
    const float value = in->BufferRead(i);
    if (noData.Holds(value)) {
      out->BufferWrite(i, value);  // no data stays no data, whatever class holds its value
    } else if (!InAnyClass(key, value)) {
      ++result.Unclassified;
    }
  }
  for (const auto& [name, keyClass] : key.KeyClasses) {
    if (noData.Holds(static_cast<float>(keyClass->Color))) {
      context.Warn(Options.Out + ": class '" + name + "' has the value " +
                   std::to_string(keyClass->Color) + ", which reads as no data");
    }
  }
  if (request.Format == TOutputFormat::Doc) {
    request.CellType =
        Options.Type.empty() ? SmallestCellType(*out, noData) : CellTypeFromName(Options.Type);
  }
  result.Written = WriteRaster(*out, request, FilesOf(*in, Options.In), context);
  return result;
}

}  // namespace zephra::cli
