// Opening a raster file: the cells in the class's own type, failures that change no file, and
// files that claim more cells than they hold or than the open allocation limit allows.

#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <bit>
#include <chrono>
#include <functional>
#include <limits>
#include <optional>
#include <tuple>

#include "support/ImageSupport.h"
#include "support/RaisedMessage.h"

namespace zephra {
namespace {

using test::RaisedMessage;

constexpr const char* kSizeMessage =
    "Expected file size calculated from image header does not match actual file size.";

std::string Guarded(const std::string& name, const std::string& message) {
  return "There was an error opening \"" + name +
         "\". Please check the file and try again\r\n\r\n" + message;
}

// The cell size comes from the class, not from the header's data type; a .doc name opens the
// data file beside it.
TEST(ImageOpen, WholeFileInTheCellsOfTheOpeningClass) {
  const test::TTempDir dir;
  const std::string img =
      test::WriteRaster(dir, "i", std::vector<int32_t>(12, std::bit_cast<int32_t>(2.5f)));
  auto image = TRealImage::Open(dir.File("i.DOC"), true);
  EXPECT_EQ(image->FileName(), img);
  EXPECT_EQ(std::tuple(image->ScaleImage(), image->Zoomed(), image->FirstWrite, image->NumRecs),
            std::tuple(1, false, true, 12));
  EXPECT_EQ(image->ReadCR(4, 3), 2.5f);
  EXPECT_EQ(TInteger32Image::Open(img, 1.0f)->ReadCR0(0, 0), std::bit_cast<int32_t>(2.5f));
  EXPECT_EQ(RaisedMessage<EImageFileError>([&] { TByteImage::Open(img, 1.0f); }), kSizeMessage);
}

// Every failed open reports its cause in the words of its form and leaves the files untouched.
TEST(ImageOpen, FailuresKeepTheirWordsAndChangeNoFile) {
  const test::TTempDir dir;
  const std::string longer = test::WriteRaster(dir, "long", std::vector<float>(12));
  test::WriteFileBytes(longer, test::ReadFileBytes(longer) + "x");
  const std::string shorter = test::WriteRaster(dir, "short", std::vector<float>(11));
  const std::string zero =
      test::WriteRaster(dir, "zero", std::vector<float>(), {.Grid = {.Width = 0}});
  const std::string minus =
      test::WriteRaster(dir, "minus", std::vector<float>(), {.Grid = {.Height = -3}});
  test::WriteFileBytes(dir.File("noimg.doc"), test::DocText({}));
  const std::string noDoc = dir.File("nodoc.img");
  test::WriteFileBytes(noDoc, std::string(48, '\0'));
  const auto before = test::FolderState(dir);

  for (const std::string& name : {longer, shorter}) {
    EXPECT_EQ(RaisedMessage<Exception>([&] { TRealImage::Open(name, false); }),
              Guarded(name, kSizeMessage));
    EXPECT_EQ(RaisedMessage<EImageFileError>([&] { TRealImage::Open(name, 1.0f); }), kSizeMessage);
  }
  const std::string missing =
      "Program atempted to open an image file which doesn't exist (" + dir.File("noimg.img") + ")";
  EXPECT_EQ(RaisedMessage<Exception>([&] { TRealImage::Open(dir.File("noimg.doc"), true); }),
            Guarded(dir.File("noimg.doc"), missing));
  EXPECT_EQ(
      RaisedMessage<EImageFileError>([&] { TRealImage::Open(dir.File("noimg.img"), 0, 1, 0, 1); }),
      missing);
  EXPECT_EQ(RaisedMessage<Exception>([&] { TByteImage::Open(zero, false); }),
            Guarded(zero, "Header doesn't contain required Width or Height value"));
  EXPECT_THROW(TByteImage::Open(minus, 1.0f), EImageFileError);
  EXPECT_EQ(RaisedMessage<Exception>([&] {
              TRealImage::Open(noDoc, false);
            }).rfind(Guarded(noDoc, ""), 0),
            0u);
  EXPECT_ANY_THROW(TRealImage::Open(noDoc, 1.0f));
  EXPECT_EQ(test::FolderState(dir), before);
}

// AddressSanitizer's allocator aborts where the system would refuse; gcc and clang tell of it in
// their own ways.
#if defined(__SANITIZE_ADDRESS__)
#define ZEPHRA_TEST_UNDER_ASAN
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZEPHRA_TEST_UNDER_ASAN
#endif
#endif
#if !defined(ZEPHRA_TEST_UNDER_ASAN)
// Memory exhaustion inside the guarded form names the file without its folder.
TEST(ImageOpen, OutOfMemoryHasItsOwnWords) {
  const test::TTempDir dir;
  const std::string img = test::WriteRaster(dir, "huge", std::vector<float>(1),
                                            {.Grid = {.Width = 40000, .Height = 40000}});
  rlimit saved{};
  ASSERT_EQ(getrlimit(RLIMIT_AS, &saved), 0);
  rlimit tight = saved;
  tight.rlim_cur = rlim_t{4} << 30;  // no room for a buffer of 6.4 GB
  ASSERT_EQ(setrlimit(RLIMIT_AS, &tight), 0);
  SetOpenAllocationLimit(std::numeric_limits<int64_t>::max());  // let the system refuse
  const std::string message = RaisedMessage<Exception>([&] { TRealImage::Open(img, false); });
  SetOpenAllocationLimit(0);
  setrlimit(RLIMIT_AS, &saved);
  EXPECT_EQ(message,
            "There was an error opening \"huge.img\". There was not enough free memory to open "
            "the image. Try opening the image in Solvane x64 (64-bit).");
}
#endif

// The open allocation limit for a scope; the default (physical memory) comes back after it.
struct TScopedOpenLimit {
  explicit TScopedOpenLimit(int64_t bytes) { SetOpenAllocationLimit(bytes); }
  ~TScopedOpenLimit() { SetOpenAllocationLimit(0); }
};

int64_t PeakRssMiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss / 1024;
}

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
TEST(ImageOpen, HugeClaimOfAShortTextCostsOnlyItsText) {
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
    EXPECT_EQ(image->BufferRead(1), 2.5f);
    EXPECT_EQ(image->BufferRead(2), 0.0f);
    EXPECT_EQ(image->ReadCR(30000, 30000), 0.0f);
    EXPECT_EQ(image->Header()->MinValue, c.Range.Min);
    EXPECT_EQ(image->Header()->MaxValue, c.Range.Max);
    EXPECT_LT(PeakRssMiB() - before, 64) << "the claim is 3433 MiB";
  }
}

// With a low limit every form of open refuses a claim past it with EImageFileError naming the
// file, before allocating and without touching a file; a claim within the limit still opens.
TEST(ImageOpen, ClaimsPastTheLimitAreRefusedBeforeAllocating) {
  const THugeClaims files("1\n", "");
  const test::TTempDir& dir = files.Dir;
  const std::string binary = test::WriteRaster(dir, "b", std::vector<float>(1024 * 512),
                                               {.Grid = {.Width = 1024, .Height = 512}});
  const std::string small = test::WriteRaster(dir, "s", std::vector<float>(12));
  const std::string legend = dir.File("legend.doc");
  test::WriteFileBytes(legend, "columns: 2\nrows: 2\nlegend cats: 100000\ncategory 0: water\n");

  const auto window = TRealImage::Open(binary, 0, 100, 0, 100);
  const auto before = test::FolderState(dir);
  std::optional<TScopedOpenLimit> limit(1 << 20);
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
    const std::string message = RaisedMessage<EImageFileError>(c.Open);
    EXPECT_NE(message.find(c.File), std::string::npos) << message;
  }
  EXPECT_EQ(std::tuple(window->NumRecs, window->Zoomed()), std::tuple(100 * 100, true));
  EXPECT_EQ(TRealImage::Open(small, false)->NumRecs, 12);
  limit.reset();
  EXPECT_EQ(test::FolderState(dir), before);
  const auto header = TImageHeader::Open(legend);
  ASSERT_EQ(header->Categories.size(), 100000u);
  EXPECT_EQ(header->Categories.front(), "water");
}

}  // namespace
}  // namespace zephra
