#include <zephra/Export/zplGeoTiffExporter.h>

#include <algorithm>
#include <bit>
#include <vector>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpSpatialConst.h>
#include <zephra/Export/private/zplGeoTiffLib.h>
#include <zephra/Raster/Images/private/zplbZephraRowRead.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

namespace zephra {

namespace {

// The quiet NaN the component receives for a no-data cell.
const float kNoDataCell = std::bit_cast<float>(0xFFC00000u);

// Runs gtw_free exactly once, on success and failure alike.
class TWriterHandle {
 public:
  TWriterHandle(const TGeoTiffLib& lib, TGeoTiffLib::THandle handle) : FLib(lib), FHandle(handle) {}
  ~TWriterHandle() { FLib.Free(FHandle); }
  TWriterHandle(const TWriterHandle&) = delete;
  TWriterHandle& operator=(const TWriterHandle&) = delete;

  TGeoTiffLib::THandle Get() const { return FHandle; }

 private:
  const TGeoTiffLib& FLib;
  TGeoTiffLib::THandle FHandle;
};

}  // namespace

void TGeoTiffExporter::ExportImage(const TAbstractImage* Source, const std::string& FileName,
                                   const TExportProgressEvent& /*OnProgress*/) {
  // Not among this exporter's own steps, but a null image must not crash it.
  if (Source == nullptr) {
    throw EArgumentNullException("Source");
  }
  if (Source->Header() == nullptr) {
    throw EArgumentNullException("Source.Header");
  }
  const TImageHeader& header = *Source->Header();
  const TGeoTiffLib lib;
  // The file system takes names as UTF-8 bytes, which is what the string holds already: the
  // name goes to the component unchanged, and no character is lost.
  const TGeoTiffLib::THandle created = lib.Create(FileName.c_str(), "w");
  if (created == nullptr) {
    throw Exception("Failed create GeoTIFF file.");
  }
  const TWriterHandle writer(lib, created);
  lib.InitData(writer.Get(), header.Width, header.Height, header.Minx, header.Maxy,
               header.ResolutionX, header.IsLatLon() ? 1u : 0u);

  std::vector<float> row(static_cast<size_t>(std::max(header.Width, 0)));
  for (int32_t r = 0; r < header.Height; ++r) {
    ReadRowSingles(*Source, r, row, [&](int32_t c) { return Source->ReadCR0(c, r); });
    // A fixed threshold: -9990.0 itself is no-data, -9989.5 is not; NaN fails the test too.
    for (float& value : row) {
      value = value > TSpatialConst::MissingValue ? value : kNoDataCell;
    }
    lib.WriteRow(writer.Get(), r, row.data());
  }
}

}  // namespace zephra
