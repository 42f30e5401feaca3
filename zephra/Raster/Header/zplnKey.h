#pragma once
// Classification keys: ranges of cell values turned into class values.

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <zephra/Raster/Header/zplbZephraImageHeader.h>

namespace zephra {

class TIndexClass {
 public:
  TIndexClass(float lvalIn, float uValIn, int32_t colIn)
      : Lower(lvalIn), Upper(uValIn), Color(colIn) {}

  float Lower;
  float Upper;
  int32_t Color;
};

class TKey {
 public:
  TKey() = default;
  TKey(const TKey&) = delete;
  TKey& operator=(const TKey&) = delete;

  void AddClass(float lValIn, float uValIn, int32_t colIn, const std::string& indexIn);
  // The class value of the first class whose closed range holds valIn; valIn itself if none.
  float CheckRange(float valIn) const;
  // The header's legend becomes the class names in key order.
  void CopyToImage(TImageHeader* imageHeader) const;

  std::vector<std::pair<std::string, std::unique_ptr<TIndexClass>>> KeyClasses;
};

}  // namespace zephra
