#pragma once
// TImageFile: a data file of a raster, open for the length of one read or one write. It reads at
// absolute offsets, so skipping rows costs nothing, and it loops over short transfers, so a block
// of any size moves in as few system calls as the kernel allows.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace zephra {

class TImageFile {
 public:
  enum TMode { fmRead, fmCreate };

  // fmRead opens an existing file and raises EFOpenError when it cannot; other programs may go
  // on reading and writing it. fmCreate creates the file or empties it, raising EInOutError.
  TImageFile(const std::string& FileName, TMode Mode);
  // Closes the file; a failure there is lost, so writers call Close() first.
  ~TImageFile();
  TImageFile(const TImageFile&) = delete;
  TImageFile& operator=(const TImageFile&) = delete;

  int64_t Size() const;
  // Reads from Offset until Target is full or the file ends; returns the bytes that arrived.
  size_t ReadAt(int64_t Offset, std::span<std::byte> Target) const;
  // Writes until Source is out or the disk is full; returns the bytes that went out.
  size_t Write(std::span<const std::byte> Source);
  // Closes now and raises EInOutError if the system reports that the data did not reach the file.
  void Close();

 private:
  [[noreturn]] void RaiseSystemError(const char* action) const;

  int FHandle = -1;
  std::string FFileName;
};

}  // namespace zephra
