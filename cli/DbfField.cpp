#include "DbfField.h"

#include <shapefil.h>

#include <filesystem>
#include <memory>

#include "Errors.h"

namespace zephra::cli {

namespace {

struct TDbfCloser {
  void operator()(DBFInfo* dbf) const { DBFClose(dbf); }
};

}  // namespace

std::vector<std::optional<double>> ReadNumericField(const std::string& shpFile,
                                                    const std::string& field) {
  const std::string dbfFile = std::filesystem::path(shpFile).replace_extension(".dbf").string();
  const std::unique_ptr<DBFInfo, TDbfCloser> dbf(DBFOpen(dbfFile.c_str(), "rb"));
  if (!dbf) {
    throw TCommandError(dbfFile + ": cannot be opened, and --field reads it");
  }
  const int index = DBFGetFieldIndex(dbf.get(), field.c_str());
  if (index < 0) {
    throw TCommandError(dbfFile + ": has no field " + field);
  }
  const DBFFieldType type = DBFGetFieldInfo(dbf.get(), index, nullptr, nullptr, nullptr);
  if (type != FTInteger && type != FTDouble) {
    throw TCommandError(dbfFile + ": field " + field + " is not numeric");
  }
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

}  // namespace zephra::cli
