// Files that claim more than they hold: a short text raster or grid costs memory only for its
// text, and the open allocation limit refuses a claim before anything is allocated.

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <filesystem>
#include <functional>

#include "support/ImageSupport.h"
#include "support/RaisedMessage.h"

namespace zephra {
namespace {

int64_t PeakRssMiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

// The open allocation limit for a scope; the default (physical memory) comes back after it.
struct TScopedOpenLimit {
  explicit TScopedOpenLimit(int64_t bytes) { SetOpenAllocationLimit(bytes); }
  ~TScopedOpenLimit() { SetOpenAllocationLimit(0); }
};

// A text raster and a grid that claim 30000 x 30000 cells (3.4 GiB as floats) and hold text;
// the text raster is old enough for the generic open to refresh its range from the cells.
struct THugeClaims {
  const test::TTempDir Dir;
  const std::string Text = Dir.File("t.img");
  const std::string Grid = Dir.File("g.asc");

  THugeClaims(const std::string& cells, const std::string& range) {
    test::WriteFileBytes(
        Dir.File("t.doc"),
        "file type: ascii\ncolumns: 30000\nrows: 30000\nmax. X: 1\nmax. Y: 1\n" + range);
    test::WriteFileBytes(Text, cells);
    std::filesystem::last_write_time(
        Text, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    test::WriteFileBytes(Grid,
                         "ncols 30000\nnrows 30000\nxllcorner 0\nyllcorner 0\ncellsize 1\n"
                         "NODATA_value -9999\n" +
                             cells);
  }
};

// Cells past the text read 0.0 and count for the range where the open computes one; memory
// grows by the text, not by the claim.
TEST(OpenBounds, HugeClaimOfAShortTextCostsOnlyItsText) {
  const THugeClaims files("1.5\r\n2.5\r\n", "min. value: 1.5\nmax. value: 9\n");
  const struct {
    const char* Name;
    std::function<std::unique_ptr<TAbstractImage>()> Open;
    TRange Range;
  } cases[] = {
      {"text", [&] { return TAsciiImage::Open(files.Text, false); }, {1.5f, 9.0f}},  // the .doc's
      {"grid", [&] { return TArcGridImage::Open(files.Grid, false); }, {0.0f, 2.5f}},
      {"generic", [&] { return TGenericImage::Open(files.Text, false); }, {0.0f, 2.5f}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.Name);
    const int64_t before = PeakRssMiB();
    const auto image = c.Open();
    ASSERT_EQ(image->NumRecs, 900'000'000);
    EXPECT_EQ(image->BufferRead(0), 1.5f);
    EXPECT_EQ(image->BufferRead(1), 2.5f);
    EXPECT_EQ(image->BufferRead(2), 0.0f);
    EXPECT_EQ(image->BufferRead(450'000'000), 0.0f);
    EXPECT_EQ(image->ReadCR(30000, 30000), 0.0f);
    EXPECT_EQ(image->Header()->MinValue, c.Range.Min);
    EXPECT_EQ(image->Header()->MaxValue, c.Range.Max);
    EXPECT_LT(PeakRssMiB() - before, 64) << "the claim is 3433 MiB";
  }
}

// With a low limit every form of open refuses a claim past it with EImageFileError naming the
// file, before allocating and without touching a file; a claim within the limit still opens.
TEST(OpenBounds, ClaimsPastTheLimitAreRefusedBeforeAllocating) {
  const THugeClaims files("1\n", "");
  const test::TTempDir& dir = files.Dir;
  const std::string binary = test::WriteRaster(
      dir, "b", test::TRasterDoc{1024, 512, "real", 1024, 512}, std::vector<float>(1024 * 512));
  const std::string small = test::WriteRaster(dir, "s", test::TRasterDoc{}, std::vector<float>(12));
  const std::string legend = dir.File("legend.doc");
  test::WriteFileBytes(legend, "columns: 2\nrows: 2\nlegend cats: 100000\ncategory 0: water\n");

  const auto window = TRealImage::Open(binary, 0, 100, 0, 100);
  const auto before = test::FolderState(dir);
  {
    const TScopedOpenLimit limit(1 << 20);
    const struct {
      std::string File;
      std::function<void()> Open;
    } refused[] = {
        {files.Text, [&] { TAsciiImage::Open(files.Text, false); }},
        {files.Text, [&] { TGenericImage::Open(files.Text, false); }},
        {files.Grid, [&] { TArcGridImage::Open(files.Grid, false); }},
        {binary, [&] { TRealImage::Open(binary, false); }},
        {binary, [&] { TRealImage::Open(binary, 1.0f); }},
        {binary, [&] { TRealImage::Open(binary, 0, 1024, 0, 512); }},
        {binary, [&] { window->ReOpen(0, 0, 0, 0); }},
        {legend, [&] { TImageHeader::Open(legend); }},
    };
    for (const auto& c : refused) {
      const std::string message = test::RaisedMessage<EImageFileError>(c.Open);
      EXPECT_NE(message.find(c.File), std::string::npos) << message;
    }
    EXPECT_EQ(window->NumRecs, 100 * 100);
    EXPECT_TRUE(window->Zoomed());
    EXPECT_EQ(TRealImage::Open(small, false)->NumRecs, 12);
    EXPECT_EQ(test::FolderState(dir), before);
  }
  const auto header = TImageHeader::Open(legend);
  ASSERT_EQ(header->Categories.size(), 100000u);
  EXPECT_EQ(header->Categories.front(), "water");
  EXPECT_EQ(header->Categories.back(), "");
}

}  // namespace
}  // namespace zephra
