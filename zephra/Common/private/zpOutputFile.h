#pragma once
// TOutputFile: the one way the library writes a file. Every write is checked, and so is the
// close. A file that replaces another is written under a temporary name in the same folder and
// takes the target's name only when all of it is on the disk, so a full disk, a file size limit,
// a killed process or a crash never leaves a target cut short: it is the old file or the new one.
//
// Temporary names are "<target>.<pid>-<n>.zptmp". A process killed while writing leaves its
// temporary behind; the next replacement of the same target removes the temporaries of processes
// that are gone.

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <ostream>
#include <span>
#include <string>
#include <string_view>

namespace zephra {

class TOutputFile {
 public:
  enum TMode {
    // Written under a temporary name; Commit() renames it over the target. Without Commit() the
    // target stays as it was and the temporary is removed. A target without any write permission
    // bit is refused, also for a user whom the system would let write it.
    omReplace,
    // Created or emptied and written in place, for formats whose output written up to a failure
    // is meant to stay.
    omInPlace,
  };

  // Raises EInOutError naming the file when it can't be created.
  explicit TOutputFile(const std::string& FileName, TMode Mode = omReplace);
  // Closes what is still open; an uncommitted temporary is removed. Never throws.
  ~TOutputFile();
  TOutputFile(const TOutputFile&) = delete;
  TOutputFile& operator=(const TOutputFile&) = delete;

  // The name the file has when it is done.
  const std::string& FileName() const { return FTarget; }

  // Writes all of Source or raises EInOutError naming the file and the system's reason.
  void Write(std::span<const std::byte> Source);
  void Write(std::string_view Text);
  // Writes until Source is out or the disk or a size limit stops it; returns the bytes written.
  // Any other failure raises EInOutError.
  size_t WriteSome(std::span<const std::byte> Source);

  // A stream over the file for writers of std::ostream; a failed write raises the EInOutError
  // of Write() through the stream's operation.
  std::ostream& Stream();

  // Hands everything to the file, flushes a replacement to the disk when SyncWrites() is on, and
  // closes it; raises EInOutError when any of that fails.
  void Close();
  // Close() if still open, then gives the file its name; raises EInOutError when the rename
  // fails, removing the temporary. Does nothing more for omInPlace.
  void Commit();

 private:
  class TStreamBuffer;

  void CreateTemporary();
  [[noreturn]] void RaiseSystemError(const std::string& action, int error) const;
  void Discard() noexcept;

  std::string FTarget;
  std::string FPath;  // where the bytes go: the temporary, or the target in place
  TMode FMode;
  int FHandle = -1;
  bool FCommitted = false;
  std::unique_ptr<TStreamBuffer> FBuffer;
  std::unique_ptr<std::ostream> FStream;
};

// Renames finished replacements in the given order, first the one whose new content is harmless
// beside the old content of the others (a data file before the header that describes it).
// Every file is closed before the first rename, so a failure until then changes no target.
void CommitInOrder(std::initializer_list<TOutputFile*> Files);

}  // namespace zephra
