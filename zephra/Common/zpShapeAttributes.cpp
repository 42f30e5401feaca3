#include <zephra/Common/zpShapeAttributes.h>

#include <shapefil.h>

#include <filesystem>
#include <memory>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

namespace {

struct TDbfCloser {
  void operator()(DBFInfo* dbf) const { DBFClose(dbf); }
};

int NumericField(DBFInfo* dbf, const std::string& dbfFile, const std::string& field) {
  const int index = DBFGetFieldIndex(dbf, field.c_str());
  if (index < 0) {
    throw EArgumentException(dbfFile + " has no field " + field);
  }
  const DBFFieldType type = DBFGetFieldInfo(dbf, index, nullptr, nullptr, nullptr);
  if (type != FTInteger && type != FTDouble) {
    throw EArgumentException("The field " + field + " of " + dbfFile + " is not numeric");
  }
  return index;
}

}  // namespace

std::vector<std::optional<double>> ReadNumericAttribute(const std::string& shpFile,
                                                        const std::string& field) {
  const std::string dbfFile = std::filesystem::path(shpFile).replace_extension(".dbf").string();
  const std::unique_ptr<DBFInfo, TDbfCloser> dbf(DBFOpen(dbfFile.c_str(), "rb"));
  if (!dbf) {
    throw EFOpenError("Cannot open " + dbfFile);
  }
  const int index = NumericField(dbf.get(), dbfFile, field);
  std::vector<std::optional<double>> values;
  for (int record = 0; record < DBFGetRecordCount(dbf.get()); ++record) {
    if (DBFIsAttributeNULL(dbf.get(), record, index)) {
      values.emplace_back();
    } else {
      values.emplace_back(DBFReadDoubleAttribute(dbf.get(), record, index));
    }
  }
  return values;
}

}  // namespace zephra
