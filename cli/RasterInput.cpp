#include "RasterInput.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "Errors.h"

namespace zephra::cli {

namespace fs = std::filesystem;

namespace {

std::string FirstBytes(const std::string& file, size_t count) {
  std::string bytes(count, '\0');
  std::ifstream in(file, std::ios::binary);
  in.read(bytes.data(), static_cast<std::streamsize>(count));
  bytes.resize(static_cast<size_t>(std::max<std::streamsize>(in.gcount(), 0)));
  return bytes;
}

// A TIFF starts "II*\0" or "MM\0*" (classic), "II+\0" or "MM\0+" (BigTIFF).
bool StartsAsTiff(const std::string& file) {
  const std::string start = FirstBytes(file, 4);
  return start == std::string("II*\0", 4) || start == std::string("MM\0*", 4) ||
         start == std::string("II+\0", 4) || start == std::string("MM\0+", 4);
}

// An ArcInfo grid's first line is "ncols <n>", in any letter case.
bool StartsAsArcGrid(const std::string& file) {
  const std::string start = FirstBytes(file, 6);
  return start.size() == 6 && SameText(start.substr(0, 5), "ncols") && start[5] == ' ';
}

}  // namespace

TNoData NoDataOf(const TImageHeader& header) {
  return header.Flag ? TNoData{header.FlagValue} : TNoData{};
}

std::unique_ptr<TAbstractImage> OpenRaster(const std::string& file,
                                           const TRasterOpenOptions& options) {
  // The library's open takes a .doc beside a file for its header before it looks at what the file
  // holds; a grid beside a raster of the same name (elevation.asc by elevation.doc) is a grid.
  auto image = OnFile(file, [&]() -> std::unique_ptr<TAbstractImage> {
    if (StartsAsArcGrid(file)) {
      return TArcGridImage::Open(file, false);
    }
    return OpenAnyRaster(file, options);
  });
  TImageHeader& header = *image->Header();
  if (image->GetImageTypeID() == "ARCGRID" && !header.Flag) {
    header.Flag = true;
    header.FlagDef = "NODATA_value of the grid";
  }
  return image;
}

TImageHeader RasterHeader(const std::string& file) {
  const bool docBeside = fs::exists(fs::path(file).replace_extension(".doc"));
  if (docBeside && !StartsAsTiff(file) && !StartsAsArcGrid(file)) {
    return OnFile(file, [&] { return TImageHeader(*TImageHeader::Open(file)); });
  }
  return TImageHeader(*OpenRaster(file)->Header());
}

bool ReadsWholeOnly(const TAbstractImage& image) {
  const std::string type = image.GetImageTypeID();
  return type == "ASCII" || type == "ARCGRID";
}

std::string FormOf(const TAbstractImage& image, const std::string& given) {
  const std::string type = image.GetImageTypeID();
  if (type == "ARCGRID") {
    return "grid";
  }
  if (type == "ASCII") {
    return "ascii";
  }
  return StartsAsTiff(given) ? "geotiff" : "doc";
}

std::vector<std::string> FilesOf(const TAbstractImage& image, const std::string& given) {
  std::vector<std::string> files = {given};
  for (const std::string& file : {image.FileName(), image.Header()->FileName}) {
    if (!file.empty()) {
      files.push_back(file);
    }
  }
  return files;
}

}  // namespace zephra::cli
