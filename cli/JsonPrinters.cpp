// The JSON form of every result. Field names are camelCase; a value that is missing or no number
// (no data, no statistics) is null. These shapes are part of the tool's interface.

#include "Printers.h"

namespace zephra::cli {

namespace {

TJson Extent(float minx, float maxx, float miny, float maxy) {
  return TJson::TObject{{"minx", minx}, {"maxx", maxx}, {"miny", miny}, {"maxy", maxy}};
}

TJson StatsJson(const TRasterStats& stats) {
  // Cells are 32-bit floats, and so is the precision worth giving.
  return TJson::TObject{{"cells", stats.Cells},
                        {"noDataCells", stats.NoDataCells},
                        {"validCells", stats.ValidCells()},
                        {"min", static_cast<float>(stats.Min)},
                        {"max", static_cast<float>(stats.Max)},
                        {"mean", static_cast<float>(stats.Mean)},
                        {"stdDev", static_cast<float>(stats.StdDev)}};
}

TJson Strings(const std::vector<std::string>& texts) {
  return TJson::TArray(texts.begin(), texts.end());
}

TJson FeatureJson(const TFeatureRef& feature) {
  return TJson::TObject{{"index", feature.Index}, {"id", feature.Id}};
}

}  // namespace

TJson ToJson(const TInfoResult& result) {
  const TImageHeader& h = result.Header;
  return TJson::TObject{{"file", result.File},
                        {"form", result.Form},
                        {"type", result.TypeId},
                        {"cellType", CellTypeName(h.DataType)},
                        {"fileType", h.FileType == ftBinary ? "binary" : "ascii"},
                        {"title", h.FileTitle},
                        {"width", h.Width},
                        {"height", h.Height},
                        {"extent", Extent(h.Minx, h.Maxx, h.Miny, h.Maxy)},
                        {"resolution", TJson::TObject{{"x", h.ResolutionX}, {"y", h.ResolutionY}}},
                        {"refSystem", h.RefSystem()},
                        {"refUnits", h.RefUnits},
                        {"unitDistance", h.UnitDistance},
                        {"valueUnits", h.ValueUnits},
                        {"range", TJson::TObject{{"min", h.MinValue}, {"max", h.MaxValue}}},
                        {"noData", h.Flag ? TJson(h.FlagValue) : TJson()},
                        {"noDataMeaning", h.Flag ? TJson(h.FlagDef) : TJson()},
                        {"legend", Strings(h.Categories)},
                        {"stats", result.Stats ? StatsJson(*result.Stats) : TJson()}};
}

TJson ToJson(const TSampleResult& result) {
  TJson::TArray values;
  for (const TSampleValue& s : result.Values) {
    values.push_back(
        TJson::TObject{{"x", s.X}, {"y", s.Y}, {"col", s.Col}, {"row", s.Row}, {"value", s.Value}});
  }
  return TJson::TObject{{"file", result.File}, {"smooth", result.Smooth}, {"values", values}};
}

TJson ToJson(const TWriteResult& result) {
  return TJson::TObject{{"files", Strings(result.Files)}, {"format", result.Format},
                        {"width", result.Width},          {"height", result.Height},
                        {"cellType", result.CellType},    {"noData", result.NoData}};
}

TJson ToJson(const TReclassResult& result) {
  return TJson::TObject{{"written", ToJson(result.Written)}, {"unclassified", result.Unclassified}};
}

TJson ToJson(const THeaderResult& result) {
  TJson::TObject fields;
  for (const auto& [key, value] : result.Fields) {
    fields.emplace_back(key, value);
  }
  return TJson::TObject{{"file", result.File}, {"fields", fields}};
}

TJson ToJson(const THeaderSetResult& result) {
  return ToJson(result.Header);
}

TJson ToJson(const TVectorInfoResult& result) {
  return TJson::TObject{{"file", result.File},
                        {"layerType", result.LayerType},
                        {"title", result.Title},
                        {"refSystem", result.RefSystem},
                        {"features", result.Features},
                        {"vertices", result.Vertices},
                        {"holes", result.Holes},
                        {"extent", Extent(result.MinX, result.MaxX, result.MinY, result.MaxY)}};
}

TJson ToJson(const TVectorPipResult& result) {
  TJson::TArray features;
  for (const TFeatureRef& feature : result.Features) {
    features.push_back(FeatureJson(feature));
  }
  return TJson::TObject{
      {"file", result.File}, {"x", result.X}, {"y", result.Y}, {"features", features}};
}

TJson ToJson(const TVectorAreaResult& result) {
  TJson::TArray polygons;
  for (const TPolygonMeasure& p : result.Polygons) {
    polygons.push_back(TJson::TObject{{"index", p.Feature.Index},
                                      {"id", p.Feature.Id},
                                      {"area", p.Area},
                                      {"centroid", TJson::TArray{p.CentroidX, p.CentroidY}}});
  }
  return TJson::TObject{{"file", result.File}, {"polygons", polygons}};
}

TJson ToJson(const TPaletteResult& result) {
  TJson::TArray colors;
  for (size_t i = 0; i < result.Colors.size(); ++i) {
    const TColor c = result.Colors[i];
    colors.push_back(TJson::TObject{{"index", static_cast<int64_t>(i)},
                                    {"red", static_cast<int32_t>(c & 0xff)},
                                    {"green", static_cast<int32_t>(c >> 8 & 0xff)},
                                    {"blue", static_cast<int32_t>(c >> 16 & 0xff)}});
  }
  return TJson::TObject{{"file", result.File}, {"colors", colors}};
}

}  // namespace zephra::cli
