#pragma once
/// @file
/// TImageClass and TAbstractImageClass: a reference to one raster class, through which an image
/// is built without naming its class.

#include <memory>
#include <string>

#include <zephra/Common/zpExport.h>

namespace zephra {

class TAbstractImage;
class TImageHeader;

/// One raster class. There is one immutable TImageClass object per raster class (its
/// ClassRef()); each operation is the class's static form of the same name.
class ZEPHRA_API TImageClass {
 public:
  /// Never raises.
  virtual ~TImageClass() = default;

  /// The class's name, such as "TRealImage". Never raises.
  virtual std::string ClassName() const = 0;

  /// The class's Create(inFileName, headerIn). Raises EImageFileError "No image header
  /// information supplied" without headerIn.
  virtual std::unique_ptr<TAbstractImage> Create(const std::string& inFileName,
                                                 const TImageHeader* headerIn) const = 0;
  /// The copy form. Source must be of this class or descend from it (EInvalidOpException if not).
  virtual std::unique_ptr<TAbstractImage> Create(const TAbstractImage& Source) const = 0;
  /// The class's guarded Open(inFileName, aScaleBuff). Raises as that form.
  virtual std::unique_ptr<TAbstractImage> Open(const std::string& inFileName,
                                               bool aScaleBuff) const = 0;
  /// The class's Open(inFileName, aRequestedRes). Raises as that form.
  virtual std::unique_ptr<TAbstractImage> Open(const std::string& inFileName,
                                               float aRequestedRes) const = 0;
  /// The class's window Open. Raises as that form.
  virtual std::unique_ptr<TAbstractImage> Open(const std::string& inFileName, float aminx,
                                               float amaxx, float aminy, float amaxy) const = 0;

  /// True if Image is of this class or descends from it; False for a null Image. Never raises.
  virtual bool IsClassOf(const TAbstractImage* Image) const = 0;
};

/// A reference to a raster class; null stands for "no such class".
using TAbstractImageClass = const TImageClass*;

}  // namespace zephra
