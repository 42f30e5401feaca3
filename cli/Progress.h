#pragma once
// A progress bar on stderr for long work (scans, exports, rendering of a million cells and more),
// drawn only when stderr is a terminal: in a pipe or a log file it would be noise.

#include <cstdint>
#include <ostream>
#include <string>

namespace zephra::cli {

class TProgress {
 public:
  // A bar that draws on err, or one that never draws.
  TProgress(std::ostream& err, bool enabled) : FErr(err), FEnabled(enabled) {}
  TProgress(const TProgress&) = delete;
  TProgress& operator=(const TProgress&) = delete;
  ~TProgress() { Clear(); }

  // A new task of total steps under label.
  void Begin(const std::string& label, int64_t total);
  // done of the task's steps are finished; redraws only when the shown percentage moves.
  void Update(int64_t done);
  // Wipes the bar from the line, so that the next text starts clean.
  void Clear();

 private:
  void Draw(int percent);

  std::ostream& FErr;
  bool FEnabled;
  std::string FLabel;
  int64_t FTotal = 0;  // 0: no bar for this task
  int FShown = -1;     // the percentage on screen; -1 when nothing is
};

}  // namespace zephra::cli
