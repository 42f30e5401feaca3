#include <gtest/gtest.h>

#include <sstream>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Vector/zpVectorFileHeader.h>

#include "support/TestSupport.h"

namespace zephra {
namespace {

std::string Saved(const TVectorHeader& header) {
  std::ostringstream out;
  header.SaveToStream(out);
  return out.str();
}

TVectorHeader Loaded(const std::string& text) {
  TVectorHeader header;
  std::istringstream in(text);
  header.LoadFromStream(in);
  return header;
}

TEST(VectorHeader, WritesThirteenLabelledLinesAndReadsThemBack) {
  TVectorHeader header;
  header.SetTitle("Rivers: main");
  header.SetLayerType(ltLine);
  header.SetRefSystem("latlong");
  header.SetMinX(-10.123456f);
  header.SetMaxY(1e7f);
  header.SetResolution("  0.5 ");
  EXPECT_EQ(Saved(header), test::GoldenText("vector/header.dvc"));
  const TVectorHeader back = Loaded(Saved(header));
  EXPECT_EQ(back.Title(), "Rivers: main");
  EXPECT_EQ(back.Resolution(), "0.5");
  EXPECT_EQ(back.LayerType(), ltLine);
  EXPECT_FLOAT_EQ(back.MinX(), -10.1235f);
}

TEST(VectorHeader, KeysMatchLooselyAndEachLoadStartsAfresh) {
  TVectorHeader header = Loaded(
      "\xEF\xBB\xBFMIN. X:2\nmin. x: 3\rObject Type: polygon\n  ref. system : LAT/LONG\nx: 1\n");
  EXPECT_FLOAT_EQ(header.MinX(), 3.0f);  // the later line wins
  EXPECT_EQ(header.ObjectType(), "polygon");
  EXPECT_EQ(header.LayerType(), ltPolygon);
  EXPECT_TRUE(header.IsLatLon());
  std::istringstream second("ref. system: lat-long\nobject type: polygons\n");
  header.LoadFromStream(second);
  EXPECT_FLOAT_EQ(header.MinX(), 0.0f);
  EXPECT_FALSE(header.IsLatLon());
  EXPECT_EQ(header.LayerType(), ltNull);
  header.SetLayerType(ltNull);
  EXPECT_EQ(Loaded(Saved(header)).ObjectType(), "NULL");
}

TEST(VectorHeader, FloatLinesFollowTheLocaleAndFailWithoutANumber) {
  TVectorHeader header;
  std::istringstream noColon("file title: kept\nmin. X\nmax. X: 4\n");
  EXPECT_THROW(header.LoadFromStream(noColon), EConvertError);
  EXPECT_EQ(header.Title(), "kept");
  EXPECT_FLOAT_EQ(header.MaxX(), 0.0f);
  const test::TScopedNumericLocale comma(test::kCommaLocale);
  if (comma.Active()) {
    header.SetMaxX(2.5f);
    EXPECT_NE(Saved(header).find("max. X      : 2,5000\r\n"), std::string::npos);
    EXPECT_FLOAT_EQ(Loaded(Saved(header)).MaxX(), 2.5f);
    EXPECT_THROW(Loaded("max. Y: 1.5\n"), EConvertError);
  }
  const test::TTempDir dir;
  EXPECT_THROW(header.LoadFromFile(dir.File("missing.dvc")), EFOpenError);
  header.SaveToFile(dir.File("x.dvc"));
  TVectorHeader fromFile;
  fromFile.LoadFromFile(dir.File("x.dvc"));
  EXPECT_EQ(fromFile.Title(), "kept");
}

}  // namespace
}  // namespace zephra
