#pragma once
// Opening a raster by file name alone, and the questions of which class a raster belongs to.

#include <memory>
#include <string>

#include <zephra/Common/zpExport.h>
#include <zephra/Common/zpCommonTypes.h>
#include <zephra/Raster/Images/zplbZephraAbstractImage.h>

namespace zephra {

// Never instantiated: it only carries the two ways of opening a raster whose class the .doc
// beside it decides. Both refresh the header's value range from the cells unless the path holds
// "Hillshade" or the data file was written within the last five minutes.
class ZEPHRA_API TGenericImage : public TAbstractImage {
 public:
  TGenericImage() = delete;

  // A text raster whole; a binary raster whole or thinned to the screen.
  static std::unique_ptr<TAbstractImage> Open(const std::string& inFileName, bool aScaleBuff);
  // A binary raster for the window aminx .. amaxx, aminy .. amaxy; a text raster whole.
  static std::unique_ptr<TAbstractImage> OpenZoomed(const std::string& inFileName, float aminx,
                                                    float amaxx, float aminy, float amaxy);
};

class ZEPHRA_API TImageFactory {
 public:
  TImageFactory() = delete;

  // The binary class of a cell type; any other value raises "Unknown Image Class".
  static TAbstractImageClass GetImageClass(TDataType DataType);
  // The class of a type word ("BYTE", "REAL", "INT", "INT32", "ASCII", "ARCGRID", any letter
  // case); null for any other word.
  static TAbstractImageClass GetImageClass(const std::string& DataType);
  // The binary class of the data type in the .doc beside FileName.
  static TAbstractImageClass GetImageClassFromHeader(const std::string& FileName);
  // A new image of Source's own class with its own copy of everything. Null or unknown images
  // raise EInvalidOpException "Unable to copy image, unsupported image type".
  static std::unique_ptr<TAbstractImage> Copy(const TAbstractImage* Source);
};

}  // namespace zephra
