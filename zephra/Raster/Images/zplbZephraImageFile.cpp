#include <zephra/Raster/Images/zplbZephraImageFile.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <zephra/Common/zpExceptions.h>

namespace zephra {

namespace {

// Linux moves at most this much in one read or write call; asking for no more keeps every call
// well defined on any kernel.
constexpr size_t kMaxTransfer = 0x7ffff000;

std::string SystemMessage(int error) {
  return std::strerror(error);
}

}  // namespace

TImageFile::TImageFile(const std::string& FileName, TMode Mode) : FFileName(FileName) {
  const int flags = Mode == fmRead ? O_RDONLY : O_WRONLY | O_CREAT | O_TRUNC;
  do {
    FHandle = ::open(FileName.c_str(), flags | O_CLOEXEC, 0666);
  } while (FHandle < 0 && errno == EINTR);
  if (FHandle < 0) {
    const int error = errno;
    const std::string reason = SystemMessage(error);
    if (Mode == fmRead) {
      throw EFOpenError("Cannot open file \"" + FileName + "\": " + reason);
    }
    throw EInOutError("Cannot create file \"" + FileName + "\": " + reason);
  }
}

TImageFile::~TImageFile() {
  if (FHandle >= 0) {
    ::close(FHandle);
  }
}

int64_t TImageFile::Size() const {
  struct stat status {};
  if (::fstat(FHandle, &status) != 0) {
    RaiseSystemError("read the size of");
  }
  return static_cast<int64_t>(status.st_size);
}

size_t TImageFile::ReadAt(int64_t Offset, std::span<std::byte> Target) const {
  size_t done = 0;
  while (done < Target.size()) {
    const size_t wanted = std::min(Target.size() - done, kMaxTransfer);
    const ssize_t got = ::pread(FHandle, Target.data() + done, wanted,
                                static_cast<off_t>(Offset + static_cast<int64_t>(done)));
    if (got < 0 && errno == EINTR) {
      continue;
    }
    if (got < 0) {
      RaiseSystemError("read");
    }
    if (got == 0) {
      break;
    }
    done += static_cast<size_t>(got);
  }
  return done;
}

size_t TImageFile::Write(std::span<const std::byte> Source) {
  size_t done = 0;
  while (done < Source.size()) {
    const size_t wanted = std::min(Source.size() - done, kMaxTransfer);
    const ssize_t put = ::write(FHandle, Source.data() + done, wanted);
    if (put < 0 && errno == EINTR) {
      continue;
    }
    // A full disk or a file size limit is a short write, which the caller reports in its own
    // words; any other failure is a system error.
    if (put < 0 && errno != ENOSPC && errno != EFBIG && errno != EDQUOT) {
      RaiseSystemError("write");
    }
    if (put <= 0) {
      break;
    }
    done += static_cast<size_t>(put);
  }
  return done;
}

void TImageFile::Close() {
  const int handle = FHandle;
  FHandle = -1;
  if (handle >= 0 && ::close(handle) != 0 && errno != EINTR) {
    const int error = errno;
    throw EInOutError("Cannot close file \"" + FFileName + "\": " + SystemMessage(error));
  }
}

void TImageFile::RaiseSystemError(const char* action) const {
  const int error = errno;
  throw EInOutError("Cannot " + std::string(action) + " file \"" + FFileName +
                    "\": " + SystemMessage(error));
}

}  // namespace zephra
