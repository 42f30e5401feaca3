#pragma once
/// @file
/// Classification keys: ranges of cell values turned into class values, with the class names
/// that become a reclassified raster's legend.

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <zephra/Common/zpExport.h>
#include <zephra/Raster/Header/zplbZephraImageHeader.h>

namespace zephra {

/// One class of a key: the closed value range Lower .. Upper and the value its cells take.
class ZEPHRA_API TIndexClass {
 public:
  /// Stores the three values as given; nothing is checked. Never raises.
  TIndexClass(float lvalIn, float uValIn, int32_t colIn)
      : Lower(lvalIn), Upper(uValIn), Color(colIn) {}

  float Lower;    ///< Lowest value of the class, included.
  float Upper;    ///< Highest value of the class, included.
  int32_t Color;  ///< The value that cells of this class take.
};

/// An ordered list of named classes. Classes may overlap or leave gaps; the order of AddClass()
/// breaks ties. Owns its classes.
class ZEPHRA_API TKey {
 public:
  /// An empty key. Never raises.
  TKey() = default;
  /// Not copyable: the key owns its classes.
  TKey(const TKey&) = delete;
  /// Not assignable: the key owns its classes.
  TKey& operator=(const TKey&) = delete;

  /// Appends a class named indexIn; duplicate names and any bounds are accepted. Never raises.
  void AddClass(float lValIn, float uValIn, int32_t colIn, const std::string& indexIn);
  /// The class value of the first class whose closed range holds valIn; valIn itself if none. An
  /// entry without a class object ends the search. Never raises.
  float CheckRange(float valIn) const;
  /// The header's legend becomes the class names in key order. Raises EArgumentNullException when
  /// imageHeader is null.
  void CopyToImage(TImageHeader* imageHeader) const;

  /// The classes in the order of AddClass(), each under its name.
  std::vector<std::pair<std::string, std::unique_ptr<TIndexClass>>> KeyClasses;
};

}  // namespace zephra
