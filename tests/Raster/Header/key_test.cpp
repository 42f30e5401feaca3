#include <zephra/Raster/Header/zplnKey.h>

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "support/RaisedMessage.h"

namespace zephra {
namespace {

TEST(Key, FirstMatchingClassWins) {
  TKey key;
  EXPECT_EQ(key.CheckRange(-3.25f), -3.25f);
  key.AddClass(0.0f, 10.0f, 1, "low");
  key.AddClass(10.0f, 20.0f, 2, "high");
  key.AddClass(30.0f, 25.0f, 3, "inverted");
  key.AddClass(40.0f, 50.0f, 16777217, "big");
  EXPECT_EQ(key.CheckRange(0.0f), 1.0f);
  EXPECT_EQ(key.CheckRange(10.0f), 1.0f);
  EXPECT_EQ(key.CheckRange(std::nextafter(10.0f, 11.0f)), 2.0f);
  EXPECT_EQ(key.CheckRange(20.0f), 2.0f);
  EXPECT_EQ(key.CheckRange(22.5f), 22.5f);  // a gap keeps the value
  EXPECT_EQ(key.CheckRange(27.0f), 27.0f);  // an inverted class never matches
  EXPECT_EQ(key.CheckRange(45.0f), 16777216.0f);
  EXPECT_EQ(key.CheckRange(-1.0f), -1.0f);
  // An entry without a class ends the search.
  key.KeyClasses.emplace(key.KeyClasses.begin() + 1, "hole", nullptr);
  EXPECT_EQ(key.CheckRange(5.0f), 1.0f);
  EXPECT_EQ(key.CheckRange(15.0f), 15.0f);
}

// The legend from a full key is checked where Reclass copies it.
TEST(Key, AnEmptyKeyClearsTheLegend) {
  TImageHeader header;
  header.Categories = {"old"};
  TKey().CopyToImage(&header);
  EXPECT_TRUE(header.Categories.empty());
  test::RaisedMessage<EArgumentNullException>([] { TKey().CopyToImage(nullptr); });
}

}  // namespace
}  // namespace zephra
