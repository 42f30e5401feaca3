#pragma once
// TShapeFill: the scan of FillShape over the rows of a grid. On each row every shape that the row
// crosses gives the columns it fills, found between its edge crossings, and the scan steps from
// run to run under the rules that a test of each cell on its own follows from cell to cell: the
// current shape first, else the first shape in map order that fills the cell.

#include <cstddef>
#include <cstdint>
#include <vector>

#include <zephra/Common/zpPolyMap.h>
#include <zephra/Raster/Images/private/zplbCellRunWriter.h>
#include <zephra/Raster/Images/private/zplbShapeFillRow.h>
#include <zephra/Raster/Images/zplbZephraAbstractImage.h>

namespace zephra {

class TShapeFill {
 public:
  // xs holds the X of each column's cell point, the same on every row. values has one entry per
  // shape of the map, or none; both must outlive the fill.
  TShapeFill(TAbstractImage& image, const TPolyMap& map, const TSingleArray& values,
             std::vector<float> xs);

  // Fills zero-based row r, whose cell points lie at y; rows come in order.
  void FillRow(int32_t r, float y);

 private:
  const TSHPPolygon& Shape(int32_t index) const {
    return *FShapes[static_cast<std::size_t>(index)];
  }
  TShapeRow& Row(int32_t index) { return FRows[static_cast<std::size_t>(index)]; }

  void StartRow(int32_t r, float y);
  void FindHeld(int32_t index, float y);
  void FindFills(int32_t index);
  void TakeSiblings(int32_t index, int32_t direction);
  std::size_t FillEnd(int32_t index, std::size_t c);
  void ScanRow(int32_t r);
  std::size_t Search(std::size_t c);
  std::size_t NextFill(std::size_t c, std::size_t width);
  void Write(int32_t index, int32_t r, std::size_t from, std::size_t to);

  TCellRunWriter FWriter;
  const TSingleArray& FValues;
  const int32_t FCount;
  std::vector<const TSHPPolygon*> FShapes;
  std::vector<TShapeRow> FRows;
  const std::vector<float> FXs;  // the column points' X, the same on every row
  const bool FByPoint;
  int32_t FRow = -1;
  int32_t FCurrent = 0;
  std::vector<int32_t> FRowShapes;
  TColumnRuns FScratch;
};

}  // namespace zephra
