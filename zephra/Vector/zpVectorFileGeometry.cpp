// Selection, the feature at a position, point in polygon with holes, area and centroid. All of
// it is planar: no great-circle arithmetic and no wrap at 360, also in lat/long layers.

#include <zephra/Vector/zpVectorFile.h>

#include <algorithm>
#include <cmath>

#include <zephra/Common/zpPolyUtils.h>

namespace zephra {

namespace {

TFloatPoint ToFloatPoint(const TGeoPoint& point) {
  return TFloatPoint::Create(point.X(), point.Y());
}

bool RingHolds(const TFloatPoint& point, const TFloatPointArray& ring) {
  return CountsAsInside(PointInPoly(point, ring));
}

float Distance(float x, float y, const TGeoPoint& point) {
  const double dx = static_cast<double>(x) - point.X();
  const double dy = static_cast<double>(y) - point.Y();
  return static_cast<float>(std::sqrt(dx * dx + dy * dy));
}

// The outer ring runs up to the first separator at index 1 or above, without its closing
// vertex. Hole bookkeeping without such a separator has no outer ring to test: nothing is held.
bool OuterRingHolds(const TFloatPoint& point, const TPointList& points) {
  const auto separator = std::find_if(points.begin() + 1, points.end(), IsRingSeparator);
  if (separator == points.end()) {
    return false;
  }
  TFloatPointArray ring;
  std::transform(points.begin(), separator - 1, std::back_inserter(ring), ToFloatPoint);
  return RingHolds(point, ring);
}

// Every ring after the first separator is a hole. A hole ended by a separator keeps its closing
// vertex; the last one, ended by the end of the list, is tested without its last vertex. An
// empty hole (two separators in a row) leaves the shape undefined, and the polygon then holds no
// position at all.
bool AnyHoleHoldsOrIsEmpty(const TFloatPoint& point, const TPointList& points) {
  TFloatPointArray ring;
  int32_t ringCounter = 0;
  for (size_t i = 0; i < points.size(); ++i) {
    if (!IsRingSeparator(points[i]) && i + 1 < points.size()) {
      if (ringCounter > 0) {
        ring.push_back(ToFloatPoint(points[i]));
      }
      continue;
    }
    if (ringCounter > 0 && (ring.empty() || RingHolds(point, ring))) {
      return true;
    }
    ++ringCounter;
    ring.clear();
  }
  return false;
}

}  // namespace

void TVector::SelectFeature(int32_t nFeature) {
  if (nFeature < 0 || nFeature >= GetCount()) {
    throw EVectorFileError("Feature index out of range");
  }
  FFeatures[static_cast<size_t>(nFeature)]->SetSelected(true);
}

void TVector::SelectAll() {
  for (const auto& feature : FFeatures) {
    feature->SetSelected(true);
  }
}

void TVector::ClearSelect() {
  for (const auto& feature : FFeatures) {
    feature->SetSelected(false);
  }
}

int32_t TVector::FindNearest(float x, float y) const {
  if (FFeatures.empty()) {
    return -1;
  }
  float best = Distance(x, y, *GetFeature(0)->GetPoint(0));
  int32_t result = 0;
  for (int32_t index = 0; index < GetCount(); ++index) {
    if (LayerType == ltPoint) {
      for (const TGeoPoint& point : FFeatures[static_cast<size_t>(index)]->FPoints) {
        const float distance = Distance(x, y, point);
        if (distance < best) {
          best = distance;
          result = index;
        }
      }
    } else if (LayerType == ltPolygon && PointInPoly(x, y, index)) {
      result = index;
    }
  }
  return result;
}

int32_t TVector::SelectNearest(float x, float y) {
  const int32_t index = FindNearest(x, y);
  if (index != -1) {
    SelectFeature(index);
  }
  return index;
}

bool TVector::PointInPoly(float x, float y, int32_t ind) const {
  if (LayerType != ltPolygon) {
    throw EVectorFileError("Layer type must be polygon for point in polygon test");
  }
  const TFeature* feature = GetFeature(ind);
  if (feature->FPoints.empty()) {
    throw EVectorFileError("No points in feature");
  }
  const TFloatPoint point = TFloatPoint::Create(x, y);
  const TPointList& points = feature->FPoints;
  if (feature->NumOfHoles == 0) {
    TFloatPointArray ring;
    ring.reserve(points.size());
    std::transform(points.begin(), points.end(), std::back_inserter(ring), ToFloatPoint);
    return RingHolds(point, ring);
  }
  return OuterRingHolds(point, points) && !AnyHoleHoldsOrIsEmpty(point, points);
}

double TVector::CalcArea(const TFeature* Polygon) const {
  if (Polygon == nullptr) {
    throw EArgumentNullException("CalcArea needs a polygon; none was given");
  }
  const TPointList& points = Polygon->FPoints;
  if (points.size() < 3) {
    throw EImageFileError(
        "Area can not be calculated. Check file to make sure it includes a closed area.");
  }
  double sum = 0.0;
  bool inHoles = false;
  for (size_t i = 0; i + 1 < points.size(); ++i) {
    if (IsRingSeparator(points[i])) {
      inHoles = true;
      continue;
    }
    const double x1 = points[i].X(), y1 = points[i].Y();
    const double x2 = points[i + 1].X(), y2 = points[i + 1].Y();
    sum += inHoles ? x1 * y2 - x2 * y1 : x2 * y1 - x1 * y2;
  }
  return sum / 2.0;
}

TFloatPoint TVector::CalcCentroid(const TFeature* Polygon) const {
  if (Polygon == nullptr) {
    throw EArgumentNullException("CalcCentroid needs a polygon; none was given");
  }
  const TPointList& points = Polygon->FPoints;
  if (points.size() < 3) {
    throw EImageFileError(
        "The Centroid can not be calculated. make sure the file includes a closed area.");
  }
  // The sums are kept in 32-bit floats, each step computed wider and narrowed as it is stored.
  float area = 0.0f, sumX = 0.0f, sumY = 0.0f;
  bool inHoles = false;
  for (size_t i = 0; i + 1 < points.size(); ++i) {
    if (IsRingSeparator(points[i])) {
      inHoles = true;
      continue;
    }
    const double x1 = points[i].X(), y1 = points[i].Y();
    const double x2 = points[i + 1].X(), y2 = points[i + 1].Y();
    const auto a = static_cast<float>(x1 * y2 - x2 * y1);
    if (inHoles) {
      area = static_cast<float>(static_cast<double>(area) - a);
      continue;
    }
    area = static_cast<float>(static_cast<double>(area) + a);
    sumX = static_cast<float>(sumX + (x1 + x2) * a);
    sumY = static_cast<float>(sumY + (y1 + y2) * a);
  }
  if (area == 0.0f) {
    throw EImageFileError(
        "The Centroid can not be calculated: the polygon encloses no area (its signed area sums "
        "to zero).");
  }
  return TFloatPoint::Create(static_cast<float>(sumX / (3.0 * area)),
                             static_cast<float>(sumY / (3.0 * area)));
}

}  // namespace zephra
