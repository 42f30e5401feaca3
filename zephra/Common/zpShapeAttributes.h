#pragma once
/// @file
/// ReadNumericAttribute: a numeric attribute of the .dbf beside a shape file, so that a host can
/// give every polygon part (TSHPPolygon::ShapeId is its record number) its feature's value, for
/// instance in FillShape.

#include <optional>
#include <string>
#include <vector>

#include <zephra/Common/zpExport.h>

namespace zephra {

/// The values of field in every record of the .dbf beside shpFile, in record order; a NULL value
/// is empty. Raises EFOpenError "Cannot open %s" when the .dbf cannot be opened, and
/// EArgumentException when it has no such field or the field is not numeric.
ZEPHRA_API std::vector<std::optional<double>> ReadNumericAttribute(const std::string& shpFile,
                                                                   const std::string& field);

}  // namespace zephra
