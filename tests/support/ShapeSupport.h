#pragma once
// Writes shapefiles for the tests with shapelib's own writer.

#include <shapefil.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace zephra::test {

using TRing = std::vector<std::pair<double, double>>;
// The rings of one record; a record without rings is written as a NULL shape.
using TRecord = std::vector<TRing>;

inline TRing Box(double minX, double minY, double maxX, double maxY) {
  return {{minX, minY}, {minX, maxY}, {maxX, maxY}, {maxX, minY}, {minX, minY}};
}

// Writes base.shp/.shx (and .dbf-free) with one record per entry, of the given shape type.
inline std::string WriteShapefile(const std::string& base, const std::vector<TRecord>& records,
                                  int shapeType = SHPT_POLYGON) {
  const std::unique_ptr<SHPInfo, void (*)(SHPHandle)> file(SHPCreate(base.c_str(), shapeType),
                                                           &SHPClose);
  if (!file) {
    throw std::runtime_error("cannot create " + base + ".shp");
  }
  for (const TRecord& record : records) {
    std::vector<int> starts;
    std::vector<double> xs;
    std::vector<double> ys;
    for (const TRing& ring : record) {
      starts.push_back(static_cast<int>(xs.size()));
      for (const auto& [x, y] : ring) {
        xs.push_back(x);
        ys.push_back(y);
      }
    }
    const int type = record.empty() ? SHPT_NULL : shapeType;
    const std::unique_ptr<SHPObject, void (*)(SHPObject*)> object(
        SHPCreateObject(type, -1, static_cast<int>(starts.size()), starts.data(), nullptr,
                        static_cast<int>(xs.size()), xs.data(), ys.data(), nullptr, nullptr),
        &SHPDestroyObject);
    if (!object || SHPWriteObject(file.get(), -1, object.get()) < 0) {
      throw std::runtime_error("cannot write a record to " + base + ".shp");
    }
  }
  return base + ".shp";
}

}  // namespace zephra::test
