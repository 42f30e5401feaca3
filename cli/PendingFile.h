#pragma once
// A file the tool writes that takes its name only when it is complete. It is written under a
// temporary name in the target's folder and renamed over the target by Commit(); a file never
// committed (a failure, an exception) is removed, so a failed command leaves no output.

#include <filesystem>

namespace zephra::cli {

class TPendingFile {
 public:
  explicit TPendingFile(std::filesystem::path target);
  TPendingFile(const TPendingFile&) = delete;
  TPendingFile& operator=(const TPendingFile&) = delete;
  // Removes the temporary file unless Commit() ran.
  ~TPendingFile();

  // Where the writer writes: "<target>.<pid>.zptmp", beside the target.
  const std::filesystem::path& Path() const { return FTemporary; }
  // Renames the finished file over the target. Raises TCommandError when the file is missing
  // (the writer failed without saying so) or the rename fails.
  void Commit();

 private:
  std::filesystem::path FTarget;
  std::filesystem::path FTemporary;
  bool FCommitted = false;
};

}  // namespace zephra::cli
