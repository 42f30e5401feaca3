#include "Progress.h"

#include <algorithm>

namespace zephra::cli {

namespace {

constexpr int kBarWidth = 30;
// Work shorter than this many steps (cells, as the callers count) ends before a bar would help.
constexpr int64_t kLongWork = 1 << 20;

}  // namespace

void TProgress::Begin(const std::string& label, int64_t total) {
  Clear();
  FLabel = label;
  FTotal = total >= kLongWork ? total : 0;
  FShown = -1;
  Update(0);
}

void TProgress::Update(int64_t done) {
  if (!FEnabled || FTotal == 0) {
    return;
  }
  const int percent = static_cast<int>(std::clamp<int64_t>(done * 100 / FTotal, 0, 100));
  if (percent != FShown) {
    Draw(percent);
  }
}

void TProgress::Draw(int percent) {
  const int filled = percent * kBarWidth / 100;
  FErr << '\r' << FLabel << " [" << std::string(filled, '#') << std::string(kBarWidth - filled, ' ')
       << "] " << percent << '%' << std::flush;
  FShown = percent;
}

void TProgress::Clear() {
  if (FShown < 0) {
    return;
  }
  FErr << '\r' << std::string(FLabel.size() + kBarWidth + 8, ' ') << '\r' << std::flush;
  FShown = -1;
}

}  // namespace zephra::cli
