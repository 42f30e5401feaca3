#pragma once
// TImageClass: a reference to one raster class, through which an image is built without naming
// its class. There is one immutable TImageClass object per raster class (its ClassRef()), and a
// null TAbstractImageClass stands for "no such class".

#include <memory>
#include <string>

#include <zephra/Common/zpExport.h>

namespace zephra {

class TAbstractImage;
class TImageHeader;

class ZEPHRA_API TImageClass {
 public:
  virtual ~TImageClass() = default;

  // The class's name, such as "TRealImage".
  virtual std::string ClassName() const = 0;

  virtual std::unique_ptr<TAbstractImage> Create(const std::string& inFileName,
                                                 const TImageHeader* headerIn) const = 0;
  // The copy form. Source must be of this class or descend from it (EInvalidOpException if not).
  virtual std::unique_ptr<TAbstractImage> Create(const TAbstractImage& Source) const = 0;
  virtual std::unique_ptr<TAbstractImage> Open(const std::string& inFileName,
                                               bool aScaleBuff) const = 0;
  virtual std::unique_ptr<TAbstractImage> Open(const std::string& inFileName,
                                               float aRequestedRes) const = 0;
  virtual std::unique_ptr<TAbstractImage> Open(const std::string& inFileName, float aminx,
                                               float amaxx, float aminy, float amaxy) const = 0;

  // True if Image is of this class or descends from it; False for a null Image.
  virtual bool IsClassOf(const TAbstractImage* Image) const = 0;
};

using TAbstractImageClass = const TImageClass*;

}  // namespace zephra
