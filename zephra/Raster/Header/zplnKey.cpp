#include <zephra/Raster/Header/zplnKey.h>

namespace zephra {

void TKey::AddClass(float lValIn, float uValIn, int32_t colIn, const std::string& indexIn) {
  KeyClasses.emplace_back(indexIn, std::make_unique<TIndexClass>(lValIn, uValIn, colIn));
}

// Classes are searched in the order they were added, which settles overlaps and shared bounds.
// An entry put into the public list without a class ends the search.
float TKey::CheckRange(float valIn) const {
  for (const auto& [name, indexClass] : KeyClasses) {
    if (!indexClass) {
      break;
    }
    if (indexClass->Lower <= valIn && valIn <= indexClass->Upper) {
      return static_cast<float>(indexClass->Color);
    }
  }
  return valIn;
}

void TKey::CopyToImage(TImageHeader* imageHeader) const {
  if (imageHeader == nullptr) {
    throw EArgumentNullException("TKey::CopyToImage: imageHeader is null");
  }
  imageHeader->Categories.clear();
  imageHeader->Categories.reserve(KeyClasses.size());
  for (const auto& entry : KeyClasses) {
    imageHeader->Categories.push_back(entry.first);
  }
}

}  // namespace zephra
