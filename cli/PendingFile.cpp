#include "PendingFile.h"

#include <unistd.h>

#include <string>
#include <system_error>

#include "Errors.h"

namespace zephra::cli {

TPendingFile::TPendingFile(std::filesystem::path target)
    : FTarget(std::move(target)),
      FTemporary(FTarget.string() + "." + std::to_string(getpid()) + ".zptmp") {}

TPendingFile::~TPendingFile() {
  if (!FCommitted) {
    std::error_code ignored;
    std::filesystem::remove(FTemporary, ignored);
  }
}

void TPendingFile::Commit() {
  std::error_code error;
  if (!std::filesystem::is_regular_file(FTemporary, error)) {
    throw TCommandError(FTarget.string() + ": the writer made no file");
  }
  std::filesystem::rename(FTemporary, FTarget, error);
  if (error) {
    throw TCommandError(FTarget.string() + ": cannot take its name: " + error.message());
  }
  FCommitted = true;
}

}  // namespace zephra::cli
