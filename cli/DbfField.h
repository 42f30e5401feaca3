#pragma once
// A numeric attribute of a shapefile's .dbf, read with shapelib.

#include <optional>
#include <string>
#include <vector>

namespace zephra::cli {

// The values of field in every record of the .dbf beside shpFile, in record order; a NULL value
// is empty. Raises TCommandError for a missing .dbf or field, and for a field that is not
// numeric.
std::vector<std::optional<double>> ReadNumericField(const std::string& shpFile,
                                                    const std::string& field);

}  // namespace zephra::cli
