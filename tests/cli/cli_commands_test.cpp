// The tool's commands in-process: statistics scanned in parallel blocks against a plain pass; exit
// codes and one-line messages for bad arguments, missing and unreadable files; the results of
// sample and of the vector commands; and that a failed command leaves nothing behind and never
// touches its inputs.

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include <zephra/zephra.h>

#include "CliSupport.h"
#include "RasterStats.h"
#include "SampleCommand.h"
#include "VectorCommands.h"
#include "support/ImageSupport.h"
#include "support/TestSupport.h"

namespace zephra::cli {
namespace {

namespace fs = std::filesystem;
using test::Sample;
using test::TQuietContext;
using test::TTempDir;
using test::Zephra;

// Several batches of several blocks on every core, no data among them (NaN and the flag), each
// cell type: the merged moments equal one plain pass in long double.
template <typename TImage>
void ExpectStatsOfPlainPass(float noData) {
  const test::TGrid grid{.Width = 2100, .Height = 2100};
  std::vector<float> cells(size_t{2100} * 2100);
  for (size_t i = 0; i < cells.size(); ++i) {
    cells[i] = i % 97 == 0 ? noData : static_cast<float>((i * 7919) % 20011 % 250);
  }
  if (std::is_same_v<TImage, TRealImage>) {
    cells[4321] = std::nanf("");
  }
  const auto image = test::MakeImage<TImage>(test::GridHeader(grid), cells);
  long double sum = 0, squares = 0;
  int64_t valid = 0;
  for (const float value : image->Buffer) {
    if (!std::isnan(static_cast<float>(value)) && value > noData) {
      sum += value;
      ++valid;
    }
  }
  const long double mean = sum / valid;
  for (const float value : image->Buffer) {
    if (!std::isnan(static_cast<float>(value)) && value > noData) {
      squares += (value - mean) * (value - mean);
    }
  }
  TQuietContext quiet;
  const TRasterStats stats = ScanStats(*image, TNoData{noData}, quiet.Progress);
  EXPECT_EQ(stats.ValidCells(), valid);
  EXPECT_EQ(stats.Min, 0.0);
  EXPECT_EQ(stats.Max, 249.0);
  EXPECT_NEAR(stats.Mean, static_cast<double>(mean), 1e-9);
  EXPECT_NEAR(stats.StdDev, std::sqrt(static_cast<double>(squares / valid)), 1e-9);
}

TEST(CliCommands, StatisticsInParallelBlocksEqualOnePlainPass) {
  ExpectStatsOfPlainPass<TRealImage>(-9999.0f);
  ExpectStatsOfPlainPass<TIntegerImage>(-1.0f);
}

TEST(CliCommands, ExitCodesAndOneLineMessages) {
  const TTempDir dir;
  test::WriteFileBytes(dir.File("noise.bin"), "\x01\x02\x03 not a raster");
  test::WriteFileBytes(dir.File("garbage.doc"), "no header here\n");
  const struct {
    std::vector<std::string> Args;
    int Code;
    std::string Out, Err;  // patterns searched for
  } cases[] = {
      {{"--version"}, 0, std::string("^") + LibraryVersionString() + "\n$", "^$"},
      {{"--help"}, 0, "info[\\s\\S]*rasterize[\\s\\S]*palette", "^$"},
      {{"vector", "pip", "--help"}, 0, "Usage:[\\s\\S]*FILE", "^$"},
      {{}, 2, "^$", "^zephra: A subcommand is required"},
      {{"info", Sample("sample.doc"), "--bogus"}, 2, "^$", "^zephra: .*--bogus"},
      {{"sample", Sample("sample.doc"), "111.5"}, 2, "^$", "pairs of coordinates"},
      {{"convert", Sample("sample.doc"), dir.File("out.bin")}, 2, "^$", "out\\.bin .*--to"},
      {{"rasterize", Sample("zones.shp"), dir.File("z.doc"), "--burn", "1"}, 2, "^$", "--like"},
      {{"header", "set", Sample("sample.doc"), "columns", "5"}, 2, "^$", "cannot be set"},
      {{"info", dir.File("missing.doc")}, 1, "^$", "^zephra: .*missing\\.doc"},
      {{"info", dir.File("garbage.doc")}, 1, "^$", "^zephra: .*garbage\\.doc"},
      {{"info", dir.File("noise.bin")}, 1, "^$", "^zephra: .*noise\\.bin.*not a raster"},
      {{"sample", Sample("sample.doc"), "120", "-41"}, 1, "^$", "point 120 -41: Lng is outside"},
      {{"vector", "info", dir.File("missing.vec")}, 1, "^$", "^zephra: .*missing\\.vec"},
      {{"palette", "show", dir.File("missing.pal")}, 1, "^$", "missing\\.pal: no such palette"},
  };
  for (const auto& c : cases) {
    const test::TRun run = Zephra(c.Args);
    SCOPED_TRACE(c.Args.empty() ? "(none)" : c.Args.front() + " ... " + c.Args.back());
    EXPECT_EQ(run.Code, c.Code) << run.Err;
    EXPECT_TRUE(std::regex_search(run.Out, std::regex(c.Out))) << run.Out;
    EXPECT_TRUE(std::regex_search(run.Err, std::regex(c.Err))) << run.Err;
    if (c.Code != 0) {
      EXPECT_EQ(std::count(run.Err.begin(), run.Err.end(), '\n'), 1) << run.Err;
    }
  }
}

TEST(CliCommands, SampleReadsPointsCellsAndSmoothedMeans) {
  TQuietContext quiet;
  const struct {
    std::string File;
    std::vector<double> Coords;
    bool ColRow;
    std::optional<int32_t> Smooth;
    std::optional<float> Value;
  } cases[] = {
      {"sample.doc", {111.5, -40.5}, false, {}, 16.5f},
      {"sample.doc", {112.5, -41.5}, false, {}, std::nullopt},  // a no-data cell
      {"sample.doc", {2, 3}, true, {}, 10.25f},
      {"sample.doc", {3, 2}, true, 1, 12.625f},  // the mean of the eight valid cells around it
      // The first column of the world wraps to the last: 9 cells, 3 of them east of 175.
      {"temperature.doc", {-177.5, 2.5}, false, 1, 2453.0f / 9.0f},
      {"temperature.doc", {1, 18}, true, 1, 2453.0f / 9.0f},
  };
  for (const auto& c : cases) {
    TSampleCommand sample;
    sample.Options.File = Sample(c.File);
    sample.Options.Coords = c.Coords;
    sample.Options.ColRow = c.ColRow;
    sample.Options.Smooth = c.Smooth;
    const TSampleValue value = sample.Run(quiet.Context).Values.at(0);
    EXPECT_EQ(value.Value.has_value(), c.Value.has_value()) << c.File;
    if (c.Value) {
      EXPECT_NEAR(*value.Value, *c.Value, 1e-3) << c.File << " " << c.Coords[0];
    }
  }
}

TEST(CliCommands, VectorCommandsRespectHolesOnBothLayerForms) {
  TQuietContext quiet;
  for (const char* file : {"zones.vec", "zones.shp"}) {
    SCOPED_TRACE(file);
    TVectorPipCommand pip;
    const auto holders = [&](double x, double y) {
      pip.Options = {Sample(file), x, y};
      std::vector<int32_t> indexes;
      for (const TFeatureRef& feature : pip.Run(quiet.Context).Features) {
        indexes.push_back(feature.Index);
      }
      return indexes;
    };
    EXPECT_EQ(holders(502300, 6102700), std::vector<int32_t>{1});  // in the park
    EXPECT_TRUE(holders(502900, 6102100).empty());                 // in the lake cut out of it
    EXPECT_EQ(holders(503000, 6100500), std::vector<int32_t>{3});  // the farms' second part

    TVectorAreaCommand area;
    area.Options = {Sample(file)};
    const TPolygonMeasure park = area.Run(quiet.Context).Polygons.at(1);
    EXPECT_DOUBLE_EQ(park.Area, 2400000.0 - 360000.0);
    EXPECT_FLOAT_EQ(park.CentroidX, 502900.0f);
    EXPECT_NEAR(park.CentroidY, (2.4 * 6102050.0 - 0.36 * 6102100.0) / 2.04, 0.5);
  }
}

TEST(CliCommands, FailedCommandsLeaveNoOutputAndKeepTheirInputs) {
  const TTempDir inputs;
  for (const char* name : {"sample.doc", "sample.img"}) {
    fs::copy_file(Sample(name), inputs.File(name));
  }
  const std::string before = test::ReadFileBytes(inputs.File("sample.img"));
  const auto failingTiffExport = [] { SetGeoTiffLibraryPath("/nonexistent/libtvgeotifflib.so"); };
  const struct {
    std::vector<std::string> Args;  // "@" stands for the scratch folder
    std::function<void()> Setup;
  } cases[] = {
      {{"convert", Sample("elevation.doc"), "@/e.doc", "--to", "byte"}, {}},
      {{"convert", Sample("elevation.doc"), "@/no/such/folder/e.asc"}, {}},
      {{"convert", Sample("rainfall.asc"), "@/r.doc", "--res", "400"}, {}},
      {{"convert", Sample("sample.doc"), "@/s.tif"}, failingTiffExport},
      {{"rasterize", Sample("zones.shp"), "@/z.doc", "--like", Sample("elevation.doc"), "--field",
        "NAME"},
       {}},
      {{"reclass", Sample("sample.doc"), "@/r.doc", "--key-file", "@/missing.key"}, {}},
      {{"render", Sample("elevation.doc"), "@/e.png", "--palette", "@/missing.pal"}, {}},
      {{"convert", inputs.File("sample.doc"), inputs.File("sample.img"), "--overwrite"}, {}},
  };
  for (const auto& c : cases) {
    const TTempDir scratch;
    std::vector<std::string> args;
    for (const std::string& arg : c.Args) {
      args.push_back(std::regex_replace(arg, std::regex("^@"), scratch.Path().string()));
    }
    if (c.Setup) {
      c.Setup();
    }
    const test::TRun run = Zephra(args);
    SetGeoTiffLibraryPath("");
    EXPECT_EQ(run.Code, 1) << args[2];
    EXPECT_TRUE(fs::is_empty(scratch.Path()))
        << args[2] << " left " << fs::directory_iterator(scratch.Path())->path();
  }
  EXPECT_EQ(test::ReadFileBytes(inputs.File("sample.img")), before);
}

}  // namespace
}  // namespace zephra::cli
