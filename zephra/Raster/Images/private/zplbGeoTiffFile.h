#pragma once
// A TIFF opened for reading, with its own message handlers: libtiff's and libgeotiff's warnings
// and errors go to the library's debug channel, never to the host's stderr, and the last error
// is kept so that a failure can say what libtiff found wrong.

#include <tiffio.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zephra {

class TTiffFile {
 public:
  // Opens fileName with the GeoTIFF tags known to libtiff. Raises EImageFileError "%s does not
  // exist." for a missing file, and EImageFileError naming the file with libtiff's reason for
  // one that libtiff refuses.
  explicit TTiffFile(const std::string& fileName);
  ~TTiffFile();
  TTiffFile(const TTiffFile&) = delete;
  TTiffFile& operator=(const TTiffFile&) = delete;

  TIFF* Handle() const { return FTiff.get(); }
  const std::string& FileName() const { return FFileName; }
  // Always raises EImageFileError "<what> of <file> ...", with libtiff's last error if it had one.
  [[noreturn]] void Raise(const std::string& what) const;

  // The values of a tag of doubles; empty when the file lacks it.
  std::vector<double> Doubles(uint32_t tag) const;
  // The text of an ASCII tag, known to libtiff or not; nullopt when the file lacks it.
  std::optional<std::string> Text(uint32_t tag) const;

  // Where the handlers put the last error; public for the handlers' sake only.
  struct TMessages {
    std::string FileName;
    std::string LastError;
  };

 private:
  struct TClose {
    void operator()(TIFF* tif) const noexcept { TIFFClose(tif); }
  };

  std::string FFileName;
  // On the heap so that the handlers' pointer to it stays valid whatever happens to this object.
  std::unique_ptr<TMessages> FMessages;
  std::unique_ptr<TIFF, TClose> FTiff;
};

}  // namespace zephra
