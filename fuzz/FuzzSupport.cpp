#include "FuzzSupport.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include <zephra/Common/zpPlatform.h>

namespace zephra::fuzz {

namespace {

// Low enough that a small file claiming a huge raster is refused long before libFuzzer's own
// malloc limit calls it an out-of-memory crash, high enough for every honest input of a few KB.
constexpr int64_t kAllocationCap = int64_t{16} << 20;

// Memory-backed when the machine has it: the harnesses write their files on every input.
std::filesystem::path BaseDir() {
  const std::filesystem::path shm = "/dev/shm";
  return ::access(shm.c_str(), W_OK | X_OK) == 0 ? shm : std::filesystem::temp_directory_path();
}

class TScratchDir {
 public:
  TScratchDir() {
    std::string pattern = (BaseDir() / "zephra-fuzz-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
      std::perror("mkdtemp");
      std::abort();
    }
    FPath = pattern;
  }
  ~TScratchDir() {
    std::error_code ignored;
    std::filesystem::remove_all(FPath, ignored);
  }
  TScratchDir(const TScratchDir&) = delete;
  TScratchDir& operator=(const TScratchDir&) = delete;

  const std::string& Path() const { return FPath; }

 private:
  std::string FPath;
};

}  // namespace

void Setup() {
  static const bool done = [] {
#ifdef ZEPHRA_FUZZ_HAS_ALLOCATION_LIMIT
    SetOpenAllocationLimit(kAllocationCap);
#endif
    SetDebugOutput(nullptr);
#ifdef ZEPHRA_FUZZ_HAS_SYNC_WRITES
    SetSyncWrites(false);  // scratch files need no flush to the disk
#endif
    return true;
  }();
  (void)done;
}

const std::string& ScratchDir() {
  static const TScratchDir dir;
  return dir.Path();
}

std::string ScratchFile(const std::string& name) {
  return ScratchDir() + "/" + name;
}

void WriteFile(const std::string& fileName, std::string_view bytes) {
  std::ofstream file(fileName, std::ios::binary | std::ios::trunc);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!file.flush()) {
    throw std::runtime_error("cannot write the scratch file " + fileName);
  }
}

void MakeFileOld(const std::string& fileName) {
  const timespec times[2] = {{946684800, 0}, {946684800, 0}};  // 2000-01-01
  ::utimensat(AT_FDCWD, fileName.c_str(), times, 0);
}

void Swallowed(const Exception& error) {
  static const bool verbose = std::getenv("ZEPHRA_FUZZ_VERBOSE") != nullptr;
  if (verbose) {
    std::fprintf(stderr, "swallowed: %s\n", error.what());
  }
}

std::string_view TInputParts::TakeText() {
  const size_t end = FRest.find('\0');
  const std::string_view text = FRest.substr(0, end);
  FRest.remove_prefix(end == std::string_view::npos ? FRest.size() : end + 1);
  return text;
}

std::string_view TInputParts::TakeBytes(size_t count) {
  const std::string_view bytes = FRest.substr(0, count);
  FRest.remove_prefix(bytes.size());
  return bytes;
}

}  // namespace zephra::fuzz
