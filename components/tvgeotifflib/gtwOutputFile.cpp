#include "gtwOutputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <xtiffio.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <mutex>
#include <string>

#include "gtwMessages.h"

namespace tvgeotifflib {

namespace {

int Descriptor(thandle_t handle) {
  return *static_cast<const int*>(handle);
}

// read() and write() may move fewer bytes than asked, or be interrupted; libtiff expects all.
template <typename TTransfer>
tmsize_t TransferAll(TTransfer transfer, tmsize_t size) {
  tmsize_t done = 0;
  while (done < size) {
    const ssize_t moved = transfer(done, static_cast<size_t>(size - done));
    if (moved < 0 && errno == EINTR) {
      continue;
    }
    if (moved < 0) {
      return -1;
    }
    if (moved == 0) {
      break;
    }
    done += moved;
  }
  return done;
}

}  // namespace

void TTiffCloser::operator()(TIFF* tif) const noexcept {
  XTIFFClose(tif);
}

std::unique_ptr<TOutputFile> TOutputFile::Create(const std::string& fileName) {
  struct stat target {};
  const bool exists = ::stat(fileName.c_str(), &target) == 0;
  if (exists && !S_ISREG(target.st_mode)) {
    const int fd = ::open(fileName.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC);
    return fd < 0 ? nullptr : Adopt(fileName, fileName, fd);
  }
  // The target must be writable as itself, not only through its folder; the new file keeps its
  // permissions.
  if (exists && ::access(fileName.c_str(), W_OK) != 0) {
    return nullptr;
  }
  static std::atomic<unsigned> counter{0};
  const std::string temporary =
      fileName + "." + std::to_string(::getpid()) + "-" + std::to_string(counter++) + ".gtwtmp";
  const mode_t mode = exists ? (target.st_mode & 07777) : 0666;
  const int fd = ::open(temporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
  if (fd < 0) {
    return nullptr;
  }
  if (exists) {
    ::fchmod(fd, mode);  // past the umask, as the target had it
  }
  return Adopt(fileName, temporary, fd);
}

std::unique_ptr<TOutputFile> TOutputFile::Adopt(const std::string& target,
                                                const std::string& fileName, int fd) {
  try {
    return std::make_unique<TOutputFile>(TKey{}, target, fileName, fd);
  } catch (...) {
    ::close(fd);
    if (fileName != target) {
      ::unlink(fileName.c_str());
    }
    throw;
  }
}

TOutputFile::~TOutputFile() {
  if (!FCommitted) {
    Remove();
  }
}

TTiffPtr TOutputFile::OpenTiff(const char* mode) {
  if (FFd < 0) {
    return nullptr;
  }
  // libgeotiff installs its tag extender at its first open behind an unguarded flag; two
  // threads' first exports racing there could chain the extender to itself. So it is installed
  // once here, and the TIFF is opened with libtiff's own call (all XTIFFClientOpen adds to it
  // is that installation), which takes the options that keep its messages off stderr.
  static std::once_flag geoTagsInstalled;
  std::call_once(geoTagsInstalled, XTIFFInitialize);
  const TTiffOptionsPtr options = MessageOptions();
  if (!options) {
    return nullptr;
  }
  // libtiff hands the handle back to the procs; it points at the descriptor, which lives as
  // long as this object.
  return TTiffPtr(TIFFClientOpenExt(FFileName.c_str(), mode, &FFd, ReadProc, WriteProc, SeekProc,
                                    CloseProc, SizeProc, MapProc, UnmapProc, options.get()));
}

bool TOutputFile::Close() noexcept {
  if (FFd < 0) {
    return true;
  }
  const int fd = FFd;
  FFd = -1;
  // After a failed close() the descriptor is gone on Linux whatever errno says; retrying could
  // close a descriptor another thread has just been given.
  return ::close(fd) == 0;
}

bool TOutputFile::Commit() noexcept {
  FCommitted = InPlace() ? Close()
                         : FFd >= 0 && ::fsync(FFd) == 0 && Close() &&
                               ::rename(FFileName.c_str(), FTarget.c_str()) == 0;
  return FCommitted;
}

void TOutputFile::Remove() noexcept {
  Close();
  if (!InPlace()) {
    ::unlink(FFileName.c_str());
  }
}

tmsize_t TOutputFile::ReadProc(thandle_t handle, void* buffer, tmsize_t size) {
  auto* bytes = static_cast<char*>(buffer);
  const int fd = Descriptor(handle);
  return TransferAll([&](tmsize_t at, size_t n) { return ::read(fd, bytes + at, n); }, size);
}

tmsize_t TOutputFile::WriteProc(thandle_t handle, void* buffer, tmsize_t size) {
  const auto* bytes = static_cast<const char*>(buffer);
  const int fd = Descriptor(handle);
  return TransferAll([&](tmsize_t at, size_t n) { return ::write(fd, bytes + at, n); }, size);
}

toff_t TOutputFile::SeekProc(thandle_t handle, toff_t offset, int whence) {
  return static_cast<toff_t>(::lseek(Descriptor(handle), static_cast<off_t>(offset), whence));
}

int TOutputFile::CloseProc(thandle_t) {
  return 0;
}

toff_t TOutputFile::SizeProc(thandle_t handle) {
  struct stat info {};
  if (::fstat(Descriptor(handle), &info) != 0) {
    return 0;
  }
  return static_cast<toff_t>(info.st_size);
}

int TOutputFile::MapProc(thandle_t, void**, toff_t*) {
  return 0;
}

void TOutputFile::UnmapProc(thandle_t, void*, toff_t) {}

}  // namespace tvgeotifflib
