#include "HeaderCommands.h"

#include <algorithm>
#include <array>
#include <memory>
#include <sstream>

#include <zephra/zephra.h>
#include <CLI/CLI.hpp>

#include "Errors.h"

namespace zephra::cli {

namespace {

// The keys a user may change. The size and the cell type describe the data file, which a header
// edit does not rewrite, and the legend takes lines of its own.
constexpr std::array<const char*, 17> kSettableKeys = {
    "file title", "ref. system", "ref. units", "unit dist.",   "min. X",      "max. X",
    "min. Y",     "max. Y",      "min. value", "max. value",   "value units", "flag value",
    "flag def'n", "comment",     "Lineage",    "Completeness", "Consistency"};

std::unique_ptr<TImageHeader> OpenHeader(const std::string& file) {
  return OnFile(file, [&] { return TImageHeader::Open(file); });
}

// The fields as the header's own text gives them.
THeaderResult FieldsOf(const TImageHeader& header) {
  THeaderResult result{header.FileName, {}, false};
  std::istringstream text(header.Text());
  std::string line, key, value;
  while (std::getline(text, line)) {
    ZephraHeaderProcessLine(line, key, value);
    if (!key.empty()) {
      result.Fields.emplace_back(key, value);
    }
  }
  return result;
}

THeaderResult OneField(THeaderResult all, const std::string& key) {
  const auto found = std::find_if(all.Fields.begin(), all.Fields.end(),
                                  [&](const auto& field) { return SameText(field.first, key); });
  if (found == all.Fields.end()) {
    throw TCommandError(all.File + ": no key '" + key + "' in the header");
  }
  return {all.File, {*found}, true};
}

}  // namespace

void THeaderGetCommand::Declare(CLI::App& app) {
  app.add_option("FILE", Options.File, "The raster: its .doc or its data file")->required();
  app.add_option("KEY", Options.Key, "The key, as in the file (\"file title\", \"min. X\", ...)");
}

THeaderResult THeaderGetCommand::Run(const TContext&) const {
  THeaderResult all = FieldsOf(*OpenHeader(Options.File));
  return Options.Key.empty() ? all : OneField(std::move(all), Options.Key);
}

void THeaderSetCommand::Declare(CLI::App& app) {
  app.add_option("FILE", Options.File, "The raster: its .doc or its data file")->required();
  app.add_option("KEY", Options.Key, "The key, as in the file (\"file title\", \"min. X\", ...)")
      ->required();
  app.add_option("VALUE", Options.Value, "The new value (\"none\" for no flag value)")->required();
}

THeaderSetResult THeaderSetCommand::Run(const TContext&) const {
  const auto settable = std::find_if(kSettableKeys.begin(), kSettableKeys.end(),
                                     [&](const char* key) { return SameText(key, Options.Key); });
  if (settable == kSettableKeys.end()) {
    std::string keys;
    for (const char* key : kSettableKeys) {
      keys += (keys.empty() ? "" : ", ") + std::string(key);
    }
    throw TUsageError("'" + Options.Key + "' cannot be set; the keys that can: " + keys);
  }
  const auto header = OpenHeader(Options.File);
  // The library's own reader takes the new line over the loaded fields, so the value is parsed
  // exactly as a load would parse it.
  std::istringstream line(std::string(*settable) + ": " + Options.Value + "\n");
  const std::string docFile = header->FileName;  // the save renames the field to a ".DOC" form
  OnFile(docFile, [&] {
    header->LoadFromStream(line);
    header->SaveToFile(docFile);
  });
  THeaderResult changed = OneField(FieldsOf(*header), *settable);
  changed.File = docFile;
  return {changed};
}

}  // namespace zephra::cli
