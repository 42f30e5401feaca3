// The .dvc vector header reader on arbitrary text; every text field must survive the writer and
// a second read.

#include <cstdlib>
#include <sstream>

#include <zephra/Vector/zpVectorFileHeader.h>

#include "../FuzzSupport.h"

using namespace zephra;

namespace {

bool SameTexts(const TVectorHeader& a, const TVectorHeader& b) {
  return a.Title() == b.Title() && a.IDType() == b.IDType() && a.FileType() == b.FileType() &&
         a.ObjectType() == b.ObjectType() && a.RefSystem() == b.RefSystem() &&
         a.RefUnits() == b.RefUnits() && a.PosNError() == b.PosNError() &&
         a.Resolution() == b.Resolution();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Setup();
  TVectorHeader header;
  bool loaded = false;
  fuzz::Try([&] {
    std::istringstream text(std::string(reinterpret_cast<const char*>(data), size));
    header.LoadFromStream(text);
    loaded = true;
  });
  if (!loaded) {
    return 0;
  }
  header.IsLatLon();
  header.LayerType();

  std::ostringstream saved;
  header.SaveToStream(saved);
  TVectorHeader reread;
  std::istringstream again(saved.str());
  reread.LoadFromStream(again);
  if (!SameTexts(header, reread)) {
    std::abort();  // the writer lost or changed a field that the reader had taken
  }
  return 0;
}
