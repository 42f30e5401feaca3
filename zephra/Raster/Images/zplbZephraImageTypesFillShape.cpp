// FillShape: burns the polygons of a shapefile into the cells of an image, in memory only. Each
// cell stands for its north-west corner; the first polygon that holds that point fills it.
//
// The scan itself, run by run along each row, is TShapeFill's.

#include <zephra/Raster/Images/zplbZephraImageTypes.h>

#include <algorithm>
#include <utility>
#include <vector>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPolyMap.h>
#include <zephra/Common/zpSpatialConst.h>
#include <zephra/Raster/Images/private/zplbShapeFill.h>

namespace zephra {

void TAbstractImage::FillShape(const std::string& ShpFile, const TSingleArray& dataarr) {
  // Cell points come from the file's grid and WriteCR addresses the buffer's, so a thinned or
  // windowed image would get its cells from the wrong points: it is refused before any change.
  if (IsReduced()) {
    throw EInvalidOpException("FillShape needs an image opened whole, not thinned or windowed (" +
                              FFileName + ")");
  }
  FHeader->Flag = true;
  FHeader->FlagValue = TSpatialConst::FlagValue;
  FHeader->FlagDef = "Missing Data";
  FHeader->Categories.clear();
  MemOnly = true;

  TPolyMap map(ShpFile, 0);
  const int32_t count = map.GetShapeCount();
  if (count == 0) {
    return;  // a map with no shapes fills nothing
  }
  // One value per shape, or none at all; a short list would be read past its end.
  if (!dataarr.empty() && dataarr.size() < static_cast<size_t>(count)) {
    throw EArgumentException("FillShape needs one value for each of the " + std::to_string(count) +
                             " shapes of " + ShpFile + ", got " + std::to_string(dataarr.size()));
  }

  const TImageHeader& grid = *FHeader;
  const double spanX = static_cast<double>(grid.Maxx) - grid.Minx;
  const double spanY = static_cast<double>(grid.Maxy) - grid.Miny;
  std::vector<float> xs(static_cast<std::size_t>(std::max(grid.Width, 0)));
  for (std::size_t c = 0; c < xs.size(); ++c) {
    xs[c] = static_cast<float>(static_cast<double>(c) * spanX / grid.Width + grid.Minx);
  }
  TShapeFill fill(*this, map, dataarr, std::move(xs));
  for (int32_t r = 0; r < grid.Height; ++r) {
    fill.FillRow(r, static_cast<float>(grid.Maxy - r * spanY / grid.Height));
  }
}

}  // namespace zephra
