// The text form of every result: short labelled lines for people; sample prints plain columns
// (or CSV) for other programs.

#include <map>

#include "NumberText.h"
#include "Printers.h"

namespace zephra::cli {

namespace {

std::string FormText(const std::string& form) {
  static const std::map<std::string, std::string> texts = {{"doc", "binary .doc raster"},
                                                           {"ascii", "text .doc raster"},
                                                           {"grid", "ArcInfo ASCII grid"},
                                                           {"geotiff", "GeoTIFF"}};
  return texts.at(form);
}

std::string Plural(size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

void Line(std::ostream& out, const char* label, const std::string& text) {
  out << label << std::string(14 - std::string(label).size(), ' ') << text << '\n';
}

std::string Span(float low, float high) {
  return ShortText(low) + " .. " + ShortText(high);
}

void PrintStats(const TRasterStats& stats, std::ostream& out) {
  Line(out, "Statistics:",
       std::to_string(stats.Cells) + " cells, " + std::to_string(stats.NoDataCells) + " no data");
  if (stats.ValidCells() > 0) {
    // Cells are 32-bit floats, and so is the precision worth showing.
    Line(out, "  Minimum:", ShortText(static_cast<float>(stats.Min)));
    Line(out, "  Maximum:", ShortText(static_cast<float>(stats.Max)));
    Line(out, "  Mean:", ShortText(static_cast<float>(stats.Mean)));
    Line(out, "  Std. dev.:", ShortText(static_cast<float>(stats.StdDev)));
  }
}

std::string SampleValue(const std::optional<float>& value, const char* noData) {
  return value ? ShortText(*value) : noData;
}

}  // namespace

void PrintText(const TInfoResult& result, std::ostream& out) {
  const TImageHeader& header = result.Header;
  Line(out, "File:", result.File);
  Line(out, "Form:", FormText(result.Form) + ", " + CellTypeName(header.DataType) + " cells");
  Line(out, "Title:", header.FileTitle);
  Line(out,
       "Size:", std::to_string(header.Width) + " x " + std::to_string(header.Height) + " cells");
  Line(out,
       "Extent:", "x " + Span(header.Minx, header.Maxx) + ", y " + Span(header.Miny, header.Maxy));
  Line(out, "Resolution:", ShortText(header.ResolutionX) + " x " + ShortText(header.ResolutionY));
  Line(out, "Reference:",
       header.RefSystem() + ", units " + header.RefUnits + ", unit distance " +
           ShortText(header.UnitDistance));
  Line(out, "Values:", header.ValueUnits + ", " + Span(header.MinValue, header.MaxValue));
  Line(out, "No data:",
       header.Flag ? ShortText(header.FlagValue) + " (" + header.FlagDef + ")" : "none");
  Line(out, "Legend:",
       header.Categories.empty() ? "none"
                                 : Plural(header.Categories.size(), "category", "categories"));
  for (size_t i = 0; i < header.Categories.size(); ++i) {
    out << "  " << i << ": " << header.Categories[i] << '\n';
  }
  if (result.Stats) {
    PrintStats(*result.Stats, out);
  }
}

void PrintText(const TSampleResult& result, std::ostream& out) {
  if (result.Csv) {
    out << "x,y,col,row,value\n";
  }
  for (const TSampleValue& sample : result.Values) {
    if (result.Csv) {
      out << ShortText(sample.X) << ',' << ShortText(sample.Y) << ',' << sample.Col << ','
          << sample.Row << ',' << SampleValue(sample.Value, "") << '\n';
    } else {
      out << ShortText(sample.X) << ' ' << ShortText(sample.Y) << ' '
          << SampleValue(sample.Value, "nodata") << '\n';
    }
  }
}

void PrintText(const TWriteResult& result, std::ostream& out) {
  out << "wrote ";
  for (size_t i = 0; i < result.Files.size(); ++i) {
    out << (i > 0 ? ", " : "") << result.Files[i];
  }
  if (result.Format == "palette") {
    out << ": " << result.Width << " colours\n";
    return;
  }
  out << ": " << result.Width << " x " << result.Height << ' '
      << (result.Format == "png" ? "pixels" : result.CellType + " cells");
  if (result.NoData) {
    out << ", no data " << ShortText(*result.NoData);
  }
  out << '\n';
}

void PrintText(const TReclassResult& result, std::ostream& out) {
  PrintText(result.Written, out);
  if (result.Unclassified > 0) {
    out << result.Unclassified << " cells in no class kept their value\n";
  }
}

void PrintText(const THeaderResult& result, std::ostream& out) {
  for (const auto& [key, value] : result.Fields) {
    if (result.OneKey) {
      out << value << '\n';
    } else {
      out << key << ": " << value << '\n';
    }
  }
}

void PrintText(const THeaderSetResult& result, std::ostream& out) {
  for (const auto& [key, value] : result.Header.Fields) {
    out << result.Header.File << ": " << key << " = " << value << '\n';
  }
}

void PrintText(const TVectorInfoResult& result, std::ostream& out) {
  Line(out, "File:", result.File);
  Line(out, "Type:", result.LayerType);
  Line(out, "Title:", result.Title);
  Line(out, "Reference:", result.RefSystem.empty() ? "none" : result.RefSystem);
  Line(out, "Features:",
       std::to_string(result.Features) + " (" + Plural(result.Vertices, "vertex", "vertices") +
           ", " + Plural(result.Holes, "hole", "holes") + ")");
  Line(out,
       "Extent:", "x " + Span(result.MinX, result.MaxX) + ", y " + Span(result.MinY, result.MaxY));
}

void PrintText(const TVectorPipResult& result, std::ostream& out) {
  for (const TFeatureRef& feature : result.Features) {
    out << "feature " << feature.Index << " (id " << ShortText(feature.Id) << ")\n";
  }
  if (result.Features.empty()) {
    out << "no feature holds " << ShortText(result.X) << ' ' << ShortText(result.Y) << '\n';
  }
}

void PrintText(const TVectorAreaResult& result, std::ostream& out) {
  for (const TPolygonMeasure& polygon : result.Polygons) {
    out << "feature " << polygon.Feature.Index << " (id " << ShortText(polygon.Feature.Id)
        << "): area " << ShortText(polygon.Area) << ", centroid " << ShortText(polygon.CentroidX)
        << ' ' << ShortText(polygon.CentroidY) << '\n';
  }
}

void PrintText(const TPaletteResult& result, std::ostream& out) {
  for (size_t i = 0; i < result.Colors.size(); ++i) {
    const TColor color = result.Colors[i];
    char line[48];
    std::snprintf(line, sizeof line, "%3zu %3u %3u %3u #%02x%02x%02x\n", i, color & 0xffu,
                  color >> 8 & 0xffu, color >> 16 & 0xffu, color & 0xffu, color >> 8 & 0xffu,
                  color >> 16 & 0xffu);
    out << line;
  }
}

}  // namespace zephra::cli
