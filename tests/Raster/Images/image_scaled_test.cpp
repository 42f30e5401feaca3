#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

#include "support/ImageSupport.h"
#include "support/RaisedMessage.h"

namespace zephra {
namespace {

class TScopedScreen {
 public:
  explicit TScopedScreen(int32_t width) { SetScreenWidth(width); }
  ~TScopedScreen() { SetScreenWidth(1920); }
};

// A 100 x 80 file over x 0 .. 100, y 0 .. 80 whose cell in column c, row r holds 1000 r + c.
class ImageScaled : public ::testing::Test {
 protected:
  void SetUp() override {
    std::vector<int32_t> cells(8000);
    for (int32_t i = 0; i < 8000; ++i) {
      cells[i] = 1000 * (i / 100) + i % 100;
    }
    FImg = test::WriteRaster(FDir, "grid", cells, {.Grid = {.Width = 100, .Height = 80}});
  }

  test::TTempDir FDir;
  std::string FImg;
};

TEST_F(ImageScaled, ScreenStepSamplesEveryNthCellOfEveryNthRow) {
  const TScopedScreen screen(20);  // 50 and 25 columns pass the test, 12 does not
  auto image = TInteger32Image::Open(FImg, true);
  EXPECT_EQ(std::tuple(image->ScaleImage(), image->Zoomed(), image->NumRecs),
            std::tuple(4, false, 500));
  EXPECT_EQ(
      std::tuple(image->Header()->Width, image->Header()->Height, image->Header()->ResolutionX),
      std::tuple(25, 20, 4.0f));
  EXPECT_EQ(image->ReadCR0(24, 19), 76096.0f);
  EXPECT_EQ(image->ReadCR0(1, 1), 4004.0f);
  float x = 0.0f;
  float y = 0.0f;
  image->CRtoXY(2, 2, x, y);  // always on the file's grid
  EXPECT_EQ(std::tuple(x, y), std::tuple(1.0f, 79.0f));

  // Writes to a reduced image stay in memory; its copy is independent.
  auto copy = TInteger32Image::Create(*image);
  copy->WriteCR(1, 1, 5.0f);
  EXPECT_EQ(image->ReadCR(1, 1), 0.0f);
  const auto before = test::FolderState(FDir);
  image->WriteCR(1, 1, 7.0f);
  image->Close();
  copy.reset();
  EXPECT_EQ(test::FolderState(FDir), before);
}

TEST_F(ImageScaled, StepFromARequestedResolution) {
  auto coarse = TInteger32Image::Open(FImg, 2.995f);
  EXPECT_EQ(coarse->ScaleImage(), 3);
  EXPECT_EQ(std::tuple(coarse->Header()->Width, coarse->Header()->Height), std::tuple(33, 26));
  EXPECT_EQ(coarse->ReadCR0(32, 25), 75096.0f);
  EXPECT_EQ(TInteger32Image::Open(FImg, 2.98f)->ScaleImage(), 2);
  EXPECT_EQ(TInteger32Image::Open(FImg, 0.5f)->Header()->Width, 100);
  EXPECT_THROW(TInteger32Image::Open(FImg, 200.0f), EMathError);
  coarse->ReOpen(0, 0, 0, 0);  // the step now comes from the screen alone
  EXPECT_EQ(coarse->ScaleImage(), 1);
  EXPECT_EQ(coarse->NumRecs, 8000);
}

TEST_F(ImageScaled, WindowsAndTheirLimits) {
  auto image = TInteger32Image::Open(FImg, 10.3f, 30.3f, 50.0f, 70.0f);
  EXPECT_EQ(std::tuple(image->Zoomed(), image->ScaleImage(), image->Header()->Minx),
            std::tuple(true, 1, 10.3f));
  EXPECT_EQ(std::tuple(image->Header()->Width, image->Header()->Height), std::tuple(20, 20));
  EXPECT_EQ(image->ReadCR0(0, 0), 10010.0f);  // first column 10, first row 10
  EXPECT_EQ(image->ReadXY(11.8f, 69.0f), 11011.0f);

  const auto unchanged = [&] {
    EXPECT_EQ(image->Header()->Minx, 10.3f);
    EXPECT_EQ(image->NumRecs, 400);
    EXPECT_EQ(image->ReadCR0(19, 19), 29029.0f);
  };
  for (const auto& [minx, maxx, maxy] :  // west, east and north of the file
       {std::tuple{-5.0f, 20.0f, 70.0f}, {90.0f, 105.0f, 70.0f}, {10.0f, 30.0f, 85.0f}}) {
    EXPECT_THROW(image->ReOpen(minx, maxx, 50.0f, maxy), EImageFileError);
    unchanged();
  }
  EXPECT_EQ(test::RaisedMessage<Exception>([&] { image->ReOpen(10.0f, 30.0f, -10.0f, 10.0f); }),
            "Attempted to read past the end of the file");
  EXPECT_THROW(image->ReOpen(30.0f, 30.0f, 50.0f, 70.0f), EMathError);
  EXPECT_THROW(image->ReOpen(0.0f, 0.005f, 0.0f, 0.005f), EMathError);  // a window, if a tiny one
  unchanged();

  image->ReOpen(0, 0, 0, 0);
  EXPECT_FALSE(image->Zoomed());
  EXPECT_EQ(image->ReadCR0(99, 79), 79099.0f);
  const TScopedScreen screen(6);  // a window wider than the screen is thinned as well
  image->ReOpen(0.0f, 40.0f, 0.0f, 40.0f);
  EXPECT_EQ(image->ScaleImage(), 4);
  EXPECT_EQ(image->ReadCR0(1, 1), 44004.0f);

  std::filesystem::remove(FImg);
  EXPECT_EQ(test::RaisedMessage<EImageFileError>([&] { image->ReOpen(0, 0, 0, 0); }),
            FImg + " does not exist.");
  EXPECT_EQ(image->ReadCR0(1, 1), 44004.0f);
}

}  // namespace
}  // namespace zephra
