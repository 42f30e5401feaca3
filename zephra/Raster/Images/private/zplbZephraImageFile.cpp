#include <zephra/Raster/Images/private/zplbZephraImageFile.h>

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

TImageFile::TImageFile(const std::string& FileName) : FFileName(FileName) {
  do {
    FHandle = ::open(FileName.c_str(), O_RDONLY | O_CLOEXEC);
  } while (FHandle < 0 && errno == EINTR);
  if (FHandle < 0) {
    const int error = errno;
    throw EFOpenError("Cannot open file \"" + FileName + "\": " + SystemMessage(error));
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

void TImageFile::RaiseSystemError(const char* action) const {
  const int error = errno;
  throw EInOutError("Cannot " + std::string(action) + " file \"" + FFileName +
                    "\": " + SystemMessage(error));
}

}  // namespace zephra
