#pragma once
// The output file under libtiff. libtiff's own file procs ignore the result of closing the file,
// where a full disk or a lost network share may only show; so the file is opened here, libtiff
// writes through procs that share its descriptor, and the close is ours to check.

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
  TOutputFile(TKey, std::string fileName, int fd, bool regular)
      : FFileName(std::move(fileName)), FFd(fd), FRegular(regular) {}

  // Creates or truncates the file; null when it can't be created.
  static std::unique_ptr<TOutputFile> Create(const std::string& fileName);
  ~TOutputFile();
  TOutputFile(const TOutputFile&) = delete;
  TOutputFile& operator=(const TOutputFile&) = delete;

  // Opens a TIFF on this file, with the GeoTIFF tags known; null on failure. The TIFF must be
  // closed before this object goes.
  TTiffPtr OpenTiff(const char* mode);

  // Closes the descriptor; false if the system reports a failure.
  bool Close() noexcept;
  // Closes the descriptor if still open, and removes the file if it is a regular one: a device
  // or a pipe named as the output is never unlinked.
  void Remove() noexcept;

 private:
  static tmsize_t ReadProc(thandle_t handle, void* buffer, tmsize_t size);
  static tmsize_t WriteProc(thandle_t handle, void* buffer, tmsize_t size);
  static toff_t SeekProc(thandle_t handle, toff_t offset, int whence);
  static int CloseProc(thandle_t handle);
  static toff_t SizeProc(thandle_t handle);
  static int MapProc(thandle_t handle, void** base, toff_t* size);
  static void UnmapProc(thandle_t handle, void* base, toff_t size);

  const std::string FFileName;
  int FFd;
  const bool FRegular;
};

}  // namespace tvgeotifflib
