#include <zephra/Export/private/zplRowTexts.h>

#include <algorithm>
#include <future>
#include <thread>
#include <vector>

#include <zephra/Raster/Images/private/zplbZephraRowRead.h>

namespace zephra {

namespace {

// The text of rows First .. End - 1.
struct TRowBlock {
  int32_t First = 0;
  int32_t End = 0;
  std::string Text;
};

// Enough cells that starting a block costs nothing against formatting it, few enough that the
// blocks in flight stay a few megabytes.
constexpr int64_t kBlockCells = int64_t{1} << 16;

TRowBlock FormatBlock(const TAbstractImage& Source, int32_t first, int32_t end,
                      const TRowTextFormat& format) {
  TRowBlock block{first, end, {}};
  std::vector<float> cells(static_cast<size_t>(std::max(Source.Header()->Width, 0)));
  for (int32_t r = first; r < end; ++r) {
    ReadRowSingles(Source, r, cells, [&](int32_t c) { return Source.ReadCR(c + 1, r + 1); });
    format(r, cells, block.Text);
  }
  return block;
}

bool ReadsTypedRows(const TAbstractImage& Source) {
  std::vector<float> row(static_cast<size_t>(std::max(Source.Header()->Width, 0)));
  return Source.Header()->Height > 0 && ReadTypedRow(Source, 0, row);
}

}  // namespace

void WriteRowTexts(TTextOutputFile& file, const TAbstractImage& Source,
                   const TRowTextFormat& format, const std::function<void(int32_t r)>& rowWritten) {
  const int32_t rows = std::max(Source.Header()->Height, 0);
  const int64_t width = std::max(Source.Header()->Width, 1);
  const auto blockRows = static_cast<int32_t>(std::clamp<int64_t>(kBlockCells / width, 1, 1 << 20));
  // The calling thread writes while the other cores format.
  const unsigned cores = std::thread::hardware_concurrency();
  const bool parallel = cores > 1 && ReadsTypedRows(Source);
  const unsigned lanes = parallel ? cores - 1 : 1;
  const auto launch = parallel ? std::launch::async : std::launch::deferred;

  // Two rounds of blocks in flight: one being written while the next is formatted.
  std::vector<std::future<TRowBlock>> blocks;
  int32_t next = 0;
  const auto start = [&] {
    for (unsigned lane = 0; lane < lanes && next < rows; ++lane) {
      const int32_t end = std::min(rows, next + blockRows);
      blocks.push_back(
          std::async(launch, FormatBlock, std::cref(Source), next, end, std::cref(format)));
      next = end;
    }
  };
  start();
  for (size_t written = 0; written < blocks.size(); ++written) {
    if (written % lanes == 0) {
      start();
    }
    const TRowBlock block = blocks[written].get();
    file.Write(block.Text);
    for (int32_t r = block.First; r < block.End; ++r) {
      rowWritten(r);
    }
  }
}

}  // namespace zephra
