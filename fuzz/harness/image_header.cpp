// The .doc header reader on arbitrary text, then the report and the writer; what the writer gives
// must read back to the same grid and types.

#include <cstdlib>
#include <sstream>

#include <zephra/Raster/Header/zplbZephraImageHeader.h>
#include <zephra/Raster/Header/zplnUtils.h>

#include "../FuzzSupport.h"

using namespace zephra;

namespace {

bool SameShape(const TImageHeader& a, const TImageHeader& b) {
  return a.Width == b.Width && a.Height == b.Height && a.DataType == b.DataType &&
         a.FileType == b.FileType && a.Categories.size() == b.Categories.size();
}

void UseHeader(const TImageHeader& header) {
  header.Text();
  fuzz::Try([&] { UnitDistanceM(&header); });
  fuzz::Try([&] { ValueUnitsM(&header); });
  fuzz::Try([&] {
    int32_t col = 0;
    int32_t row = 0;
    LatLngToColRow(&header, header.Miny, header.Maxx, col, row);
  });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Setup();
  TImageHeader header;
  bool loaded = false;
  try {
    fuzz::Try([&] {
      std::istringstream text(std::string(reinterpret_cast<const char*>(data), size));
      header.LoadFromStream(text);
      loaded = true;
    });
  } catch (const std::bad_alloc&) {
    // a legend that claims more categories than memory holds
  }
  if (!loaded) {
    return 0;
  }
  UseHeader(header);

  std::ostringstream saved;
  header.SaveToStream(saved);
  TImageHeader reread;
  std::istringstream again(saved.str());
  reread.LoadFromStream(again);
  if (!SameShape(header, reread)) {
    std::abort();  // the writer lost or changed what the reader had taken
  }
  return 0;
}
