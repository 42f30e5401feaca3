#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "support/ImageSupport.h"
#include "support/RaisedMessage.h"

namespace zephra {
namespace {

using test::RaisedMessage;

constexpr const char* kWriteError = "Image file buffer access violation";
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// A memory-only 4 x 3 grid over x 0 .. 4, y 0 .. 3 whose cell i holds i.
template <typename TImage = TRealImage>
std::unique_ptr<TImage> Grid(const std::string& name = "") {
  auto image = test::MakeImage<TImage>(test::GridHeader(), test::Iota(12), name);
  image->MemOnly = true;
  return image;
}

TEST(ImageAccess, IndexConventionsOfEveryReader) {
  const auto image = Grid("/data/g.img");
  EXPECT_EQ(image->ReadCR(1, 1), 0.0f);
  EXPECT_EQ(image->ReadXY(0.0f, 3.0f), 0.0f);
  EXPECT_EQ(image->ReadXY(4.0f, 0.0f), 11.0f);
  EXPECT_EQ(image->ReadXY(2.5f, 1.5f), 6.0f);
  EXPECT_EQ(image->ReadCR(5, 1), image->ReadCR(1, 2));
  EXPECT_EQ(image->ReadCR0(1, 2), 9.0f);
  EXPECT_EQ(RaisedMessage<EArgumentException>([&] { image->ReadCR(0, 1); }),
            "ReadCR index values are 1 based");
  EXPECT_EQ(RaisedMessage<EImageFileError>([&] { image->ReadCR(1, 4); }),
            "Failed to read record from image (/data/g.img) at index 12 (Valid range: 0 - 11).");
  EXPECT_EQ(RaisedMessage<EImageFileError>([] { Grid()->ReadCR0(-1, 0); }),
            "Failed to read record from image at index -1 (Valid range: 0 - 11).");
  EXPECT_THROW(image->ReadCR0(0, std::numeric_limits<int32_t>::max()), EImageFileError);
  EXPECT_EQ(RaisedMessage<EArgumentException>([&] { image->ReadXY(4.5f, 1.0f); }),
            "Lng is outside map bounds");

  int32_t c = -1;
  int32_t r = -1;
  float x = 1.0f;
  float y = 1.0f;
  image->CRtoXY(1, 1, x, y);
  image->XYtoCR(x, y, c, r);
  EXPECT_EQ(std::tuple(x, y, c, r), std::tuple(0.0f, 3.0f, 0, 0));
  const auto rect = image->ReadRect(2, 2, 3, 2);
  ASSERT_EQ(rect.size(), 2u);
  EXPECT_EQ(rect[1], (TSingleArray{9.0f, 10.0f, 11.0f}));
  EXPECT_THROW(image->ReadRect(3, 3, 3, 1), EImageFileError);
}

TEST(ImageAccess, WritesCheckTheirIndexAndKeepTheRunningRange) {
  auto image = Grid();
  image->Header()->MaxValue = 100.0f;
  image->WriteCR(0, 2, 50.0f);  // the last cell of row 1
  EXPECT_EQ(image->ReadCR(4, 1), 50.0f);
  EXPECT_FALSE(image->FirstWrite);
  EXPECT_EQ(image->Header()->MaxValue, 50.0f);
  image->WriteXY(4.0f, 2.5f, 50.5f);  // no limits: the first cell of the next row
  image->WriteXY(1.0f, 2.0f, 49.5f);
  EXPECT_EQ(image->ReadCR(1, 2), 50.5f);
  EXPECT_EQ(image->ReadCR(2, 2), 49.5f);
  EXPECT_EQ(image->Header()->MinValue, 49.5f);
  EXPECT_EQ(image->Header()->MaxValue, 50.5f);
  EXPECT_EQ(RaisedMessage<EImageFileError>([&] { image->WriteCR(0, 1, 1.0f); }), kWriteError);
  EXPECT_EQ(RaisedMessage<EImageFileError>([&] { image->WriteXY(1.0f, 0.0f, 1.0f); }), kWriteError);
  EXPECT_THROW(image->WriteXY(kNaN, 1.0f, 1.0f), EImageFileError);

  // Values at or below the flag value are stored but leave the range and FirstWrite alone.
  image->Header()->Flag = true;
  image->Header()->FlagValue = -50.0f;
  image->WriteCR(1, 1, -50.0f);
  EXPECT_EQ(image->ReadCR(1, 1), -50.0f);
  EXPECT_EQ(image->Header()->MinValue, 49.5f);
  auto fresh = Grid();
  fresh->WriteCR(1, 1, -9999.0f);
  EXPECT_TRUE(fresh->FirstWrite);

  // The cursor moves on only when the access succeeds.
  image->BufferPointer = 11;
  EXPECT_EQ(image->FileRead(), 11.0f);
  EXPECT_TRUE(image->EndOfFile());
  EXPECT_THROW(image->FileRead(), EImageFileError);
  EXPECT_EQ(RaisedMessage<EImageFileError>([&] { image->FileWrite(1.0f); }), kWriteError);
  EXPECT_EQ(image->BufferPointer, 12);

  // A host that raises the public record count past the buffer is refused, not let outside it.
  image->NumRecs = 13;
  EXPECT_THROW(image->ReadCR0(0, 3), EInvalidOpException);
  EXPECT_THROW(image->WriteCR(1, 4, 1.0f), EInvalidOpException);
  image->NumRecs = 12;
  image->ResetFile();
  image->FileWrite(7.0f);
  EXPECT_EQ(image->BufferPointer, 1);
  EXPECT_EQ(image->BufferRead(0), 7.0f);
}

// Integer cells take the value rounded half to even and keep its low bits; the range follows the
// value as written, also when it has no integer form.
TEST(ImageAccess, IntegerCellsRoundAndWrap) {
  auto bytes = Grid<TByteImage>();
  const std::pair<float, float> cases[] = {{2.5f, 2.0f},   {3.5f, 4.0f},    {-0.5f, 0.0f},
                                           {255.5f, 0.0f}, {300.7f, 45.0f}, {-9999.0f, 241.0f}};
  for (const auto& [written, read] : cases) {
    bytes->BufferWrite(0, written);
    EXPECT_EQ(bytes->BufferRead(0), read) << written;
  }
  EXPECT_EQ(bytes->Header()->MaxValue, 300.7f);
  auto shorts = Grid<TIntegerImage>();
  shorts->BufferWrite(0, 70000.4f);
  EXPECT_EQ(shorts->BufferRead(0), 4464.0f);
  auto longs = Grid<TInteger32Image>();
  longs->BufferWrite(0, 16777217.0f);
  EXPECT_EQ(longs->Buffer[0], 16777216);
  longs->Buffer[1] = 16777217;
  EXPECT_EQ(longs->BufferRead(1), 16777216.0f);

  EXPECT_EQ(RaisedMessage<EMathError>([&] {
              longs->BufferWrite(3, 1e20f);
            }).rfind("Invalid floating point operation", 0),
            0u);
  EXPECT_EQ(longs->Buffer[3], 3);
  EXPECT_EQ(longs->Header()->MaxValue, 1e20f);
  EXPECT_THROW(bytes->FileWrite(kNaN), EMathError);
  EXPECT_EQ(bytes->BufferPointer, 0);
  EXPECT_EQ(bytes->Buffer[0], 241);
}

TEST(ImageAccess, FailedReadAtAMapPointGoesToTheDebugChannel) {
  auto image = Grid();
  image->Header()->Height = 4;  // the header now claims a row the buffer does not hold
  image->Header()->Miny = -1.0f;
  std::string debugText;
  SetDebugOutput([&](const std::string& text) { debugText = text; });
  EXPECT_THROW(image->ReadXY(1.5f, -0.5f), EImageFileError);
  SetDebugOutput(nullptr);
  EXPECT_EQ(debugText, "TAbstractImage.ReadXY failed: x=1.5000, y=-0.5000, c=1, r=3, index=13");
}

}  // namespace
}  // namespace zephra
