// Reading the polygon parts of a shape file through shapelib.

#include <zephra/Common/zpPolyMap.h>

#include <cfloat>
#include <cmath>
#include <filesystem>
#include <memory>
#include <system_error>

#include <shapefil.h>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

namespace {

struct TShapeFileCloser {
  void operator()(SHPInfo* handle) const { SHPClose(handle); }
};
using TShapeFile = std::unique_ptr<SHPInfo, TShapeFileCloser>;

struct TShapeObjectDeleter {
  void operator()(SHPObject* object) const { SHPDestroyObject(object); }
};
using TShapeObject = std::unique_ptr<SHPObject, TShapeObjectDeleter>;

// shapelib would print its complaints to stderr; the exceptions below say what failed instead.
void IgnoreShapelibMessage(const char*) {}

std::string Quoted(const std::string& fileName) {
  return "\"" + fileName + "\"";
}

std::string RecordText(const std::string& fileName, int record) {
  return "Shape file " + Quoted(fileName) + ": record " + std::to_string(record);
}

struct TShapeFileInfo {
  int Records = 0;
  int ShapeType = SHPT_NULL;
};

TShapeFileInfo InfoOf(SHPInfo* file) {
  TShapeFileInfo info;
  double minBounds[4] = {};
  double maxBounds[4] = {};
  SHPGetInfo(file, &info.Records, &info.ShapeType, minBounds, maxBounds);
  return info;
}

bool IsPolygonType(int shapeType) {
  return shapeType == SHPT_POLYGON || shapeType == SHPT_POLYGONZ || shapeType == SHPT_POLYGONM;
}

// shapelib replaces the extension of the name it is given, trying lower and then upper case.
bool CompanionExists(const std::string& ShpFile, const char* lower, const char* upper) {
  std::error_code ignored;
  const std::filesystem::path name(ShpFile);
  return std::filesystem::exists(std::filesystem::path(name).replace_extension(lower), ignored) ||
         std::filesystem::exists(std::filesystem::path(name).replace_extension(upper), ignored);
}

TShapeFile OpenPolygonFile(const std::string& ShpFile) {
  if (!CompanionExists(ShpFile, ".shp", ".SHP")) {
    throw EFOpenError("Shape file " + Quoted(ShpFile) + " not found");
  }
  if (!CompanionExists(ShpFile, ".shx", ".SHX")) {
    throw EFOpenError("Shape file " + Quoted(ShpFile) + " has no .shx index file beside it");
  }
  SAHooks hooks;
  SASetupDefaultHooks(&hooks);
  hooks.Error = IgnoreShapelibMessage;
  TShapeFile file(SHPOpenLL(ShpFile.c_str(), "rb", &hooks));
  if (!file) {
    throw EInOutError("Shape file " + Quoted(ShpFile) + " cannot be read: it is damaged");
  }
  const int shapeType = InfoOf(file.get()).ShapeType;
  if (!IsPolygonType(shapeType)) {
    throw Exception("Shape file " + Quoted(ShpFile) + " holds shapes of type " +
                    SHPTypeName(shapeType) + ", not polygons");
  }
  return file;
}

float Narrow(double coordinate, const std::string& ShpFile, int record) {
  if (!(std::fabs(coordinate) <= FLT_MAX)) {
    throw EInOutError(RecordText(ShpFile, record) + " has a coordinate (" +
                      std::to_string(coordinate) + ") that is no finite 32-bit float");
  }
  return static_cast<float>(coordinate);
}

// A record without part table is read as one part.
void AddParts(const SHPObject& object, const std::string& ShpFile,
              std::vector<TSHPPolygon>& shapes) {
  const int record = object.nShapeId;
  const int partCount = std::max(object.nParts, 1);
  for (int part = 0; part < partCount; ++part) {
    const int start = object.nParts > 0 ? object.panPartStart[part] : 0;
    const int end = part + 1 < object.nParts ? object.panPartStart[part + 1] : object.nVertices;
    if (start < 0 || start > end || end > object.nVertices) {
      throw EInOutError(RecordText(ShpFile, record) + " is damaged: part " + std::to_string(part) +
                        " lies outside its vertices");
    }
    TFloatPointArray vertices;
    vertices.reserve(static_cast<std::size_t>(end - start));
    for (int i = start; i < end; ++i) {
      vertices.push_back(TFloatPoint::Create(Narrow(object.padfX[i], ShpFile, record),
                                             Narrow(object.padfY[i], ShpFile, record)));
    }
    shapes.emplace_back(record, partCount, std::move(vertices));
  }
}

void ReadRecord(SHPInfo* file, int record, const std::string& ShpFile,
                std::vector<TSHPPolygon>& shapes) {
  const TShapeObject object(SHPReadObject(file, record));
  if (!object) {
    throw EInOutError(RecordText(ShpFile, record) + " cannot be read: the file is damaged");
  }
  if (object->nSHPType == SHPT_NULL || object->nVertices == 0) {
    return;
  }
  if (!IsPolygonType(object->nSHPType)) {
    throw EInOutError(RecordText(ShpFile, record) + " is damaged: it holds a shape of type " +
                      SHPTypeName(object->nSHPType) + " in a polygon file");
  }
  object->nShapeId = record;
  AddParts(*object, ShpFile, shapes);
}

}  // namespace

TPolyMap::TPolyMap(const std::string& ShpFile, TColor color) : FFileName(ShpFile), FColor(color) {
  const TShapeFile file = OpenPolygonFile(ShpFile);
  const int records = InfoOf(file.get()).Records;
  for (int record = 0; record < records; ++record) {
    ReadRecord(file.get(), record, ShpFile, FShapes);
  }
}

}  // namespace zephra
