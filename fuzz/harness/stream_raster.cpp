// The stream-backed rasters on a std::istringstream of cells with a header read from text, or
// opened from files. Input: an options byte, four cells (column and row) and a map point to read,
// the .doc text, a NUL byte, the cell bytes.
//
// Options: bits 0-1 the class, bit 2 the class the header names instead, bit 3 open from files.

#include <sstream>

#include <zephra/Raster/Stream/zplbNonBufferedImageTypes.h>

#include "../FuzzRaster.h"

using namespace zephra;

namespace {

struct TReads {
  int32_t Cells[4][2];
  float Lat;
  float Lng;
};

template <typename TImage>
std::unique_ptr<TAbstractNonBufferedImage> Make(std::istream* stream, TImageHeader* header,
                                                const std::string& fileName) {
  if (stream == nullptr) {
    return TImage::Open(fileName);
  }
  return TImage::Create(stream, header);
}

std::unique_ptr<TAbstractNonBufferedImage> Make(int type, std::istream* stream,
                                                TImageHeader* header, const std::string& name) {
  switch (type & 3) {
    case dtReal:
      return Make<TSingleNonBufferedImage>(stream, header, name);
    case dtInteger:
      return Make<TIntegerNonBufferedImage>(stream, header, name);
    case dtByte:
      return Make<TByteNonBufferedImage>(stream, header, name);
    default:
      return Make<TInteger32NonBufferedImage>(stream, header, name);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Setup();
  fuzz::TInputParts input(data, size);
  const auto options = input.Take<uint8_t>();
  const auto reads = input.Take<TReads>();
  const std::string_view headerText = input.TakeText();
  const std::string_view cells = input.Rest();

  TImageHeader header;
  bool loaded = false;
  fuzz::Try([&] {
    std::istringstream text{std::string(headerText)};
    header.LoadFromStream(text);
    loaded = true;
  });
  std::istringstream stream{std::string(cells)};
  const bool fromFiles = (options & 8) != 0;
  static const std::string img = fuzz::ScratchFile("stream.img");
  if (fromFiles) {
    fuzz::WriteFile(fuzz::ScratchFile("stream.doc"), headerText);
    fuzz::WriteFile(img, cells);
  } else if (!loaded) {
    return 0;
  }
  const int type = (options & 4) != 0 ? static_cast<int>(header.DataType) : options;

  std::unique_ptr<TAbstractNonBufferedImage> image;
  fuzz::Try([&] { image = Make(type, fromFiles ? nullptr : &stream, &header, img); });
  if (!image) {
    return 0;
  }
  for (const auto& cell : reads.Cells) {
    fuzz::Try([&] { image->Read(cell[0], cell[1]); });
  }
  fuzz::Try([&] { image->ReadLatLng(reads.Lat, reads.Lng); });
  return 0;
}
