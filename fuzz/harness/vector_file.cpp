// Vector coordinate files, text and binary, read into a TVector, then the geometry a host runs on
// a loaded layer, and the text writer, whose output must read back to as many features.
// Input: an options byte, the coordinate file.
//
// Options: bits 0-1 the layer type (0 counts as polygons), bit 2 binary, bit 3 lat/long, bit 4
// through the files (.dvc and coordinates) instead of a stream.

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include <zephra/Vector/zpVectorFile.h>

#include "../FuzzRaster.h"

using namespace zephra;

namespace {

constexpr int32_t kFeaturesToMeasure = 16;

std::unique_ptr<TVectorHeader> HeaderFor(uint8_t options) {
  auto header = std::make_unique<TVectorHeader>();
  const TLayerType types[] = {ltPolygon, ltPoint, ltLine, ltPolygon};
  header->SetLayerType(types[options & 3]);
  header->SetFileType((options & 4) != 0 ? "BINARY" : "ASCII");
  header->SetRefSystem((options & 8) != 0 ? "latlong" : "plane");
  return header;
}

std::unique_ptr<TVector> Load(uint8_t options, std::string_view coordinates) {
  if ((options & 16) != 0) {
    static const std::string name = fuzz::ScratchFile("vector.vec");
    fuzz::WriteFile(name, coordinates);
    HeaderFor(options)->SaveToFile(fuzz::ScratchFile("vector.dvc"));
    return TVector::Open(name);
  }
  auto vector = std::make_unique<TVector>();
  vector->SetHeader(HeaderFor(options));
  std::istringstream stream{std::string(coordinates)};
  vector->LoadFromStream(stream);
  return vector;
}

void Measure(TVector& vector) {
  const float x = vector.MinX / 2 + vector.MaxX / 2;
  const float y = vector.MinY / 2 + vector.MaxY / 2;
  fuzz::Try([&] { vector.SelectNearest(x, y); });
  for (int32_t i = 0; i < std::min(vector.Count(), kFeaturesToMeasure); ++i) {
    fuzz::Try([&] { vector.PointInPoly(x, y, i); });
    fuzz::Try([&] { vector.CalcArea(vector.GetFeature(i)); });
    fuzz::Try([&] { vector.CalcCentroid(vector.GetFeature(i)); });
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Setup();
  fuzz::TInputParts input(data, size);
  const auto options = input.Take<uint8_t>();
  std::unique_ptr<TVector> vector;
  fuzz::Try([&] { vector = Load(options, input.Rest()); });
  if (!vector) {
    return 0;
  }
  Measure(*vector);

  std::ostringstream saved;
  vector->SaveToStream(saved);
  TVector reread;
  reread.SetHeader(HeaderFor(options & ~4));
  std::istringstream again(saved.str());
  reread.LoadFromStream(again);
  if (reread.Count() != vector->Count()) {
    std::abort();  // the text writer and reader disagree on the features
  }
  return 0;
}
