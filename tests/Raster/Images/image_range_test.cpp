// Range scans, reclass and the cell block, on the buffer and the sequential cursor.

#include <zephra/Common/zpExceptions.h>
#include <zephra/Raster/Header/zplnKey.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <sstream>

#include "support/ImageSupport.h"
#include "support/RaisedMessage.h"

namespace zephra {
namespace {

// One row of cells with a negative flag value.
template <typename TImage>
std::unique_ptr<TImage> Row(const std::vector<float>& cells) {
  TImageHeader header =
      test::GridHeader({.Width = static_cast<int32_t>(cells.size()), .Height = 1});
  header.FlagValue = -1.0f;
  return test::MakeImage<TImage>(header, cells);
}

void ExpectRange(const TRange& range, float min, float max) {
  EXPECT_EQ(range.Min, min);
  EXPECT_EQ(range.Max, max);
}

TEST(RangeScan, BoundsAreExclusiveAndEqualBoundsMeanNone) {
  for (const auto& image : {std::unique_ptr<TAbstractImage>(Row<TRealImage>({1, 2, 3})),
                            std::unique_ptr<TAbstractImage>(Row<TAsciiImage>({1, 2, 3})),
                            std::unique_ptr<TAbstractImage>(Row<TByteImage>({1, 2, 3}))}) {
    image->BufferPointer = 2;
    ExpectRange(image->GetRangeBetween(1.0f, 3.0f, false), 2.0f, 2.0f);
    EXPECT_EQ(image->BufferPointer, 0);
    ExpectRange(image->GetRangeBetween(5.0f, 5.0f, false), 1.0f, 3.0f);
    ExpectRange(image->GetRange(), 1.0f, 3.0f);
    // Nothing between the bounds: 0 .. 0 with a negative flag value, and the cursor at the end.
    EXPECT_EQ(test::RaisedMessage<EImageFileError>([&] { image->GetRangeBetween(10, 0, false); }),
              "Error scanning image file: no values in specified range.");
    EXPECT_EQ(image->BufferPointer, 3);
    ExpectRange(image->GetRangeBetween(3.0f, 4.0f, true), 0.0f, 0.0f);
    image->Header()->FlagValue = 0.0f;
    ExpectRange(image->GetRangeBetween(3.0f, 4.0f, true), 3.0f, 4.0f);
  }
  // Flag cells count in a plain scan, whatever Flag says.
  auto flagged = Row<TRealImage>({-9999.0f, 4.0f});
  flagged->Header()->Flag = true;
  ExpectRange(flagged->GetRange(), -9999.0f, 4.0f);
  ExpectRange(Row<TRealImage>({})->GetRangeBetween(7.0f, 8.0f, false), 7.0f, 8.0f);
}

TEST(Reclass, MapsEveryCellThroughTheKeyAndCopiesItsLegend) {
  const auto source = Row<TRealImage>({0.5f, 10.0f, 15.0f, 25.0f});
  auto target = Row<TIntegerImage>({9, 9, 9, 9, 9});
  TKey key;
  key.AddClass(0.0f, 10.0f, 1, "low");
  key.AddClass(10.0f, 20.0f, 2, "high");
  target->Header()->Categories = {"old", "older", "oldest"};
  source->Reclass(target.get(), &key);
  EXPECT_EQ(target->ReadCR0(0, 0), 1.0f);
  EXPECT_EQ(target->ReadCR0(1, 0), 1.0f);  // on a shared bound the first class wins
  EXPECT_EQ(target->ReadCR0(2, 0), 2.0f);
  EXPECT_EQ(target->ReadCR0(3, 0), 25.0f);  // in no class: unchanged
  EXPECT_EQ(target->ReadCR0(4, 0), 9.0f);   // beyond the source: left alone
  EXPECT_EQ(target->Header()->Categories, (std::vector<std::string>{"low", "high"}));
  EXPECT_EQ(source->BufferPointer, 4);

  auto small = Row<TRealImage>({0.0f});
  EXPECT_EQ(test::RaisedMessage<EImageFileError>([&] { source->Reclass(small.get(), &key); }),
            "Image file buffer access violation");
  EXPECT_TRUE(small->Header()->Categories.empty());
}

TEST(CellBlock, MovesRawCellsThroughBytesAndStreams) {
  const auto source = Row<TIntegerImage>({1, -2, 300});
  const TByteArray bytes = source->GetBytes();
  EXPECT_EQ(bytes, (TByteArray{1, 0, 0xFE, 0xFF, 0x2C, 0x01}));

  std::stringstream stream;
  stream << "head";
  source->SaveToStream(stream);
  auto target = Row<TIntegerImage>({0, 0, 0});
  stream.seekg(4);
  target->LoadFromStream(stream);
  EXPECT_EQ(target->ReadCR0(1, 0), -2.0f);
  EXPECT_EQ(target->ReadCR0(2, 0), 300.0f);
  EXPECT_TRUE(target->FirstWrite);  // cells set this way are no new data

  EXPECT_EQ(test::RaisedMessage<Exception>([&] { target->SetBytes(TByteArray(7)); }),
            "Unexpected buffer size");
  std::stringstream longer(std::string(7, '\x01'));
  EXPECT_THROW(target->LoadFromStream(longer), Exception);
  EXPECT_EQ(target->ReadCR0(2, 0), 300.0f);
  EXPECT_TRUE(Row<TRealImage>({})->GetBytes().empty());
}

}  // namespace
}  // namespace zephra
