#include <zephra/Common/private/zpOutputFile.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <streambuf>
#include <vector>

#include <zephra/Common/zpExceptions.h>
#include <zephra/Common/zpPlatform.h>

namespace zephra {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kTemporarySuffix = ".zptmp";
// Linux moves at most this much in one write call.
constexpr size_t kMaxTransfer = 0x7ffff000;

std::string Quoted(const std::string& name) {
  return "\"" + name + "\"";
}

int OpenRetrying(const char* path, int flags, mode_t mode = 0) {
  int handle = -1;
  do {
    handle = ::open(path, flags | O_CLOEXEC, mode);
  } while (handle < 0 && errno == EINTR);
  return handle;
}

// A link is replaced where it points, so the link and other links to the same file survive.
std::string ResolveTarget(const std::string& FileName) {
  std::error_code error;
  if (fs::is_symlink(FileName, error)) {
    const fs::path real = fs::weakly_canonical(FileName, error);
    if (!error) {
      return real.string();
    }
  }
  return FileName;
}

// The pid in "<base>.<pid>-<n>.zptmp", or 0 when Name is no temporary of base.
pid_t TemporaryOwner(std::string_view Name, std::string_view Base) {
  if (Name.size() <= Base.size() + 1 + kTemporarySuffix.size() || !Name.starts_with(Base) ||
      Name[Base.size()] != '.' || !Name.ends_with(kTemporarySuffix)) {
    return 0;
  }
  const std::string_view middle =
      Name.substr(Base.size() + 1, Name.size() - Base.size() - 1 - kTemporarySuffix.size());
  pid_t pid = 0;
  const auto [end, error] = std::from_chars(middle.data(), middle.data() + middle.size(), pid);
  if (error != std::errc() || end == middle.data() + middle.size() || *end != '-') {
    return 0;
  }
  return pid;
}

// A temporary is stale when its process is gone and nobody holds its lock (the lock also covers
// a writer on another machine of a shared file system, whose pid means nothing here).
bool IsStale(const fs::path& Path, pid_t Owner) {
  if (Owner == ::getpid() || ::kill(Owner, 0) == 0 || errno != ESRCH) {
    return false;
  }
  const int handle = OpenRetrying(Path.c_str(), O_RDONLY);
  if (handle < 0) {
    return false;
  }
  const bool unlocked = ::flock(handle, LOCK_EX | LOCK_NB) == 0;
  ::close(handle);
  return unlocked;
}

void RemoveStaleTemporaries(const fs::path& Target) {
  const fs::path folder = Target.has_parent_path() ? Target.parent_path() : fs::path(".");
  const std::string base = Target.filename().string();
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    const std::string name = it->path().filename().string();
    const pid_t owner = TemporaryOwner(name, base);
    if (owner > 0 && IsStale(it->path(), owner)) {
      std::error_code ignored;
      fs::remove(it->path(), ignored);
    }
  }
}

// The new file must be one the user could have written in place: a target without any write
// bit is protected, even from a user whom the system lets write anything.
void CheckReplaceable(const std::string& Target, const struct stat& Status) {
  if ((Status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0 ||
      ::access(Target.c_str(), W_OK) != 0) {
    throw EInOutError("Cannot replace file " + Quoted(Target) + ": it is read-only");
  }
}

// A rename is durable only once the folder that holds the new name is on the disk.
void SyncFolder(const std::string& Target) {
  const fs::path parent = fs::path(Target).parent_path();
  const int handle = OpenRetrying(parent.empty() ? "." : parent.c_str(), O_RDONLY | O_DIRECTORY);
  if (handle >= 0) {
    ::fsync(handle);
    ::close(handle);
  }
}

}  // namespace

// Collects small writes into blocks and passes large ones straight through; a failure raises the
// file's own error, which the stream passes on because it is told to throw on badbit.
class TOutputFile::TStreamBuffer : public std::streambuf {
 public:
  explicit TStreamBuffer(TOutputFile& Owner) : FOwner(Owner), FBlock(kBlockSize) {
    setp(FBlock.data(), FBlock.data() + FBlock.size());
  }

 protected:
  int_type overflow(int_type ch) override {
    Drain();
    if (!traits_type::eq_int_type(ch, traits_type::eof())) {
      *pptr() = traits_type::to_char_type(ch);
      pbump(1);
    }
    return traits_type::not_eof(ch);
  }

  std::streamsize xsputn(const char* text, std::streamsize count) override {
    if (count < epptr() - pptr()) {
      std::copy_n(text, count, pptr());
      pbump(static_cast<int>(count));
      return count;
    }
    Drain();
    FOwner.Write(std::string_view(text, static_cast<size_t>(count)));
    return count;
  }

  int sync() override {
    Drain();
    return 0;
  }

 private:
  static constexpr size_t kBlockSize = 1 << 16;

  void Drain() {
    const auto used = static_cast<size_t>(pptr() - pbase());
    setp(FBlock.data(), FBlock.data() + FBlock.size());
    FOwner.Write(std::string_view(FBlock.data(), used));
  }

  TOutputFile& FOwner;
  std::vector<char> FBlock;
};

TOutputFile::TOutputFile(const std::string& FileName, TMode Mode)
    : FTarget(ResolveTarget(FileName)), FMode(Mode) {
  struct stat status {};
  const bool exists = ::stat(FTarget.c_str(), &status) == 0;
  // Devices and pipes can't be renamed over; they are written as they are.
  if (exists && !S_ISREG(status.st_mode)) {
    FMode = omInPlace;
  }
  if (FMode == omInPlace) {
    FPath = FTarget;
    FHandle = OpenRetrying(FPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    if (FHandle < 0) {
      RaiseSystemError("create", errno);
    }
    return;
  }
  if (exists) {
    CheckReplaceable(FTarget, status);
  }
  RemoveStaleTemporaries(FTarget);
  CreateTemporary();
  if (exists && ::fchmod(FHandle, status.st_mode & 07777) != 0) {
    const int error = errno;
    Discard();
    RaiseSystemError("create", error);
  }
}

TOutputFile::~TOutputFile() {
  Discard();
}

void TOutputFile::CreateTemporary() {
  const std::string prefix = FTarget + "." + std::to_string(::getpid()) + "-";
  for (int n = 0;; ++n) {
    FPath = prefix + std::to_string(n) + std::string(kTemporarySuffix);
    FHandle = OpenRetrying(FPath.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666);
    if (FHandle >= 0) {
      break;
    }
    // Another thread of this process writes the same target: take the next number.
    if (errno != EEXIST || n == 1000) {
      const int error = errno;
      FPath = FTarget;
      RaiseSystemError("create", error);
    }
  }
  // The lock lives as long as the handle, so a later writer can tell a live temporary from one
  // that a killed process left.
  ::flock(FHandle, LOCK_EX | LOCK_NB);
}

void TOutputFile::Write(std::span<const std::byte> Source) {
  if (WriteSome(Source) != Source.size()) {
    // The system said why the last call stopped; a short write with no reason is a full disk.
    RaiseSystemError("write", errno != 0 ? errno : ENOSPC);
  }
}

void TOutputFile::Write(std::string_view Text) {
  Write(std::as_bytes(std::span(Text.data(), Text.size())));
}

size_t TOutputFile::WriteSome(std::span<const std::byte> Source) {
  if (FHandle < 0) {
    throw EInOutError("Cannot write file " + Quoted(FTarget) + ": it is closed");
  }
  size_t done = 0;
  while (done < Source.size()) {
    const size_t wanted = std::min(Source.size() - done, kMaxTransfer);
    errno = 0;
    const ssize_t put = ::write(FHandle, Source.data() + done, wanted);
    if (put < 0 && errno == EINTR) {
      continue;
    }
    if (put < 0 && errno != ENOSPC && errno != EFBIG && errno != EDQUOT) {
      RaiseSystemError("write", errno);
    }
    if (put <= 0) {
      break;
    }
    done += static_cast<size_t>(put);
  }
  return done;
}

std::ostream& TOutputFile::Stream() {
  if (!FStream) {
    FBuffer = std::make_unique<TStreamBuffer>(*this);
    FStream = std::make_unique<std::ostream>(FBuffer.get());
    FStream->exceptions(std::ios::badbit);
  }
  return *FStream;
}

void TOutputFile::Close() {
  if (FHandle < 0) {
    return;
  }
  if (FStream) {
    FStream->flush();
  }
  if (FMode == omReplace && SyncWrites() && ::fsync(FHandle) != 0 && errno != EINVAL) {
    RaiseSystemError("write", errno);
  }
  const int handle = FHandle;
  FHandle = -1;
  // After close() the handle is gone whatever it says; EINTR does not mean the data were lost.
  if (::close(handle) != 0 && errno != EINTR) {
    RaiseSystemError("write", errno);
  }
}

void TOutputFile::Commit() {
  Close();
  if (FMode == omInPlace || FCommitted) {
    FCommitted = true;
    return;
  }
  if (::rename(FPath.c_str(), FTarget.c_str()) != 0) {
    RaiseSystemError("replace", errno);
  }
  FCommitted = true;
  if (SyncWrites()) {
    SyncFolder(FTarget);
  }
}

void TOutputFile::Discard() noexcept {
  if (FHandle >= 0) {
    ::close(FHandle);
    FHandle = -1;
  }
  if (FMode == omReplace && !FCommitted && !FPath.empty() && FPath != FTarget) {
    ::unlink(FPath.c_str());
    FPath.clear();
  }
}

void TOutputFile::RaiseSystemError(const std::string& action, int error) const {
  throw EInOutError("Cannot " + action + " file " + Quoted(FTarget) + ": " + std::strerror(error));
}

void CommitInOrder(std::initializer_list<TOutputFile*> Files) {
  for (TOutputFile* file : Files) {
    file->Close();
  }
  for (TOutputFile* file : Files) {
    file->Commit();
  }
}

}  // namespace zephra
