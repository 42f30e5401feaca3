#pragma once
// The output file under libtiff. libtiff's own file procs ignore the result of closing the file,
// where a full disk or a lost network share may only show; so the file is opened here, libtiff
// writes through procs that share its descriptor, and the close is ours to check.
//
// A regular file is written as a temporary "<target>.<pid>-<n>.gtwtmp" beside the target and
// renamed over it only when it is complete and on disk, so that a failed or interrupted write
// leaves an existing file as it was. A device or a pipe named as the output is written in place.

#include <tiffio.h>

#include <memory>
#include <string>
#include <utility>

namespace tvgeotifflib {

struct TTiffCloser {
  void operator()(TIFF* tif) const noexcept;
};
using TTiffPtr = std::unique_ptr<TIFF, TTiffCloser>;

class TOutputFile {
  struct TKey {
    explicit TKey() = default;
  };

 public:
  // Only Create makes one; the key keeps the constructor usable by std::make_unique alone.
  TOutputFile(TKey, std::string target, std::string fileName, int fd)
      : FTarget(std::move(target)), FFileName(std::move(fileName)), FFd(fd) {}

  // Creates the temporary (or opens the device); null when the target can't be written.
  static std::unique_ptr<TOutputFile> Create(const std::string& fileName);
  // Removes the temporary unless the file was committed.
  ~TOutputFile();
  TOutputFile(const TOutputFile&) = delete;
  TOutputFile& operator=(const TOutputFile&) = delete;

  // Opens a TIFF on this file, with the GeoTIFF tags known; null on failure. The TIFF must be
  // closed before this object goes.
  TTiffPtr OpenTiff(const char* mode);

  // Puts the finished file in the target's place: flushed to disk, closed, renamed. False if
  // any step fails; the temporary is then still there for Remove().
  bool Commit() noexcept;
  // Closes the descriptor if still open and removes the temporary; a device or a pipe named as
  // the output is never unlinked.
  void Remove() noexcept;

 private:
  static tmsize_t ReadProc(thandle_t handle, void* buffer, tmsize_t size);
  static tmsize_t WriteProc(thandle_t handle, void* buffer, tmsize_t size);
  static toff_t SeekProc(thandle_t handle, toff_t offset, int whence);
  static int CloseProc(thandle_t handle);
  static toff_t SizeProc(thandle_t handle);
  static int MapProc(thandle_t handle, void** base, toff_t* size);
  static void UnmapProc(thandle_t handle, void* base, toff_t size);

  static std::unique_ptr<TOutputFile> Adopt(const std::string& target, const std::string& fileName,
                                            int fd);
  bool Close() noexcept;
  bool InPlace() const { return FFileName == FTarget; }

  const std::string FTarget;
  const std::string FFileName;  // the temporary, or the target when written in place
  int FFd;
  bool FCommitted = false;
};

}  // namespace tvgeotifflib
