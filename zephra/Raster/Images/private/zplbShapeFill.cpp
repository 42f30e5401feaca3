#include <zephra/Raster/Images/private/zplbShapeFill.h>

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include <zephra/Common/zpSpatialConst.h>

namespace zephra {

namespace {

// The run search needs column points that ascend; a reversed or non-finite extent does not give
// them, and then each point is asked on its own.
bool Ascending(const std::vector<float>& xs) {
  for (std::size_t c = 0; c < xs.size(); ++c) {
    if (std::isnan(xs[c]) || (c > 0 && xs[c] < xs[c - 1])) {
      return false;
    }
  }
  return true;
}

void HeldByPoint(const TSHPPolygon& shape, float y, std::span<const float> xs, TShapeRow& row) {
  row.Held.clear();
  for (std::size_t c = 0; c < xs.size(); ++c) {
    if (shape.PointInPoly(TFloatPoint{xs[c], y}, row.Cache) < 0) {
      continue;
    }
    if (!row.Held.empty() && row.Held.back().Last == c) {
      ++row.Held.back().Last;
    } else {
      row.Held.push_back({c, c + 1});
    }
  }
}

}  // namespace

TShapeFill::TShapeFill(TAbstractImage& image, const TPolyMap& map, const TSingleArray& values,
                       std::vector<float> xs)
    : FWriter(image),
      FValues(values),
      FCount(map.GetShapeCount()),
      FRows(static_cast<std::size_t>(FCount)),
      FXs(std::move(xs)),
      FByPoint(!Ascending(FXs)) {
  for (int32_t i = 0; i < FCount; ++i) {
    FShapes.push_back(map.GetShape(i));
  }
}

void TShapeFill::FillRow(int32_t r, float y) {
  StartRow(r, y);
  ScanRow(r);
}

// Only shapes whose box spans the row's Y can hold a point of it; the search keeps them in map
// order.
void TShapeFill::StartRow(int32_t r, float y) {
  FRow = r;
  FRowShapes.clear();
  for (int32_t i = 0; i < FCount; ++i) {
    if (y >= Shape(i).BoundsMinY && y <= Shape(i).BoundsMaxY) {
      FRowShapes.push_back(i);
      FindHeld(i, y);
    }
  }
  for (const int32_t i : FRowShapes) {
    FindFills(i);
  }
}

void TShapeFill::FindHeld(int32_t index, float y) {
  TShapeRow& row = Row(index);
  row.Row = FRow;
  if (FByPoint) {
    HeldByPoint(Shape(index), y, FXs, row);
  } else {
    Shape(index).Ring().HeldRuns(y, FXs, row.Cache, row.Held);
  }
}

// A point inside one part of a feature is filled only if no adjacent part of the same feature
// also holds it, which is how a ring inside a ring becomes a hole.
void TShapeFill::FindFills(int32_t index) {
  TShapeRow& row = Row(index);
  row.Fills = row.Held;
  if (Shape(index).PartCount != 1) {
    TakeSiblings(index, -1);
    TakeSiblings(index, +1);
  }
  row.Rewind();
}

void TShapeFill::TakeSiblings(int32_t index, int32_t direction) {
  const int32_t shapeId = Shape(index).ShapeId;
  for (int32_t i = index + direction; i >= 0 && i < FCount && Shape(i).ShapeId == shapeId;
       i += direction) {
    if (Row(i).Row == FRow) {
      SubtractRuns(Row(index).Fills, Row(i).Held, FScratch);
    }
  }
}

// A shape that the row misses fills nothing on it.
std::size_t TShapeFill::FillEnd(int32_t index, std::size_t c) {
  return Row(index).Row == FRow ? Row(index).FillEnd(c) : c;
}

// The current shape first, as the scan has it from the cell before; else the first shape in
// map order that fills the cell. A search that fills nothing leaves the last shape of the map
// current, and nothing changes until the next column that some shape fills.
void TShapeFill::ScanRow(int32_t r) {
  const std::size_t width = FXs.size();
  std::size_t c = 0;
  while (c < width) {
    std::size_t end = FillEnd(FCurrent, c);
    if (end == c) {
      end = Search(c);
    }
    if (end == c) {
      FCurrent = FCount - 1;
      c = NextFill(c + 1, width);
      continue;
    }
    Write(FCurrent, r, c, end);
    c = end;
  }
}

std::size_t TShapeFill::Search(std::size_t c) {
  for (const int32_t i : FRowShapes) {
    const std::size_t end = FillEnd(i, c);
    if (end > c) {
      FCurrent = i;
      return end;
    }
  }
  return c;
}

std::size_t TShapeFill::NextFill(std::size_t c, std::size_t width) {
  std::size_t next = width;
  for (const int32_t i : FRowShapes) {
    next = std::min(next, Row(i).NextFill(c, width));
  }
  return next;
}

void TShapeFill::Write(int32_t index, int32_t r, std::size_t from, std::size_t to) {
  FWriter.Write(
      r, static_cast<int32_t>(from), static_cast<int32_t>(to),
      FValues.empty() ? TSpatialConst::MissingValue : FValues[static_cast<std::size_t>(index)]);
}

}  // namespace zephra
