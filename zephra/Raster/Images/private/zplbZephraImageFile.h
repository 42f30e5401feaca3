#pragma once
// TImageFile: a data file of a raster, open for the length of one read. It reads at absolute
// offsets, so skipping rows costs nothing, and it loops over short transfers, so a block of any
// size moves in as few system calls as the kernel allows. Files are written by TOutputFile.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace zephra {

class TImageFile {
 public:
  // Opens an existing file and raises EFOpenError when it cannot; other programs may go on
  // reading and writing it.
  explicit TImageFile(const std::string& FileName);
  ~TImageFile();
  TImageFile(const TImageFile&) = delete;
  TImageFile& operator=(const TImageFile&) = delete;

  int64_t Size() const;
  // Reads from Offset until Target is full or the file ends; returns the bytes that arrived.
  size_t ReadAt(int64_t Offset, std::span<std::byte> Target) const;

 private:
  [[noreturn]] void RaiseSystemError(const char* action) const;

  int FHandle = -1;
  std::string FFileName;
};

class TOutputFile;

// The records of WriteImageData into a file that the caller commits, with the same errors.
void WriteImageData(TOutputFile& File, int32_t RecordSize, int32_t RecordCount,
                    const void* Buffer);

}  // namespace zephra
