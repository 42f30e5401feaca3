#pragma once
/// @file
/// TGeoTiffImage: one band of a GeoTIFF read into memory, and OpenGeoTiff, which opens a band as
/// the instance its samples go into.
//
// A GeoTIFF image is a binary raster of the library in every way but where its cells come from:
// it descends from TTypedImage, so that cell access, range, reclass, smoothing, FillShape, the
// exporters and TImageFactory::Copy take it as the TRealImage, TByteImage, TIntegerImage or
// TInteger32Image it is. Its header comes from the TIFF's own tags, not from a .doc.
//
// Cell types, by the samples of the band:
// - 8-bit unsigned -> TGeoTiffImage<uint8_t> ("BYTE");
// - 8-bit signed and 16-bit signed -> TGeoTiffImage<int16_t> ("INT");
// - 16-bit unsigned and 32-bit signed -> TGeoTiffImage<int32_t> ("INT32");
// - 32-bit float -> TGeoTiffImage<float> ("REAL").
// Refused, since no cell type holds every value: 32-bit unsigned, 64-bit float, 64-bit integers,
// complex samples, and sizes other than 8, 16 and 32 bits.
//
// Layouts: stripped or tiled, chunky or planar, every compression the installed libtiff decodes,
// with or without a predictor, classic TIFF or BigTIFF, either byte order. A strip or tile whose
// size is no plain grid of samples (subsampled colour) is refused.
//
// Georeferencing: a north-up grid from a tie point and a pixel scale, or from a transformation
// matrix without rotation; pixel-is-point moves the grid half a cell north-west, so that the
// bounds are those of the cells' outer edges. A geographic model gives a "latlon" header in
// degrees; any other a "plane" header whose RefUnits is the linear unit ("m", "km", "ft") or
// "unknown". The EPSG code, where the file has one, ends the header's Lineage ("..., EPSG:32633").
// A TIFF with no georeferencing opens as a plane grid of cell size 1 over 0 .. Width,
// 0 .. Height (its header's Comment says so). Refused: rotated or sheared grids, south-up
// grids, grids tied by control points only, and geographic grids in units other than degrees.
//
// No-data: a number in the no-data tag (42113) becomes the header's flag value (Flag true). A
// float band always has a flag: that number, or -9990.0 when the tag is missing or "nan"; NaN
// cells read as the flag value. The header's MinValue and MaxValue are those of the cells read,
// the flag value left out.
//
// Read-only as a file: writes to the cells stay in memory (MemOnly is true), Close() never
// writes a .tif nor a .doc, and ReOpen() reads the TIFF again. A copy by TImageFactory::Copy is
// the plain typed image, with MemOnly true as well. A thinned or windowed open decodes only the
// strips and tiles that hold a cell it keeps.
//
// libtiff's and libgeotiff's warnings and errors go to the debug channel (SetDebugOutput),
// never to stderr; an error that stops the read is also the end of the exception's message.

#include <cstdint>
#include <memory>
#include <string>

#include <zephra/Common/zpExport.h>
#include <zephra/Raster/Images/zplbRasterOpen.h>
#include <zephra/Raster/Images/zplbZephraTypedImage.h>

namespace zephra {

/// One band of a GeoTIFF in memory, with TCell cells (see the file comment for which samples
/// go into which cells). Built only by Open or OpenGeoTiff.
template <typename TCell>
class ZEPHRA_API TGeoTiffImage final : public TTypedImage<TCell> {
 public:
  /// Band Band (from 1) whole, or thinned to the screen if aScaleBuff is True. Raises Exception
  /// "There was an error opening "%s". Please check the file and try again..." around any
  /// failure (the missing file, a file that is no TIFF, a refused layout or georeferencing, a
  /// band the file lacks, samples that go into other cells, a strip or tile that fails to
  /// decode), but the allocation limit's EImageFileError, which passes unchanged.
  static std::unique_ptr<TGeoTiffImage> Open(const std::string& inFileName, bool aScaleBuff,
                                             int32_t Band = 1);
  /// Thinned to about aRequestedRes map units. Raises the failures that the aScaleBuff form
  /// wraps, unwrapped: EImageFileError for the file, its layout, georeferencing or decoding,
  /// EArgumentException for a band the file lacks, and EMathError for a step that leaves no
  /// cell.
  static std::unique_ptr<TGeoTiffImage> Open(const std::string& inFileName, float aRequestedRes,
                                             int32_t Band = 1);
  /// The window aminx .. amaxx, aminy .. amaxy, thinned to the screen. Raises as the
  /// aRequestedRes form, and as ReOpen() for the window.
  static std::unique_ptr<TGeoTiffImage> Open(const std::string& inFileName, float aminx,
                                             float amaxx, float aminy, float amaxy,
                                             int32_t Band = 1);

  /// An empty image for the factories; use Open. Never raises.
  explicit TGeoTiffImage(typename TAbstractImage::TConstructionKey key) : TTypedImage<TCell>(key) {}
  /// Writes nothing. Never raises.
  ~TGeoTiffImage() override;

  /// The band read, counted from 1. Never raises.
  int32_t Band() const { return FBand; }

 protected:
  /// The header from the TIFF's tags. Raises as the aRequestedRes Open.
  std::unique_ptr<TImageHeader> ReadFileHeader() const override;
  /// Reads the band's cells for the grid of Header(); the image is unchanged on failure. Raises
  /// as the aRequestedRes Open.
  void LoadData() override;
  /// A GeoTIFF image never writes anything. Never raises.
  void WriteBack() override {}

 private:
  template <typename TForm>
  static std::unique_ptr<TGeoTiffImage> OpenAs(int32_t Band, TForm form);

  int32_t FBand = 1;
};

extern template class TGeoTiffImage<float>;
extern template class TGeoTiffImage<uint8_t>;
extern template class TGeoTiffImage<int16_t>;
extern template class TGeoTiffImage<int32_t>;

/// Band options.Band of a GeoTIFF as the TGeoTiffImage its samples go into: whole, thinned to
/// options.RequestedRes, or the window options.Window thinned to the screen (the window wins
/// over the resolution). The band's samples are looked at first, and what fails there raises
/// unwrapped: EImageFileError for a missing file, one that is no TIFF or refused samples,
/// EArgumentException for a band the file lacks. Then raises what that instance's Open raises.
ZEPHRA_API std::unique_ptr<TAbstractImage> OpenGeoTiff(const std::string& inFileName,
                                                       const TRasterOpenOptions& options = {});

}  // namespace zephra
