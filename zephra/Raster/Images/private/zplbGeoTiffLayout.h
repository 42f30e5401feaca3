#pragma once
// How a TIFF stores its samples: their type, the chunks (strips or tiles) they come in, and
// where one band lies in a chunk.

#include <cstdint>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Raster/Images/private/zplbGeoTiffFile.h>

namespace zephra {

// The sample types that are read; each has one cell type it goes into.
enum class TSampleType { UInt8, Int8, Int16, UInt16, Int32, Float32 };

struct TTiffLayout {
  uint32_t Width = 0;
  uint32_t Height = 0;
  TSampleType Sample = TSampleType::UInt8;
  uint32_t SampleBytes = 1;
  uint16_t Bands = 1;
  bool Tiled = false;
  // A strip is a chunk as wide as the image.
  uint32_t ChunkWidth = 0;
  uint32_t ChunkHeight = 0;
  // Samples per pixel within a chunk (1 for planar files), and the band's place among them.
  uint32_t PixelSamples = 1;
  uint32_t SampleInPixel = 0;
  // The plane that holds the band in a planar file, 0 otherwise.
  uint16_t Plane = 0;

  uint64_t ChunkBytes() const {
    return uint64_t{ChunkWidth} * ChunkHeight * PixelSamples * SampleBytes;
  }
};

// The layout of band (1-based) of file. Raises EArgumentException for a band the file lacks,
// and EImageFileError for a sample type or layout that is not read (see TGeoTiffImage).
TTiffLayout ReadTiffLayout(const TTiffFile& file, int32_t band);

// The cell type a sample type is read into.
TDataType CellTypeOf(TSampleType sample);

}  // namespace zephra
