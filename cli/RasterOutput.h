#pragma once
// Output rasters in every format the tool writes: a binary .doc raster of any cell type, a text
// .doc raster, an ArcInfo grid, XYZ text and GeoTIFF. Each output is complete or absent: the
// .doc rasters through the library's write-back, which replaces files safely, the others through a
// temporary file renamed over the target. Where a format cannot hold what the raster
// holds, the lossless route is taken (the tool writes grids and XYZ itself, with every digit), or
// the command fails before anything is written, or (where no route exists) the loss is said on
// stderr.

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <zephra/zephra.h>

#include "Context.h"

namespace zephra::cli {

enum class TOutputFormat { Doc, Ascii, Grid, Xyz, GeoTiff };

// Where and how a raster is written.
struct TOutputRequest {
  std::string File;
  TOutputFormat Format = TOutputFormat::Doc;
  std::optional<TDataType> CellType;  // of a binary .doc raster; empty: the source's
  std::optional<float> NoData;        // empty: the source's, or a default where it has none
  bool Overwrite = false;
};

// What a command wrote.
struct TWriteResult {
  std::vector<std::string> Files;  // every file made, the data file first
  std::string Format;              // "doc", "ascii", "grid", "xyz", "geotiff", "png", "palette"
  int32_t Width = 0;
  int32_t Height = 0;
  std::string CellType;         // "real", "byte", ... ("rgba" for a picture)
  std::optional<float> NoData;  // the no-data value the output declares
};

// The words of --to: doc, real, byte, integer, integer32, ascii, grid, xyz, geotiff. The format
// of file comes from its extension where to is empty (.doc .img .txt .asc .xyz .tif .tiff).
// Raises TUsageError for an unknown word or extension.
TOutputRequest OutputRequestFor(const std::string& file, const std::string& to);
// The cell type of a --type word (real, byte, integer, integer32). Raises TUsageError.
TDataType CellTypeFromName(const std::string& name);
// The no-data value of an output of type where nobody named one: the library's flag value, or 0
// for bytes, which hold nothing below it.
float DefaultNoData(TDataType type);
// The .doc word of a cell type.
std::string CellTypeName(TDataType type);

// The files that request makes, the data file first.
std::vector<std::filesystem::path> OutputFiles(const TOutputRequest& request);

// Refuses, before any work, an output that exists (unless overwrite) or that is one of inputs.
// Raises TCommandError.
void CheckOutputs(const std::vector<std::filesystem::path>& outputs,
                  const std::vector<std::string>& inputs, bool overwrite);

// Writes the cells of source as request says; no file of inputs is replaced. Raises TCommandError
// naming the output, which then does not exist.
TWriteResult WriteRaster(const TAbstractImage& source, const TOutputRequest& request,
                         const std::vector<std::string>& inputs, const TContext& context);

}  // namespace zephra::cli
