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

template <typename TCell>
class NonBufferedCells : public ::testing::Test {};
using TCellTypes = ::testing::Types<uint8_t, int16_t, int32_t, float>;
TYPED_TEST_SUITE(NonBufferedCells, TCellTypes);

// Every cell of a 7 x 5 raster of random bit patterns - all integer values, negative ones, NaN -
// reads the same straight from the file as through the buffered image, by cell and by map point.
TYPED_TEST(NonBufferedCells, EveryCellAgreesWithTheBufferedImage) {
  const test::TTempDir dir;
  std::mt19937 random(sizeof(TypeParam));
  std::string bytes(35 * sizeof(TypeParam), '\0');
  for (char& byte : bytes) {
    byte = static_cast<char>(random());
  }
  const std::string img = test::WriteRaster(dir, "r", test::CellsOf<TypeParam>(bytes),
                                            {.Grid = {.Width = 7, .Height = 5}});
  const auto buffered = TTypedImage<TypeParam>::Open(img, false);
  const auto streamed = TNonBufferedImage<TypeParam>::Open(img);
  for (int32_t i = 0; i < 35; ++i) {
    const float x = static_cast<float>(i % 7) + 0.5f;
    const float y = 4.5f - static_cast<float>(i / 7);
    EXPECT_EQ(std::bit_cast<uint32_t>(streamed->Read(i % 7, i / 7)),
              std::bit_cast<uint32_t>(buffered->BufferRead(i)))
        << i;
    EXPECT_EQ(std::bit_cast<uint32_t>(streamed->ReadLatLng(y, x)),
              std::bit_cast<uint32_t>(buffered->ReadXY(x, y)))
        << i;
  }
  EXPECT_EQ(RaisedMessage<EArgumentException>([&] { streamed->ReadLatLng(5.5f, 1.0f); }),
            "Lat is outside map bounds");
  // Each class takes only its own cell type.
  std::istringstream stream("abcd");
  TImageHeader header;
  header.DataType = sizeof(TypeParam) == 1 ? dtInteger : dtByte;
  EXPECT_EQ(RaisedMessage<EInvalidOpException>(
                [&] { TNonBufferedImage<TypeParam>::Create(&stream, &header); }),
            std::string("Image must be ") +
                (std::is_floating_point_v<TypeParam> ? "Real"
                 : sizeof(TypeParam) == 1            ? "Byte"
                 : sizeof(TypeParam) == 2            ? "Integer"
                                                     : "Integer32") +
                " image");
}

// The arguments are tested stream first, then header, then the cell type; a failed Open leaves
// nothing behind (the sanitizer build would see a leak).
TEST(NonBufferedImage, CreateAndOpenCheckStreamHeaderAndCellType) {
  std::istringstream stream("abcd");
  TImageHeader header;
  header.DataType = dtInteger;
  EXPECT_EQ(RaisedMessage<EArgumentNullException>(
                [&] { TByteNonBufferedImage::Create(nullptr, nullptr); }),
            "Error in TAbstractNonBufferedImage.Check() - Stream in null");
  EXPECT_EQ(RaisedMessage<EArgumentNullException>(
                [&] { TSingleNonBufferedImage::Create(&stream, nullptr); }),
            "Error in TAbstractNonBufferedImage.Check() - Header in null");
  header.DataType = dtByte;
  header.FileType = ftAscii;  // not looked at
  EXPECT_EQ(TByteNonBufferedImage::Create(&stream, &header)->Header(), &header);

  const test::TTempDir dir;
  const std::string img = test::WriteRaster(dir, "b", std::vector<uint8_t>{1, 2, 3, 4},
                                            {.Grid = {.Width = 2, .Height = 2}});
  EXPECT_THROW(TSingleNonBufferedImage::Open(img), EInvalidOpException);
  std::filesystem::copy_file(dir.File("b.doc"), dir.File("nodata.doc"));
  EXPECT_THROW(TByteNonBufferedImage::Open(dir.File("nodata.img")), EFOpenError);
  EXPECT_THROW(TByteNonBufferedImage::Open(dir.File("nodoc.img")), EFOpenError);
  // The header comes from the .doc beside the name, the data from the name itself: a .doc name
  // reads the header text as cells.
  EXPECT_EQ(TByteNonBufferedImage::Open(img)->Header()->FileName, dir.File("b.doc"));
  EXPECT_EQ(TByteNonBufferedImage::Open(dir.File("b.doc"))->Read(0, 0), 'd');
}

// Offsets on a 3 x 2 raster of 16-bit cells: cell (2, 1) is the index 5, at byte 10. Cells the
// data does not hold raise, and the image reads on after that.
TEST(NonBufferedImage, OffsetsAndCellsOutsideTheData) {
  TImageHeader header = test::GridHeader({.Width = 3, .Height = 2});
  header.DataType = dtInteger;
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

  const test::TTempDir dir;
  const std::string img = test::WriteRaster(dir, "short", std::vector<float>{1, 2, 3},
                                            {.Grid = {.Width = 2, .Height = 2}});
  const auto file = TSingleNonBufferedImage::Open(img);
  EXPECT_EQ(
      RaisedMessage<EImageFileError>([&] { file->Read(1, 1); }),
      "Cannot read the cell at byte offset 12: it lies outside the data file \"" + img + "\"");
  EXPECT_EQ(file->Read(0, 1), 3.0f);
}

// Data of any size, made up on demand, whose 32-bit word at cell index i holds Word(i).
class TSyntheticData : public std::streambuf {
 public:
  static int32_t Word(int64_t index) {
    return static_cast<int32_t>((static_cast<uint64_t>(index) * 2654435761u >> 7) & 0xFFFFFF);
  }

 protected:
  pos_type seekoff(off_type off, std::ios::seekdir dir, std::ios::openmode) override {
    FPos = (dir == std::ios::cur ? FPos : 0) + off;  // never sought from the end
    return pos_type(off_type(FPos));
  }
  pos_type seekpos(pos_type pos, std::ios::openmode which) override {
    return seekoff(off_type(pos), std::ios::beg, which);
  }
  std::streamsize xsgetn(char* target, std::streamsize count) override {
    for (std::streamsize i = 0; i < count; ++i, ++FPos) {
      target[i] = static_cast<char>(static_cast<uint32_t>(Word(FPos / 4)) >> (8 * (FPos % 4)));
    }
    return count;
  }

 private:
  int64_t FPos = 0;
};

// The last cells of the largest raster a 32-bit cell index allows lie beyond 8 GiB of data.
TEST(NonBufferedImage, EveryCellOfTheLargestRasterIsFound) {
  TImageHeader header = test::GridHeader({.Width = 65536, .Height = 32767});
  header.DataType = dtInteger32;
  TSyntheticData data;
  std::istream stream(&data);
  const auto image = TInteger32NonBufferedImage::Create(&stream, &header);
  for (const auto& [col, row] : {std::pair{65535, 32766}, {0, 16384}, {12345, 8191}, {7, 0}}) {
    EXPECT_EQ(image->Read(col, row),
              static_cast<float>(TSyntheticData::Word(int64_t{row} * 65536 + col)))
        << col << ", " << row;
  }
  EXPECT_EQ(image->GetOffset(65535, 32766), (int64_t{1} << 33) - 4 * 65536 - 4);
}

}  // namespace
}  // namespace zephra
