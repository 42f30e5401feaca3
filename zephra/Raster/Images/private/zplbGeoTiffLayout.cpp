#include <zephra/Raster/Images/private/zplbGeoTiffLayout.h>

#include <algorithm>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

namespace {

template <typename T>
T Field(const TTiffFile& file, uint32_t tag) {
  T value{};
  TIFFGetFieldDefaulted(file.Handle(), tag, &value);
  return value;
}

[[noreturn]] void Refuse(const TTiffFile& file, const std::string& why) {
  throw EImageFileError(file.FileName() + " cannot be read: " + why);
}

TSampleType SampleTypeOf(const TTiffFile& file, uint16_t format, uint16_t bits) {
  const auto bitsText = std::to_string(bits) + "-bit ";
  if (format == SAMPLEFORMAT_UINT && bits == 8) {
    return TSampleType::UInt8;
  }
  if (format == SAMPLEFORMAT_INT && bits == 8) {
    return TSampleType::Int8;
  }
  if (format == SAMPLEFORMAT_INT && bits == 16) {
    return TSampleType::Int16;
  }
  if (format == SAMPLEFORMAT_UINT && bits == 16) {
    return TSampleType::UInt16;
  }
  if (format == SAMPLEFORMAT_INT && bits == 32) {
    return TSampleType::Int32;
  }
  if (format == SAMPLEFORMAT_IEEEFP && bits == 32) {
    return TSampleType::Float32;
  }
  const char* kind = format == SAMPLEFORMAT_UINT     ? "unsigned integer"
                     : format == SAMPLEFORMAT_INT    ? "signed integer"
                     : format == SAMPLEFORMAT_IEEEFP ? "floating-point"
                                                     : "complex or unknown";
  Refuse(file, "its " + bitsText + kind +
                   " samples fit none of the cell types (8-bit unsigned, 16-bit and 32-bit "
                   "signed, 32-bit float) without losing values");
}

void ReadChunking(const TTiffFile& file, TTiffLayout& layout) {
  layout.Tiled = TIFFIsTiled(file.Handle()) != 0;
  if (layout.Tiled) {
    layout.ChunkWidth = Field<uint32_t>(file, TIFFTAG_TILEWIDTH);
    layout.ChunkHeight = Field<uint32_t>(file, TIFFTAG_TILELENGTH);
  } else {
    layout.ChunkWidth = layout.Width;
    layout.ChunkHeight =
        std::clamp<uint32_t>(Field<uint32_t>(file, TIFFTAG_ROWSPERSTRIP), 1, layout.Height);
  }
  if (layout.ChunkWidth == 0 || layout.ChunkHeight == 0) {
    Refuse(file, "its tiles have no size");
  }
  // A chunk whose size libtiff reckons otherwise (subsampled colour, odd bit packing) is no
  // plain grid of samples.
  const uint64_t libtiffBytes =
      layout.Tiled ? TIFFTileSize64(file.Handle()) : TIFFStripSize64(file.Handle());
  if (libtiffBytes != layout.ChunkBytes()) {
    Refuse(file, "its strips or tiles are no plain grid of samples");
  }
}

}  // namespace

TDataType CellTypeOf(TSampleType sample) {
  switch (sample) {
    case TSampleType::UInt8:
      return dtByte;
    case TSampleType::Int8:
    case TSampleType::Int16:
      return dtInteger;
    case TSampleType::UInt16:
    case TSampleType::Int32:
      return dtInteger32;
    case TSampleType::Float32:
      break;
  }
  return dtReal;
}

TTiffLayout ReadTiffLayout(const TTiffFile& file, int32_t band) {
  TTiffLayout layout;
  layout.Width = Field<uint32_t>(file, TIFFTAG_IMAGEWIDTH);
  layout.Height = Field<uint32_t>(file, TIFFTAG_IMAGELENGTH);
  if (layout.Width == 0 || layout.Height == 0) {
    Refuse(file, "it has no cells");
  }
  layout.Bands = Field<uint16_t>(file, TIFFTAG_SAMPLESPERPIXEL);
  if (band < 1 || band > layout.Bands) {
    throw EArgumentException("Band " + std::to_string(band) + " asked of " + file.FileName() +
                             ", which has " + std::to_string(layout.Bands) + " band(s)");
  }
  const auto bits = Field<uint16_t>(file, TIFFTAG_BITSPERSAMPLE);
  layout.Sample = SampleTypeOf(file, Field<uint16_t>(file, TIFFTAG_SAMPLEFORMAT), bits);
  layout.SampleBytes = bits / 8u;
  if (Field<uint16_t>(file, TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE) {
    layout.Plane = static_cast<uint16_t>(band - 1);
  } else {
    layout.PixelSamples = layout.Bands;
    layout.SampleInPixel = static_cast<uint32_t>(band - 1);
  }
  ReadChunking(file, layout);
  return layout;
}

}  // namespace zephra
