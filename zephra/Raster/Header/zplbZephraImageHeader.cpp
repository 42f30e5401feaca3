#include <zephra/Raster/Header/zplbZephraImageHeader.h>

#include <zephra/Raster/Header/zpHeaderUtils.h>

namespace zephra {

TImageHeader::TImageHeader() {
  SetRefSystem(std::string());
}

// Every field, the private reference-system state and a legend of its own: the member-wise copy
// is exactly that.
TImageHeader::TImageHeader(const TImageHeader& Source) = default;

std::unique_ptr<TImageHeader> TImageHeader::Open(const std::string& imageFN) {
  auto header = std::make_unique<TImageHeader>();
  header->LoadFromFile(imageFN);
  return header;
}

void TImageHeader::Copy(TImageHeader* headerOut) const {
  if (headerOut == nullptr) {
    throw EArgumentNullException("TImageHeader::Copy: headerOut is null");
  }
  if (headerOut == this) {
    return;  // clearing the target's legend first would lose our own
  }
  headerOut->SetRefSystem(FRefSystem);
  headerOut->FileTitle = FileTitle;
  headerOut->RefUnits = RefUnits;
  headerOut->DataType = DataType;
  headerOut->FileType = FileType;
  headerOut->Width = Width;
  headerOut->Height = Height;
  headerOut->MinValue = MinValue;
  headerOut->MaxValue = MaxValue;
  headerOut->FlagValue = FlagValue;
  headerOut->Flag = Flag;
  headerOut->Minx = Minx;
  headerOut->Maxx = Maxx;
  headerOut->Miny = Miny;
  headerOut->Maxy = Maxy;
  headerOut->ResolutionX = ResolutionX;
  headerOut->ResolutionY = ResolutionY;
  headerOut->Comment = Comment;
  headerOut->Lineage = Lineage;
  headerOut->Completeness = Completeness;
  headerOut->Consistency = Consistency;
  headerOut->Categories = Categories;
}

void TImageHeader::SetRefSystem(const std::string& RefSystem) {
  FRefSystem = TrimControl(RefSystem);
  FIsLatLon = SameText(FRefSystem, "Latlon");
  FIsPlane = SameText(FRefSystem, "Plane");
}

}  // namespace zephra
