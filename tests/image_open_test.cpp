#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <bit>
#include <limits>

#include "support/ImageSupport.h"
#include "support/RaisedMessage.h"

namespace zephra {
namespace {

using test::RaisedMessage;
using test::TRasterDoc;

constexpr const char* kCheckFile = "\". Please check the file and try again\r\n\r\n";
constexpr const char* kSizeMessage =
    "Expected file size calculated from image header does not match actual file size.";

// The cell size comes from the class, not from the header's data type; a .doc name opens the
// data file beside it.
TEST(ImageOpen, WholeFileInTheCellsOfTheOpeningClass) {
  test::TTempDir dir;
  const std::string img = test::WriteRaster(dir, "i", TRasterDoc{4, 3, "integer32"},
                                            std::vector<int32_t>(12, std::bit_cast<int32_t>(2.5f)));
  auto image = TRealImage::Open(dir.File("i.DOC"), true);
  EXPECT_EQ(image->FileName(), img);
  EXPECT_EQ(image->ScaleImage(), 1);
  EXPECT_FALSE(image->Zoomed());
  EXPECT_TRUE(image->FirstWrite);
  EXPECT_EQ(image->NumRecs, 12);
  EXPECT_EQ(image->ReadCR(4, 3), 2.5f);
  EXPECT_EQ(TInteger32Image::Open(img, 1.0f)->ReadCR0(0, 0), std::bit_cast<int32_t>(2.5f));
  EXPECT_EQ(RaisedMessage<EImageFileError>([&] { TByteImage::Open(img, 1.0f); }), kSizeMessage);
}

// Every failed open reports its cause in the words of its form and leaves the files untouched.
TEST(ImageOpen, FailuresKeepTheirWordsAndChangeNoFile) {
  test::TTempDir dir;
  const std::string longer = test::WriteRaster(dir, "long", TRasterDoc{}, std::vector<float>(12));
  test::WriteFileBytes(longer, test::ReadFileBytes(longer) + "x");
  const std::string shorter = test::WriteRaster(dir, "short", TRasterDoc{}, std::vector<float>(11));
  const std::string zero = test::WriteRaster(dir, "zero", TRasterDoc{0}, std::vector<float>());
  const std::string minus =
      test::WriteRaster(dir, "minus", TRasterDoc{4, -3}, std::vector<float>());
  test::WriteFileBytes(dir.File("noimg.doc"), test::DocText(TRasterDoc{}));
  const std::string noDoc = dir.File("nodoc.img");
  test::WriteFileBytes(noDoc, std::string(48, '\0'));
  const auto before = test::FolderState(dir);

  for (const std::string& name : {longer, shorter}) {
    EXPECT_EQ(RaisedMessage<Exception>([&] { TRealImage::Open(name, false); }),
              "There was an error opening \"" + name + kCheckFile + kSizeMessage);
    EXPECT_EQ(RaisedMessage<EImageFileError>([&] { TRealImage::Open(name, 1.0f); }), kSizeMessage);
  }
  const std::string missing =
      "Program atempted to open an image file which doesn't exist (" + dir.File("noimg.img") + ")";
  EXPECT_EQ(RaisedMessage<Exception>([&] { TRealImage::Open(dir.File("noimg.doc"), true); }),
            "There was an error opening \"" + dir.File("noimg.doc") + kCheckFile + missing);
  EXPECT_EQ(
      RaisedMessage<EImageFileError>([&] { TRealImage::Open(dir.File("noimg.img"), 0, 1, 0, 1); }),
      missing);
  EXPECT_EQ(RaisedMessage<Exception>([&] { TByteImage::Open(zero, false); }),
            "There was an error opening \"" + zero + kCheckFile +
                "Header doesn't contain required Width or Height value");
  EXPECT_THROW(TByteImage::Open(minus, 1.0f), EImageFileError);
  EXPECT_EQ(RaisedMessage<Exception>([&] {
              TRealImage::Open(noDoc, false);
            }).rfind("There was an error opening \"" + noDoc + kCheckFile, 0),
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
  test::TTempDir dir;
  const std::string img =
      test::WriteRaster(dir, "huge", TRasterDoc{40000, 40000}, std::vector<float>(1));
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

}  // namespace
}  // namespace zephra
