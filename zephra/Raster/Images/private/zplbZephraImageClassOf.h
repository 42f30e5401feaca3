#pragma once
// TImageClassOf: the class reference of one raster class, built on that class's static
// construction forms. A raster class keeps one immutable instance as the object behind its
// ClassRef().

#include <memory>
#include <string>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Images/zplbZephraAbstractImage.h>
#include <zephra/Raster/Images/zplbZephraImageClass.h>

namespace zephra {

template <typename TImage>
class TImageClassOf final : public TImageClass {
 public:
  explicit TImageClassOf(const char* name) : FName(name) {}

  std::string ClassName() const override { return FName; }

  std::unique_ptr<TAbstractImage> Create(const std::string& inFileName,
                                         const TImageHeader* headerIn) const override {
    return TImage::Create(inFileName, headerIn);
  }
  std::unique_ptr<TAbstractImage> Create(const TAbstractImage& Source) const override {
    const auto* source = dynamic_cast<const TImage*>(&Source);
    if (source == nullptr) {
      throw EInvalidOpException("A " + FName + " cannot be copied from an image of type " +
                                Source.ImageTypeID());
    }
    return TImage::Create(*source);
  }
  std::unique_ptr<TAbstractImage> Open(const std::string& inFileName,
                                       bool aScaleBuff) const override {
    return TImage::Open(inFileName, aScaleBuff);
  }
  std::unique_ptr<TAbstractImage> Open(const std::string& inFileName,
                                       float aRequestedRes) const override {
    return TImage::Open(inFileName, aRequestedRes);
  }
  std::unique_ptr<TAbstractImage> Open(const std::string& inFileName, float aminx, float amaxx,
                                       float aminy, float amaxy) const override {
    return TImage::Open(inFileName, aminx, amaxx, aminy, amaxy);
  }

  bool IsClassOf(const TAbstractImage* Image) const override {
    return dynamic_cast<const TImage*>(Image) != nullptr;
  }

 private:
  std::string FName;
};

}  // namespace zephra
