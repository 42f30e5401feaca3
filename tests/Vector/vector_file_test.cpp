#include <gtest/gtest.h>

#include <bit>
#include <filesystem>
#include <random>
#include <sstream>

#include <zephra/Common/zpNumberText.h>
#include <zephra/Vector/zpVectorFile.h>

#include "support/RaisedMessage.h"
#include "support/TestSupport.h"
#include "support/VectorSupport.h"

namespace zephra {
namespace {

using test::MakeFeature;
using test::RaisedMessage;

// Writes a coordinate file and the .dvc beside it; returns the coordinate file's name.
std::string WriteLayer(const test::TTempDir& dir, const std::string& dvc, const std::string& data) {
  test::WriteFileBytes(dir.File("layer.dvc"), dvc);
  test::WriteFileBytes(dir.File("layer.vec"), data);
  return dir.File("layer.vec");
}

std::string Record(int32_t id, int32_t n, std::initializer_list<float> coordinates) {
  std::string bytes(reinterpret_cast<const char*>(&id), 4);
  bytes.append(reinterpret_cast<const char*>(&n), 4);
  for (const float c : coordinates) {
    bytes.append(reinterpret_cast<const char*>(&c), 4);
  }
  return bytes;
}

TEST(VectorFile, TextRoundTripKeepsTwoDecimalsShiftsLongitudesAndCountsHoles) {
  const test::TTempDir dir;
  TVector layer(ltPolygon);
  layer.Header()->SetRefSystem("LatLong");
  layer.AddFeature(MakeFeature(
      1.239f, {-10, 5, -10, 6.004f, -9, 6, -10, 5, 0, 0, -9.6f, 5.5f, -9.5f, 5.6f, -9.6f, 5.5f}));
  layer.AddFeature(MakeFeature(2, {0.004f, -0.003f, 1, 1, 2, 0}));  // rounds to (0, 0)
  layer.SaveToFile(dir.File("layer.vec"));
  EXPECT_EQ(test::ReadFileBytes(dir.File("layer.vec")), test::GoldenText("vector/layer.vec"));
  EXPECT_EQ(test::ReadFileBytes(dir.File("layer.dvc")), test::GoldenText("vector/layer.dvc"));

  const auto loaded = TVector::Open(dir.File("layer.vec"));
  ASSERT_EQ(loaded->Count(), 2);
  EXPECT_FLOAT_EQ(loaded->GetFeature(0)->Id, 1.24f);
  EXPECT_FLOAT_EQ(loaded->GetFeature(0)->GetPoint(0)->X(), 350.0f);
  EXPECT_FLOAT_EQ(loaded->GetFeature(0)->GetPoint(5)->X(), 350.4f);
  EXPECT_EQ(loaded->GetFeature(0)->NumOfHoles, 1);
  EXPECT_EQ(loaded->GetFeature(1)->NumOfHoles, 1);
  EXPECT_FLOAT_EQ(loaded->MinX, 0.0f);
  EXPECT_FLOAT_EQ(loaded->MaxX, 351.0f);
  EXPECT_THROW(loaded->GetFeature(0)->GetPoint(8), EListError);

  loaded->LoadFromFile(dir.File("layer.vec"));  // a second load appends
  EXPECT_EQ(loaded->Count(), 4);
  loaded->LayerType = ltLine;
  loaded->Save();
  const auto lines = TVector::Open(dir.File("layer.vec"));
  EXPECT_EQ(lines->GetFeature(1)->NumOfHoles, 0);

  const test::TScopedNumericLocale comma(test::kCommaLocale);
  if (comma.Active()) {
    std::stringstream stream;
    lines->SaveToStream(stream);
    EXPECT_EQ(stream.str().substr(0, 14), "1,24 8\r\n350,00");
    TVector again;
    again.Header()->SetObjectType("line");
    again.LoadFromStream(stream);
    EXPECT_FLOAT_EQ(again[0]->GetPoint(1)->Y(), 6.0f);
  }
}

// The reader takes every number the shared parser takes, to the same bit, whatever the form.
TEST(VectorFile, TextNumbersReadAsTheSharedParserReadsThem) {
  std::vector<std::string> numbers{"1e3",          "+2.5",           "5.", ".5",
                                   "0000001.50",   "-0.00",          "-0", "12345678901234567.5",
                                   "3.4028234e38", "999999999999999"};
  std::mt19937 random(7);
  for (int i = 0; i < 2000; ++i) {
    std::string number = (random() % 2 ? "-" : "") + std::to_string(random() % 100000000);
    const int decimals = static_cast<int>(random() % 9);
    if (decimals > 0) {
      number += "." + std::to_string(1000000000 + random() % 1000000000).substr(1, decimals);
    }
    numbers.push_back(number);
  }
  std::string text = "1 " + std::to_string(numbers.size()) + "\r\n";
  for (const std::string& number : numbers) {
    text += number + " 1\r\n";
  }
  std::istringstream in(text + "0 0\r\n");
  TVector layer;
  layer.Header()->SetObjectType("point");
  layer.LoadFromStream(in);
  const TNumberFormat format;
  for (size_t i = 0; i < numbers.size(); ++i) {
    EXPECT_EQ(std::bit_cast<uint32_t>(layer[0]->GetPoint(static_cast<int32_t>(i))->X()),
              std::bit_cast<uint32_t>(format.ParseFloat(numbers[i])))
        << numbers[i];
  }
}

TEST(VectorFile, SavingFollowsWrittenToAndRefusesWhatCannotBeReadBack) {
  const test::TTempDir dir;
  const std::string name = dir.File("points.vec");
  TVector layer(ltPoint);
  layer.SaveAs(name);
  EXPECT_EQ(layer.FileName, name);
  EXPECT_FALSE(std::filesystem::exists(name));
  EXPECT_EQ(RaisedMessage<EVectorFileError>([&] { layer.AddFeature(MakeFeature(1, {})); }),
            "Can't add a feature with zero points");
  layer.AddFeature(MakeFeature(1, {4, 5}));
  layer.FileName.clear();
  EXPECT_EQ(RaisedMessage<EVectorFileError>([&] { layer.Save(); }),
            "A filename must be specified to save the vector file");
  layer.SaveAs(name);
  layer.Clear();
  layer.Save();
  EXPECT_EQ(test::ReadFileBytes(name), "0 0\r\n");
  const auto empty = TVector::Open(name);
  EXPECT_EQ(empty->Count(), 0);
  EXPECT_FLOAT_EQ(empty->Header()->MaxY(), 5.0f);
  std::filesystem::remove(name);
  empty->Save();
  EXPECT_FALSE(std::filesystem::exists(name));

  layer.AddFeature(MakeFeature(1, {4, 5}));
  layer.GetFeature(0)->Clear();
  layer.Header()->SetFileType("BINARY");
  std::ostringstream out;
  EXPECT_EQ(RaisedMessage<EVectorFileError>([&] { layer.SaveToStream(out); }),
            "Vector file feature has zero points");
  EXPECT_EQ(layer.Header()->FileType(), "ASCII");
  layer.GetFeature(0)->AddPoint(1, 1);
  for (int i = 0; i < 65535; ++i) {
    layer.GetFeature(0)->AddPoint(1, 1);
  }
  EXPECT_NE(RaisedMessage<EVectorFileError>([&] { layer.SaveToStream(out); }).find("65535"),
            std::string::npos);

  TVector unknown(ltNull);
  unknown.AddFeature(MakeFeature(1, {4, 5}));
  unknown.SaveAs(name);
  EXPECT_EQ(RaisedMessage<EVectorFileError>([&] { TVector::Open(name); }),
            "Can't determine feature type of " + name);
}

TEST(VectorFile, MissingFilesAndMalformedTextStopTheLoadWithTheirLine) {
  const test::TTempDir dir;
  TVector layer;
  const std::string name = dir.File("layer.vec");
  EXPECT_EQ(RaisedMessage<EVectorFileError>([&] { layer.LoadFromFile(name); }),
            "Vector file (" + name + ") does not exist");
  EXPECT_EQ(layer.FileName, name);
  test::WriteFileBytes(name, "0 0\r\n");
  EXPECT_EQ(RaisedMessage<EVectorFileError>([&] { layer.LoadFromFile(name); }),
            dir.File("layer.dvc") + " does not exist");

  const std::string dvc = "object type: point\n";
  EXPECT_EQ(TVector::Open(WriteLayer(dir, dvc, "1.00 1\r\n"))->Count(), 0);
  const std::pair<const char*, int> malformed[] = {
      {"", 1},
      {"1.00 2\r\n1.00 1.00\r\n", 3},
      {"1.00 1\r\n1.00 1.00 extra\r\n", 3},
      {"1.00 1\r\n1.00\r\n0 0\r\n", 2},
      {"1.00 1\r\n\r\n0 0\r\n", 2},
      {"1.00 1\n1.00 1.00\n0 0\n\n", 4},
  };
  for (const auto& textAndLine : malformed) {
    const std::string file = WriteLayer(dir, dvc, textAndLine.first);
    const std::string message = RaisedMessage<EVectorFileError>([&] { TVector::Open(file); });
    EXPECT_NE(message.find(name + "), line " + std::to_string(textAndLine.second) + ":"),
              std::string::npos)
        << message;
  }
  for (const char* text : {"1.00 x\r\n", "1.00 1\r\n1.00  1.00\r\n0 0\r\n", "1 1.5\r\n2 2\r\n"}) {
    EXPECT_THROW(TVector::Open(WriteLayer(dir, dvc, text)), EConvertError) << text;
  }
}

TEST(VectorFile, BinaryFormIsReadWholeAndTruncationIsCaught) {
  const test::TTempDir dir;
  const std::string dvc = "object type: POINT\nfile type: Binary\nref. system: latlon\n";
  const std::string data =
      Record(7, 2, {-10, 1, 2, 3}) + Record(0, 0, {}) + Record(9, -3, {}) + Record(8, 1, {0, 0});
  const auto layer = TVector::Open(WriteLayer(dir, dvc, data));
  ASSERT_EQ(layer->Count(), 2);
  EXPECT_FLOAT_EQ(layer->GetFeature(0)->GetPoint(0)->X(), 350.0f);
  EXPECT_FLOAT_EQ(layer->GetFeature(0)->GetPoint(1)->Y(), 3.0f);
  EXPECT_FLOAT_EQ(layer->GetFeature(1)->Id, 8.0f);
  EXPECT_EQ(TVector::Open(WriteLayer(dir, dvc, ""))->Count(), 0);

  TVector shortHeader;
  const std::string headerMessage = RaisedMessage<EAssertionFailed>(
      [&] { shortHeader.LoadFromFile(WriteLayer(dir, dvc, data + std::string(5, '\x01'))); });
  EXPECT_EQ(headerMessage.rfind("Assertion failure (Vector/zpVectorFile)", 0), 0u) << headerMessage;
  EXPECT_NE(headerMessage.find("byte " + std::to_string(data.size())), std::string::npos);
  EXPECT_EQ(shortHeader.Count(), 2);

  TVector shortVertices;
  const std::string vertexMessage = RaisedMessage<EVectorFileError>([&] {
    shortVertices.LoadFromFile(WriteLayer(dir, dvc, data + Record(1, 3, {1, 2, 3, 4})));
  });
  EXPECT_NE(vertexMessage.find("byte " + std::to_string(data.size())), std::string::npos)
      << vertexMessage;
  EXPECT_EQ(shortVertices.Count(), 2);
}

}  // namespace
}  // namespace zephra
