// The palette file reader, then the reads and the blend a host runs on the table, and the writer,
// whose file must read back to as many colours.

#include <algorithm>
#include <cstdlib>

#include <zephra/Palette/zplbZephraPalFile.h>

#include "../FuzzSupport.h"

using namespace zephra;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Setup();
  static const std::string name = fuzz::ScratchFile("colours.pal");
  static const std::string copy = fuzz::ScratchFile("copy.pal");
  fuzz::WriteFile(name, std::string_view(reinterpret_cast<const char*>(data), size));

  TZephraPalFile palette;
  bool loaded = false;
  fuzz::Try([&] {
    palette.LoadFromFile(name);
    loaded = true;
  });
  if (!loaded) {
    return 0;
  }
  const int32_t last = std::min(palette.Count(), 256) - 1;
  for (int32_t i = 0; i <= last; ++i) {
    palette.GetColor(i);
  }
  palette.Blend(0, last);
  palette.SaveToFile(copy);

  TZephraPalFile reread;
  reread.LoadFromFile(copy);
  if (reread.Count() != palette.Count()) {
    std::abort();  // the writer and the reader disagree on the lines of a palette
  }
  return 0;
}
