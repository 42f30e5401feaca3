#include <zephra/Common/zpPlatform.h>
#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <tuple>

#include "support/ImageSupport.h"
#include "support/RaisedMessage.h"

namespace zephra {
namespace {

namespace fs = std::filesystem;

TImageHeader SmallHeader() {
  TImageHeader header = test::GridHeader({.Width = 5, .Height = 3, .Minx = 10.0f, .Miny = -3.0f});
  header.Flag = true;
  header.FlagValue = -9999.0f;
  header.Categories = {"low", "high: really"};
  return header;
}

template <typename TImage>
class ImageRoundTrip : public ::testing::Test {};
using TImageClasses = ::testing::Types<TRealImage, TByteImage, TIntegerImage, TInteger32Image>;
TYPED_TEST_SUITE(ImageRoundTrip, TImageClasses);

// Create, writes and Close give the bare little-endian cell array and a .doc that read back to
// the same cells and header. A new real cell is -9990, a new integer cell 0.
TYPED_TEST(ImageRoundTrip, WrittenCellsAndHeaderReadBack) {
  using TCell = typename decltype(TypeParam::Buffer)::value_type;
  const bool real = std::is_floating_point_v<TCell>;
  const TDataType type = real                 ? dtReal
                         : sizeof(TCell) == 1 ? dtByte
                         : sizeof(TCell) == 2 ? dtInteger
                                              : dtInteger32;
  const test::TTempDir dir;
  const TImageHeader header = SmallHeader();
  auto image = TypeParam::Create(dir.File("r.DOC"), &header);
  EXPECT_EQ(image->ReadCR(5, 3), real ? -9990.0f : 0.0f);
  for (int32_t i = 0; i < 14; ++i) {
    image->FileWrite(static_cast<float>(i * 9));
  }
  image->Close();
  const std::string bytes = test::ReadFileBytes(dir.File("r.img"));
  ASSERT_EQ(bytes.size(), 15 * sizeof(TCell));
  EXPECT_EQ(test::CellsOf<TCell>(bytes)[13], static_cast<TCell>(117));

  auto back = TypeParam::Open(dir.File("r.img"), false);
  for (int32_t i = 0; i < 15; ++i) {
    EXPECT_EQ(back->BufferRead(i), image->BufferRead(i));
  }
  for (const TImageHeader* h : {back->Header(), image->Header()}) {
    EXPECT_EQ(std::tuple(h->DataType, h->FileType), std::tuple(type, ftBinary));
    EXPECT_EQ(std::tuple(h->Width, h->Height, h->Minx, h->Maxy), std::tuple(5, 3, 10.0f, 0.0f));
    EXPECT_EQ(std::tuple(h->MinValue, h->MaxValue, h->Flag), std::tuple(0.0f, 117.0f, true));
    EXPECT_EQ(h->Categories, header.Categories);
  }
  EXPECT_EQ(back->ImageTypeID(), image->ImageTypeID());
  EXPECT_TRUE(TypeParam::ClassRef()->IsClassOf(back.get()));
}

TEST(ImageWriteBack, OnlyNewDataInAFileBoundImageReachesTheDisk) {
  const test::TTempDir dir;
  const TImageHeader header = SmallHeader();
  EXPECT_EQ(test::RaisedMessage<EImageFileError>([] { TRealImage::Create("a", nullptr); }),
            "No image header information supplied");
  TRealImage::Create(dir.File("untouched.img"), &header);
  TRealImage::Create(dir.File("flags.img"), &header)->WriteCR(1, 1, -20000.0f);
  auto memOnly = TRealImage::Create(dir.File("memonly.img"), &header);
  memOnly->WriteCR(1, 1, 5.0f);
  memOnly->MemOnly = true;
  TRealImage::Create(*memOnly);
  memOnly.reset();
  EXPECT_TRUE(fs::is_empty(dir.Path()));

  // The destructor writes what Close() would; a copy carries the new data to its own name.
  auto image = TRealImage::Create(dir.File("part.img"), &header);
  image->WriteCR(2, 1, 42.0f);
  auto copy = TRealImage::ClassRef()->Create(*image);
  copy->SetFileName(dir.File("moved.img"));
  copy->WriteCR(1, 1, 1.0f);
  EXPECT_THROW(TByteImage::ClassRef()->Create(*image), EInvalidOpException);
  image.reset();
  copy.reset();
  std::vector<float> part(15, -9990.0f);
  part[1] = 42.0f;
  EXPECT_EQ(test::CellsOf<float>(test::ReadFileBytes(dir.File("part.img"))), part);
  EXPECT_EQ(test::CellsOf<float>(test::ReadFileBytes(dir.File("moved.img")))[0], 1.0f);
  EXPECT_TRUE(fs::exists(dir.File("part.doc")) && fs::exists(dir.File("moved.doc")));

  // Close runs once: later changes stay in memory.
  auto once = TByteImage::Create(dir.File("once.img"), &header);
  once->WriteCR(1, 1, 7.0f);
  once->Close();
  fs::remove(dir.File("once.img"));
  once->WriteCR(1, 1, 8.0f);
  once->Close();
  once.reset();
  EXPECT_FALSE(fs::exists(dir.File("once.img")));
}

TEST(ImageWriteBack, FailuresReachCloseOrTheDebugChannel) {
  const TImageHeader header = SmallHeader();
  auto lost = TRealImage::Create("/nonexistent-folder/x.img", &header);
  lost->WriteCR(1, 1, 1.0f);
  EXPECT_THROW(lost->Close(), EInOutError);

  std::string debugText;
  SetDebugOutput([&](const std::string& text) { debugText = text; });
  auto quiet = TRealImage::Create("/nonexistent-folder/y.img", &header);
  quiet->WriteCR(1, 1, 1.0f);
  EXPECT_NO_THROW(quiet.reset());
  SetDebugOutput(nullptr);
  EXPECT_NE(debugText.find("/nonexistent-folder/y.img"), std::string::npos);

  const float cells[2] = {1.0f, 2.0f};
  EXPECT_EQ(test::RaisedMessage<EImageFileError>([&] { WriteImageData("/dev/full", 4, 2, cells); }),
            "Blockwrite of image file failed");
}

}  // namespace
}  // namespace zephra
