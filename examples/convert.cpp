// convert: writes a raster as a GeoTIFF (OUTPUT.tif) and as an ArcInfo ASCII grid (OUTPUT.asc).
//
// Usage: convert RASTER OUTPUT      e.g. convert examples/elevation.doc /tmp/elevation
//
// The GeoTIFF export loads libtvgeotifflib.so when it starts, from beside libzephra.so; a host
// that keeps it elsewhere names it with zephra::SetGeoTiffLibraryPath first.

#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <zephra/zephra.h>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr,
                 "usage: convert RASTER OUTPUT\n"
                 "  writes RASTER (its .doc or its data file) to OUTPUT.tif and OUTPUT.asc\n");
    return 2;
  }
  try {
    // Whole, not thinned to the screen: an export wants every cell.
    const auto image = zephra::TGenericImage::Open(argv[1], false);
    const std::string output = argv[2];
    const std::vector<std::pair<std::shared_ptr<zephra::IZephraImageExporter>, std::string>>
        exports = {{std::make_shared<zephra::TGeoTiffExporter>(), output + ".tif"},
                   {std::make_shared<zephra::TArcInfoGridASCIIExporter>(), output + ".asc"}};
    for (const auto& [exporter, fileName] : exports) {
      exporter->ExportImage(image.get(), fileName, nullptr);
      std::printf("wrote %s\n", fileName.c_str());
    }
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "convert: %s\n", error.what());
    return 1;
  }
}
