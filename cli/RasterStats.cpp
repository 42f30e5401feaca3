#include "RasterStats.h"

#include <algorithm>
#include <cmath>
#include <future>
#include <limits>
#include <thread>
#include <vector>

#include "CellBlocks.h"
#include "Progress.h"

namespace zephra::cli {

namespace {

// Count, mean and sum of squared deviations of a set of cells. Two sets merge exactly (Chan's
// pairwise update), which keeps the deviations accurate over hundreds of millions of cells where
// a plain sum of squares would cancel, and lets blocks be measured on several cores.
struct TMoments {
  int64_t Count = 0;
  int64_t NoData = 0;
  double Mean = 0.0;
  double Squares = 0.0;
  double Min = 0.0;
  double Max = 0.0;

  void Merge(const TMoments& other) {
    NoData += other.NoData;
    if (other.Count == 0) {
      return;
    }
    if (Count == 0) {
      *this = TMoments{other.Count, NoData, other.Mean, other.Squares, other.Min, other.Max};
      return;
    }
    const double total = static_cast<double>(Count + other.Count);
    const double delta = other.Mean - Mean;
    Mean += delta * static_cast<double>(other.Count) / total;
    Squares += other.Squares + delta * delta * static_cast<double>(Count) *
                                   static_cast<double>(other.Count) / total;
    Count += other.Count;
    Min = std::min(Min, other.Min);
    Max = std::max(Max, other.Max);
  }
};

// One block that fits in the cache: the sum first, then the deviations from the block's mean.
TMoments MomentsOf(std::span<const float> cells, const TNoData& noData) {
  TMoments block;
  double sum = 0.0;
  float lo = std::numeric_limits<float>::infinity(), hi = -lo;
  for (const float value : cells) {
    if (noData.Holds(value)) {
      ++block.NoData;
      continue;
    }
    ++block.Count;
    sum += value;
    lo = std::min(lo, value);
    hi = std::max(hi, value);
  }
  if (block.Count == 0) {
    return block;
  }
  block.Mean = sum / static_cast<double>(block.Count);
  block.Min = lo;
  block.Max = hi;
  for (const float value : cells) {
    if (!noData.Holds(value)) {
      const double deviation = value - block.Mean;
      block.Squares += deviation * deviation;
    }
  }
  return block;
}

constexpr int64_t kBlockCells = 1 << 16;

// Cells first .. end - 1, block by block.
TMoments MomentsOf(const TAbstractImage& image, int64_t first, int64_t end, const TNoData& noData) {
  TMoments part;
  std::vector<float> scratch;
  for (int64_t at = first; at < end; at += kBlockCells) {
    const int64_t count = std::min(kBlockCells, end - at);
    part.Merge(MomentsOf(CellBlock(image, at, count, scratch), noData));
  }
  return part;
}

// A batch of cells split among the cores; the bar moves between batches.
TMoments MomentsOfBatch(const TAbstractImage& image, int64_t first, int64_t end,
                        const TNoData& noData) {
  const int64_t lanes = std::max(1u, std::thread::hardware_concurrency());
  const int64_t share = (end - first + lanes - 1) / lanes;
  std::vector<std::future<TMoments>> parts;
  for (int64_t from = first + share; from < end; from += share) {
    parts.push_back(std::async(std::launch::async, [&image, &noData, from, end, share] {
      return MomentsOf(image, from, std::min(end, from + share), noData);
    }));
  }
  TMoments batch = MomentsOf(image, first, std::min(end, first + share), noData);
  for (auto& part : parts) {
    batch.Merge(part.get());
  }
  return batch;
}

}  // namespace

TRasterStats ScanStats(const TAbstractImage& image, const TNoData& noData, TProgress& progress) {
  constexpr int64_t kBatchCells = int64_t{1} << 22;
  TRasterStats stats;
  stats.Cells = image.NumRecs;
  progress.Begin("scanning", image.NumRecs);
  TMoments all;
  for (int64_t at = 0; at < stats.Cells; at += kBatchCells) {
    all.Merge(MomentsOfBatch(image, at, std::min(stats.Cells, at + kBatchCells), noData));
    progress.Update(at);
  }
  progress.Clear();
  stats.NoDataCells = all.NoData;
  if (all.Count > 0) {
    stats.Min = all.Min;
    stats.Max = all.Max;
    stats.Mean = all.Mean;
    stats.StdDev = std::sqrt(all.Squares / static_cast<double>(all.Count));
  }
  return stats;
}

}  // namespace zephra::cli
