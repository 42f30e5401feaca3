#include <zephra/Common/zpSpatialConst.h>

#include <cmath>
#include <string>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

bool TSpatialConst::IsFlag(float value) {
  return std::isnan(value) || value <= FlagValue;
}

bool TSpatialConst::IsValue(float value) {
  return std::isfinite(value) && value > MissingValue;
}

float Average(const TSingleArray& Values, int32_t Count) {
  if (Count < 1 || static_cast<size_t>(Count) > Values.size()) {
    throw EArgumentException("Average needs a count from 1 to " + std::to_string(Values.size()) +
                             ", got " + std::to_string(Count));
  }
  double sum = 0.0;
  for (int32_t i = 0; i < Count; ++i) {
    sum += Values[i];
  }
  return static_cast<float>(sum / Count);
}

}  // namespace zephra
