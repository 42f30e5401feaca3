#pragma once
// Builders the vector layer suites share.

#include <initializer_list>
#include <memory>

#include <zephra/Vector/zpVectorFile.h>

namespace zephra::test {

// A feature from x, y, x, y, ... in one flat list.
inline std::unique_ptr<TFeature> MakeFeature(float id, std::initializer_list<float> xy,
                                             int32_t holes = 0) {
  auto feature = std::make_unique<TFeature>(id);
  // By index: an empty list may have no array at all, and a null pointer takes no offset.
  for (size_t i = 0; i + 1 < xy.size(); i += 2) {
    feature->AddPoint(xy.begin()[i], xy.begin()[i + 1]);
  }
  feature->NumOfHoles = holes;
  return feature;
}

}  // namespace zephra::test
