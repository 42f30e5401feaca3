#include "TextRows.h"

#include <algorithm>
#include <future>
#include <stdexcept>
#include <thread>
#include <vector>

#include "NumberText.h"
#include "Progress.h"

namespace zephra::cli {

namespace {

// Enough rows that a lane's start costs nothing against its text, few enough that a batch of
// every lane's block stays a few megabytes.
constexpr int64_t kBlockCells = int64_t{1} << 16;

std::string FormatBlock(int32_t first, int32_t end, const TRowFormatter& format) {
  std::string text;
  for (int32_t r = first; r < end; ++r) {
    format(r, text);
  }
  return text;
}

}  // namespace

void WriteTextRows(std::ostream& out, int32_t rows, int64_t cellsPerRow, TProgress& progress,
                   const TRowFormatter& format) {
  const auto lanes = static_cast<int32_t>(std::max(1u, std::thread::hardware_concurrency()));
  const auto blockRows = static_cast<int32_t>(
      std::clamp<int64_t>(kBlockCells / std::max<int64_t>(cellsPerRow, 1), 1, std::max(rows, 1)));
  // The next batch formats while the one before it is written.
  std::vector<std::future<std::string>> pending;
  int32_t next = 0;
  const auto launch = [&] {
    for (int32_t lane = 0; lane < lanes && next < rows; ++lane, next += blockRows) {
      const int32_t end = std::min(rows, next + blockRows);
      pending.push_back(std::async(std::launch::async, FormatBlock, next, end, std::cref(format)));
    }
  };
  launch();
  for (size_t written = 0; written < pending.size(); ++written) {
    if (written % static_cast<size_t>(lanes) == 0) {
      launch();
    }
    const std::string text = pending[written].get();
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    const auto doneRows = std::min<int64_t>(rows, (static_cast<int64_t>(written) + 1) * blockRows);
    progress.Update(doneRows * cellsPerRow);
  }
  if (!out) {
    throw std::runtime_error("cannot be written");
  }
}

char* WriteCellText(char* at, float value, const TNoData& noData, std::string_view noDataText) {
  return noData.Holds(value) ? std::copy(noDataText.begin(), noDataText.end(), at)
                             : WriteShortText(at, value);
}

void CloseChecked(std::ofstream& out) {
  out.close();
  if (!out) {
    throw std::runtime_error("cannot be written");
  }
}

}  // namespace zephra::cli
