#pragma once
// Vector layers as the tool reads them: a layer of the family (a coordinate file with its .dvc
// beside it) or the polygons of a shapefile.

#include <memory>
#include <string>

#include <zephra/zephra.h>

namespace zephra::cli {

// Opens file: a .shp as a polygon layer (see below), anything else as a layer of the family.
// Raises TCommandError naming the file.
//
// A shapefile's parts become features of the family's form, an outer ring followed by its holes
// after ring separators: each clockwise ring starts a feature, and each counter-clockwise ring
// of the same record that follows is a hole of it, as shapefiles order them, turned clockwise as
// the family's rings turn. A feature's Id is its record number, so the parts of a multi-part
// record share it.
std::unique_ptr<TVector> OpenVector(const std::string& file);

}  // namespace zephra::cli
