#pragma once
/// @file
/// TGenericImage and TImageFactory: opening a raster by file name alone, and the questions of
/// which class a raster belongs to.

#include <memory>
#include <string>

#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Common/zpExport.h>
#include <zephra/Raster/Images/zplbZephraAbstractImage.h>

namespace zephra {

/// Never instantiated: it only carries the two ways of opening a raster whose class the .doc
/// beside it decides. Both refresh the header's value range from the cells unless the path holds
/// "Hillshade" or the data file was written within the last five minutes.
class ZEPHRA_API TGenericImage : public TAbstractImage {
 public:
  /// Not constructible.
  TGenericImage() = delete;

  /// A text raster whole; a binary raster whole or thinned to the screen. Raises the .doc
  /// failures of TImageHeader::Open(), EImageHeaderError "Unknown Image Header DataType", and
  /// what the class's guarded Open(inFileName, aScaleBuff) raises.
  static std::unique_ptr<TAbstractImage> Open(const std::string& inFileName, bool aScaleBuff);
  /// A binary raster for the window aminx .. amaxx, aminy .. amaxy; a text raster whole. Raises
  /// as Open(), but the window open has no guard: its failures pass unchanged.
  static std::unique_ptr<TAbstractImage> OpenZoomed(const std::string& inFileName, float aminx,
                                                    float amaxx, float aminy, float amaxy);
};

/// The class references by cell type, type word or .doc, and the copy of an image of any class.
class ZEPHRA_API TImageFactory {
 public:
  /// Not constructible.
  TImageFactory() = delete;

  /// The binary class of a cell type; any other value raises Exception "Unknown Image Class".
  static TAbstractImageClass GetImageClass(TDataType DataType);
  /// The class of a type word ("BYTE", "REAL", "INT", "INT32", "ASCII", "ARCGRID", any letter
  /// case); null for any other word. Never raises.
  static TAbstractImageClass GetImageClass(const std::string& DataType);
  /// The binary class of the data type in the .doc beside FileName. Raises the failures of
  /// TImageHeader::Open() and Exception "Unknown Image Class".
  static TAbstractImageClass GetImageClassFromHeader(const std::string& FileName);
  /// A new image of Source's own class with its own copy of everything. Null or unknown images
  /// raise EInvalidOpException "Unable to copy image, unsupported image type".
  static std::unique_ptr<TAbstractImage> Copy(const TAbstractImage* Source);
};

}  // namespace zephra
