#include <zephra/Vector/zpVectorFileHeader.h>

#include <array>
#include <fstream>
#include <variant>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpNumberText.h>
#include <zephra/Common/private/zpTextReader.h>
#include <zephra/Common/private/zpTextWriter.h>
#include <zephra/Common/private/zpOutputFile.h>
#include <zephra/Raster/Header/zpHeaderUtils.h>

namespace zephra {

// The labels written are padded to one width; the keys read are the bare names, compared after
// the splitter has trimmed them.
struct TVectorHeader::TField {
  const char* Label;
  const char* Key;
  std::variant<std::string TVectorHeader::*, float TVectorHeader::*> Member;
};

std::span<const TVectorHeader::TField> TVectorHeader::Fields() {
  static const std::array<TField, 13> kFields{{
      {"file title  :", "file title", &TVectorHeader::FTitle},
      {"id type     :", "id type", &TVectorHeader::FIDType},
      {"file type   :", "file type", &TVectorHeader::FFileType},
      {"object type :", "object type", &TVectorHeader::FObjType},
      {"ref. system :", "ref. system", &TVectorHeader::FRefSystem},
      {"ref. units  :", "ref. units", &TVectorHeader::FRefUnits},
      {"unit dist.  :", "unit dist.", &TVectorHeader::FUnitDist},
      {"min. X      :", "min. X", &TVectorHeader::FMinX},
      {"max. X      :", "max. X", &TVectorHeader::FMaxX},
      {"min. Y      :", "min. Y", &TVectorHeader::FMinY},
      {"max. Y      :", "max. Y", &TVectorHeader::FMaxY},
      {"pos'n error :", "pos'n error", &TVectorHeader::FPosNError},
      {"resolution  :", "resolution", &TVectorHeader::FResolution},
  }};
  return kFields;
}

void TVectorHeader::Reset() {
  *this = TVectorHeader();
}

void TVectorHeader::LoadFromFile(const std::string& FileName) {
  std::ifstream stream(FileName, std::ios::binary);
  if (!stream) {
    throw EFOpenError("Cannot open file \"" + FileName + "\"");
  }
  LoadFromStream(stream);
}

void TVectorHeader::LoadFromStream(std::istream& Stream) {
  Reset();
  TTextReader reader(Stream);
  const TNumberFormat format;
  std::string line;
  std::string key;
  std::string value;
  while (reader.ReadLine(line)) {
    ZephraHeaderProcessLine(line, key, value);
    for (const TField& field : Fields()) {
      if (!SameText(key, field.Key)) {
        continue;
      }
      if (const auto* text = std::get_if<std::string TVectorHeader::*>(&field.Member)) {
        this->*(*text) = value;
      } else {
        this->*std::get<float TVectorHeader::*>(field.Member) = format.ParseFloat(value);
      }
      break;
    }
  }
}

void TVectorHeader::SaveToFile(const std::string& FileName) const {
  TOutputFile file(FileName, TOutputFile::omInPlace);
  SaveToStream(file.Stream());
  file.Commit();
}

void TVectorHeader::SaveToStream(std::ostream& Stream) const {
  TTextWriter writer(Stream);
  const TNumberFormat format;
  for (const TField& field : Fields()) {
    std::string line = field.Label;
    line += ' ';
    if (const auto* text = std::get_if<std::string TVectorHeader::*>(&field.Member)) {
      line += this->*(*text);
    } else {
      line += format.Fixed(this->*std::get<float TVectorHeader::*>(field.Member), 4);
    }
    writer.WriteLine(line);
  }
  writer.Flush();
}

bool TVectorHeader::GetIsLatLon() const {
  return SameText(FRefSystem, "latlong") || SameText(FRefSystem, "latlon") ||
         SameText(FRefSystem, "lat/long");
}

TLayerType TVectorHeader::GetLayerType() const {
  if (SameText(FObjType, "POINT")) {
    return ltPoint;
  }
  if (SameText(FObjType, "LINE")) {
    return ltLine;
  }
  return SameText(FObjType, "POLYGON") ? ltPolygon : ltNull;
}

void TVectorHeader::SetLayerType(TLayerType Value) {
  switch (Value) {
    case ltPoint:
      FObjType = "POINT";
      break;
    case ltLine:
      FObjType = "LINE";
      break;
    case ltPolygon:
      FObjType = "POLYGON";
      break;
    default:
      FObjType = "NULL";
      break;
  }
}

}  // namespace zephra
