#include <zephra/Vector/zpVectorFile.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <zephra/Common/private/zpOutputFile.h>
#include <zephra/Raster/Header/zpHeaderUtils.h>

namespace zephra {

namespace {

template <typename List>
auto& ListItem(List& list, int32_t ind, const char* listName) {
  if (ind < 0 || static_cast<size_t>(ind) >= list.size()) {
    throw EListError(std::string(listName) + " index out of bounds (" + std::to_string(ind) +
                     "); the list holds " + std::to_string(list.size()) + " items");
  }
  return list[static_cast<size_t>(ind)];
}

// The header's name: the coordinate file's name with its extension replaced, or added.
std::string HeaderFileName(const std::string& vectorFN) {
  return std::filesystem::path(vectorFN).replace_extension(".dvc").string();
}

bool FileExists(const std::string& fileName) {
  std::error_code ignored;
  return std::filesystem::exists(fileName, ignored);
}

}  // namespace

TGeoPoint* TFeature::GetPoint(int32_t ind) {
  return &ListItem(FPoints, ind, "Point list");
}

const TGeoPoint* TFeature::GetPoint(int32_t ind) const {
  return &ListItem(FPoints, ind, "Point list");
}

TVector::TVector() : FHeader(std::make_unique<TVectorHeader>()) {}

TVector::TVector(TLayerType layerTypeIn) : TVector() {
  LayerType = layerTypeIn;
}

TVector::~TVector() = default;

std::unique_ptr<TVector> TVector::Open(const std::string& vectorFN) {
  auto vector = std::make_unique<TVector>();
  vector->LoadFromFile(vectorFN);
  return vector;
}

void TVector::Clear() {
  FFeatures.clear();
}

TFeature* TVector::GetFeature(int32_t ind) {
  return ListItem(FFeatures, ind, "Feature list").get();
}

const TFeature* TVector::GetFeature(int32_t ind) const {
  return ListItem(FFeatures, ind, "Feature list").get();
}

void TVector::SetHeader(std::unique_ptr<TVectorHeader>&& headerIn) {
  if (!headerIn) {
    throw EArgumentNullException("A vector layer needs a header; none was given");
  }
  FHeader = std::move(headerIn);
}

void TVector::AddFeature(std::unique_ptr<TFeature>&& feature) {
  if (!feature) {
    throw EArgumentNullException("No feature was given to add to the vector layer");
  }
  const TPointList& points = feature->FPoints;
  if (points.empty()) {
    throw EVectorFileError("Can't add a feature with zero points");
  }
  if (FFeatures.empty()) {
    MinX = MaxX = points.front().X();
    MinY = MaxY = points.front().Y();
  }
  for (const TGeoPoint& point : points) {
    MinX = std::min(MinX, point.X());
    MaxX = std::max(MaxX, point.X());
    MinY = std::min(MinY, point.Y());
    MaxY = std::max(MaxY, point.Y());
  }
  FFeatures.push_back(std::move(feature));
  WrittenTo = true;
}

void TVector::AddLoadedVertex(TFeature& feature, float x, float y, bool isLatLon) const {
  if (isLatLon && x < 0.0f) {
    x = static_cast<float>(static_cast<double>(x) + 360.0);
  }
  feature.AddPoint(x, y);
  if (LayerType == ltPolygon && x == 0.0f && y == 0.0f) {
    ++feature.NumOfHoles;
  }
}

void TVector::LoadFromFile(const std::string& FileName) {
  this->FileName = FileName;
  WrittenTo = false;
  if (!FileExists(FileName)) {
    throw EVectorFileError("Vector file (" + FileName + ") does not exist");
  }
  const std::string headerName = HeaderFileName(FileName);
  if (!FileExists(headerName)) {
    throw EVectorFileError(headerName + " does not exist");
  }
  FHeader->LoadFromFile(headerName);
  std::ifstream stream(FileName, std::ios::binary);
  if (!stream) {
    throw EFOpenError("Cannot open file \"" + FileName + "\"");
  }
  LoadFromStream(stream);
}

void TVector::LoadFromStream(std::istream& Stream) {
  const bool binary = SameText(FHeader->FileType(), "BINARY");
  LayerType = FHeader->LayerType();
  if (LayerType == ltNull) {
    throw EVectorFileError("Can't determine feature type of " + FileName);
  }
  if (binary) {
    LoadBinary(Stream);
  } else {
    LoadText(Stream);
  }
}

void TVector::Save() {
  if (!WrittenTo) {
    return;
  }
  if (FileName.empty()) {
    throw EVectorFileError("A filename must be specified to save the vector file");
  }
  SaveToFile(FileName);
}

void TVector::SaveAs(const std::string& fileNameIn) {
  FileName = fileNameIn;
  Save();
}

void TVector::SaveToFile(const std::string& FileName) {
  {
    TOutputFile coordinates(FileName, TOutputFile::omInPlace);
    SaveToStream(coordinates.Stream());
    coordinates.Commit();
  }
  TOutputFile header(HeaderFileName(FileName), TOutputFile::omInPlace);
  FHeader->SetMinX(MinX);
  FHeader->SetMaxX(MaxX);
  FHeader->SetMinY(MinY);
  FHeader->SetMaxY(MaxY);
  FHeader->SetLayerType(LayerType);
  FHeader->SaveToStream(header.Stream());
  header.Commit();
}

}  // namespace zephra
