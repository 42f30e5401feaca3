#include "SampleCommand.h"

#include <fstream>
#include <sstream>
#include <utility>

#include <CLI/CLI.hpp>

#include "Errors.h"
#include "NumberText.h"
#include "RasterInput.h"

namespace zephra::cli {

namespace {

using TPoints = std::vector<std::pair<double, double>>;

// "X Y" per line, blanks, tabs or a comma between; blank lines and # comments are skipped.
TPoints ReadPoints(const std::string& file) {
  std::ifstream in(file);
  if (!in) {
    throw TCommandError(file + ": cannot be opened");
  }
  TPoints points;
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    line = line.substr(0, line.find('#'));
    for (char& c : line) {
      c = c == ',' ? ' ' : c;
    }
    std::istringstream fields(line);
    std::string x, y, rest;
    if (!(fields >> x)) {
      continue;
    }
    std::pair<double, double> point;
    if (!(fields >> y) || (fields >> rest) || !ParseNumber(x, point.first) ||
        !ParseNumber(y, point.second)) {
      throw TCommandError(file + ":" + std::to_string(number) + ": expected two numbers, X Y");
    }
    points.push_back(point);
  }
  return points;
}

TSampleValue SampleAt(const TAbstractImage& image, const TNoData& noData, double x, double y,
                      bool colRow, std::optional<int32_t> smooth) {
  TSampleValue sample{x, y, 0, 0, {}};
  float value = 0.0f;
  if (colRow) {
    sample.Col = static_cast<int32_t>(x);
    sample.Row = static_cast<int32_t>(y);
    const TImageHeader& header = *image.Header();
    if (sample.Col != x || sample.Row != y || sample.Col < 1 || sample.Row < 1 ||
        sample.Col > header.Width || sample.Row > header.Height) {
      throw std::runtime_error("no cell at column " + ShortText(x) + ", row " + ShortText(y) +
                               " of " + std::to_string(header.Width) + " x " +
                               std::to_string(header.Height));
    }
    float cornerX = 0.0f, cornerY = 0.0f;
    image.CRtoXY(sample.Col, sample.Row, cornerX, cornerY);
    sample.X = cornerX;
    sample.Y = cornerY;
    // The smoothed read takes the cell counted from 0 (at a level above 0), as XYtoCR gives it.
    value = smooth > 0 ? image.ReadCRWithSmoothing(sample.Col - 1, sample.Row - 1, *smooth, nullptr)
                       : image.ReadCR(sample.Col, sample.Row);
  } else {
    const auto fx = static_cast<float>(x), fy = static_cast<float>(y);
    image.XYtoCR(fx, fy, sample.Col, sample.Row);
    ++sample.Col;
    ++sample.Row;
    value = smooth ? image.ReadXYWithSmoothing(fx, fy, *smooth, nullptr)
                   : image.ReadCR(sample.Col, sample.Row);
  }
  // A smoothed read with no valid cell in its window gives the library's missing value.
  const bool missing = smooth && value == TSpatialConst::MissingValue;
  if (!missing && !noData.Holds(value)) {
    sample.Value = value;
  }
  return sample;
}

}  // namespace

void TSampleCommand::Declare(CLI::App& app) {
  app.add_option("FILE", Options.File, "The raster")->required();
  app.add_option("COORDS", Options.Coords, "Pairs of X Y (map units), or column row with --cr");
  app.add_option("--points", Options.PointsFile, "A file of X Y lines to sample as well");
  app.add_flag("--cr", Options.ColRow, "The pairs are 1-based columns and rows");
  app.add_option_function<int32_t>(
         "--smooth", [this](const int32_t& level) { Options.Smooth = level; },
         "The mean of the valid cells within LEVEL cells around each point, wrapping east-west")
      ->check(CLI::NonNegativeNumber);
  app.add_flag("--csv", Options.Csv, "Print comma-separated values with a header line");
}

TSampleResult TSampleCommand::Run(const TContext&) const {
  if (Options.Coords.size() % 2 != 0) {
    throw TUsageError("sample takes pairs of coordinates: X Y [X Y ...]");
  }
  TPoints points;
  for (size_t i = 0; i < Options.Coords.size(); i += 2) {
    points.emplace_back(Options.Coords[i], Options.Coords[i + 1]);
  }
  if (!Options.PointsFile.empty()) {
    const TPoints more = ReadPoints(Options.PointsFile);
    points.insert(points.end(), more.begin(), more.end());
  }
  if (points.empty()) {
    throw TUsageError("sample needs a point: X Y, or --points FILE");
  }
  const auto image = OpenRaster(Options.File);
  const TNoData noData = NoDataOf(*image->Header());
  TSampleResult result{Options.File, Options.Smooth, Options.Csv, {}};
  for (const auto& point : points) {
    const double x = point.first, y = point.second;  // lambdas may not capture bindings
    const std::string where = "point " + ShortText(x) + " " + ShortText(y);
    result.Values.push_back(OnFile(Options.File + ": " + where, [&] {
      return SampleAt(*image, noData, x, y, Options.ColRow, Options.Smooth);
    }));
  }
  return result;
}

}  // namespace zephra::cli
