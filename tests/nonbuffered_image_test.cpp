#include <zephra/Raster/Images/zplbZephraImageTypes.h>
#include <zephra/Raster/Stream/zplbNonBufferedImageTypes.h>

#include <gtest/gtest.h>

#include <bit>
#include <random>
#include <sstream>
#include <streambuf>

#include "support/ImageSupport.h"
#include "support/RaisedMessage.h"

namespace zephra {
namespace {

using test::RaisedMessage;
using test::TRasterDoc;

// Every cell of a 7 x 5 raster of random bit patterns - all integer values, negative ones, NaN -
// read straight from the file and through the buffered image of the same cell type, by cell and
// by map point.
template <typename TStreamed, typename TBuffered, typename TCell>
void ExpectAgreementOnEveryCell(const char* dataType) {
  test::TTempDir dir;
  std::mt19937 random(std::hash<std::string>()(dataType));
  std::string bytes(35 * sizeof(TCell), '\0');
  for (char& byte : bytes) {
    byte = static_cast<char>(random());
  }
  const std::string img = test::WriteRaster(dir, "r", TRasterDoc{7, 5, dataType, 7.0f, 5.0f},
                                            test::CellsOf<TCell>(bytes));
  const auto buffered = TBuffered::Open(img, false);
  const auto streamed = TStreamed::Open(img);
  for (int32_t row = 0; row < 5; ++row) {
    for (int32_t col = 0; col < 7; ++col) {
      const float x = static_cast<float>(col) + 0.5f;
      const float y = 5.0f - static_cast<float>(row) - 0.5f;
      EXPECT_EQ(std::bit_cast<uint32_t>(streamed->Read(col, row)),
                std::bit_cast<uint32_t>(buffered->ReadCR0(col, row)))
          << dataType << " cell " << col << ", " << row;
      EXPECT_EQ(std::bit_cast<uint32_t>(streamed->ReadLatLng(y, x)),
                std::bit_cast<uint32_t>(buffered->ReadXY(x, y)));
    }
  }
  EXPECT_EQ(streamed->Header()->Width, 7);
  EXPECT_EQ(RaisedMessage<EArgumentException>([&] { streamed->ReadLatLng(5.5f, 1.0f); }),
            "Lat is outside map bounds");
}

TEST(NonBufferedImage, EveryCellAgreesWithTheBufferedImageInAllFourCellTypes) {
  ExpectAgreementOnEveryCell<TByteNonBufferedImage, TByteImage, uint8_t>("byte");
  ExpectAgreementOnEveryCell<TIntegerNonBufferedImage, TIntegerImage, int16_t>("integer");
  ExpectAgreementOnEveryCell<TInteger32NonBufferedImage, TInteger32Image, int32_t>("integer32");
  ExpectAgreementOnEveryCell<TSingleNonBufferedImage, TRealImage, float>("real");
}

// The arguments are tested stream first, then header, then the cell type in each class's words;
// a failed Open leaves nothing behind (the sanitizer build would see a leak).
TEST(NonBufferedImage, CreateAndOpenCheckStreamHeaderAndCellType) {
  std::istringstream stream("abcd");
  TImageHeader header;
  header.DataType = dtInteger;
  const std::string nullStream = "Error in TAbstractNonBufferedImage.Check() - Stream in null";
  EXPECT_EQ(RaisedMessage<EArgumentNullException>(
                [&] { TByteNonBufferedImage::Create(nullptr, nullptr); }),
            nullStream);
  EXPECT_EQ(RaisedMessage<EArgumentNullException>(
                [&] { TSingleNonBufferedImage::Create(&stream, nullptr); }),
            "Error in TAbstractNonBufferedImage.Check() - Header in null");
  EXPECT_EQ(
      RaisedMessage<EInvalidOpException>([&] { TByteNonBufferedImage::Create(&stream, &header); }),
      "Image must be Byte image");
  EXPECT_EQ(RaisedMessage<EInvalidOpException>(
                [&] { TInteger32NonBufferedImage::Create(&stream, &header); }),
            "Image must be Integer32 image");
  header.DataType = dtByte;
  EXPECT_EQ(RaisedMessage<EInvalidOpException>(
                [&] { TIntegerNonBufferedImage::Create(&stream, &header); }),
            "Image must be Integer image");
  header.FileType = ftAscii;  // not looked at
  EXPECT_EQ(TByteNonBufferedImage::Create(&stream, &header)->Header(), &header);

  test::TTempDir dir;
  const std::string img =
      test::WriteRaster(dir, "b", TRasterDoc{2, 2, "byte"}, std::vector<uint8_t>{1, 2, 3, 4});
  EXPECT_EQ(RaisedMessage<EInvalidOpException>([&] { TSingleNonBufferedImage::Open(img); }),
            "Image must be Real image");
  test::WriteFileBytes(dir.File("nodata.doc"), test::DocText(TRasterDoc{2, 2, "byte"}));
  EXPECT_THROW(TByteNonBufferedImage::Open(dir.File("nodata.img")), EFOpenError);
  EXPECT_THROW(TByteNonBufferedImage::Open(dir.File("nodoc.img")), EFOpenError);

  // The header comes from the .doc beside the name, the data from the name itself: a .doc name
  // reads the header text as cells.
  const auto image = TByteNonBufferedImage::Open(img);
  EXPECT_EQ(image->Read(1, 1), 4.0f);
  EXPECT_EQ(image->Header()->FileName, dir.File("b.doc"));
  EXPECT_EQ(TByteNonBufferedImage::Open(dir.File("b.doc"))->Read(0, 0), 'd');
}

// Offsets on a 3 x 2 raster of 16-bit cells: cell (2, 1) is the index 5, at byte 10. Cells the
// data does not hold raise, and the image reads on after that.
TEST(NonBufferedImage, OffsetsAndCellsOutsideTheData) {
  TImageHeader header;
  header.DataType = dtInteger;
  header.Width = 3;
  header.Height = 2;
  std::istringstream stream(std::string("\x01\x00\x02\x00\x03\x00\x04\x00\xff\xff\x34\x12", 12));
  const auto image = TIntegerNonBufferedImage::Create(&stream, &header);
  EXPECT_EQ(image->GetOffset(2, 1), 10);
  EXPECT_EQ(image->Read(2, 1), 4660.0f);
  EXPECT_EQ(image->Read(1, 1), -1.0f);
  EXPECT_EQ(image->Read(3, 0), 4.0f);  // no bounds test within the data
  EXPECT_EQ(RaisedMessage<EImageFileError>([&] { image->Read(0, 2); }),
            "Cannot read the cell at byte offset 12: it lies outside the data");
  EXPECT_EQ(RaisedMessage<EImageFileError>([&] { image->Read(-1, 0); }),
            "Cannot read the cell at byte offset -2: it lies outside the data");
  EXPECT_THROW(image->Read(INT32_MAX, INT32_MAX), EImageFileError);
  EXPECT_EQ(image->Read(0, 0), 1.0f);

  test::TTempDir dir;
  const std::string img =
      test::WriteRaster(dir, "short", TRasterDoc{2, 2, "real"}, std::vector<float>{1, 2, 3});
  const auto file = TSingleNonBufferedImage::Open(img);
  EXPECT_EQ(
      RaisedMessage<EImageFileError>([&] { file->Read(1, 1); }),
      "Cannot read the cell at byte offset 12: it lies outside the data file \"" + img + "\"");
  EXPECT_EQ(file->Read(0, 1), 3.0f);
}

// Data of any size whose 32-bit word at cell index i holds Word(i), made up on demand.
class TSyntheticData : public std::streambuf {
 public:
  explicit TSyntheticData(int64_t size) : FSize(size) {}
  static int32_t Word(int64_t index) {
    return static_cast<int32_t>((static_cast<uint64_t>(index) * 2654435761u >> 7) & 0xFFFFFF);
  }

 protected:
  pos_type seekoff(off_type off, std::ios::seekdir dir, std::ios::openmode) override {
    const int64_t base = dir == std::ios::beg ? 0 : dir == std::ios::cur ? FPos : FSize;
    FPos = base + off;
    return pos_type(off_type(FPos));
  }
  pos_type seekpos(pos_type pos, std::ios::openmode which) override {
    return seekoff(off_type(pos), std::ios::beg, which);
  }
  std::streamsize xsgetn(char* target, std::streamsize count) override {
    std::streamsize done = 0;
    for (; done < count && FPos >= 0 && FPos < FSize; ++done, ++FPos) {
      target[done] = static_cast<char>(static_cast<uint32_t>(Word(FPos / 4)) >> (8 * (FPos % 4)));
    }
    return done;
  }

 private:
  int64_t FSize;
  int64_t FPos = 0;
};

// The last cells of the largest raster a 32-bit cell index allows lie beyond 8 GiB of data.
TEST(NonBufferedImage, EveryCellOfTheLargestRasterIsFound) {
  TImageHeader header;
  header.DataType = dtInteger32;
  header.Width = 65536;
  header.Height = 32767;
  TSyntheticData data(int64_t{header.Width} * header.Height * 4);
  std::istream stream(&data);
  const auto image = TInteger32NonBufferedImage::Create(&stream, &header);
  for (const auto& [col, row] : {std::pair{65535, 32766}, std::pair{0, 32768 / 2},
                                 std::pair{1, 16384}, std::pair{12345, 8191}, std::pair{7, 0}}) {
    const int64_t index = int64_t{row} * 65536 + col;
    EXPECT_EQ(image->Read(col, row), static_cast<float>(TSyntheticData::Word(index)))
        << col << ", " << row;
  }
  EXPECT_EQ(image->GetOffset(65535, 32766), (int64_t{1} << 33) - 4 * 65536 - 4);
}

}  // namespace
}  // namespace zephra
