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
  for (const float* p = xy.begin(); p + 1 < xy.end(); p += 2) {
    feature->AddPoint(p[0], p[1]);
  }
  feature->NumOfHoles = holes;
  return feature;
}

}  // namespace zephra::test
