#pragma once
// Helpers the test suites share: a scratch folder, whole-file reads and writes, the golden texts,
// and a scoped switch of the numeric locale.

#include <filesystem>
#include <string>

namespace zephra::test {

// A fresh folder under the system's temporary folder, removed with everything in it at the end.
class TTempDir {
 public:
  TTempDir();
  ~TTempDir();
  TTempDir(const TTempDir&) = delete;
  TTempDir& operator=(const TTempDir&) = delete;

  const std::filesystem::path& Path() const { return FPath; }
  std::string File(const std::string& name) const { return (FPath / name).string(); }

 private:
  std::filesystem::path FPath;
};

std::string ReadFileBytes(const std::string& fileName);
void WriteFileBytes(const std::string& fileName, const std::string& bytes);

// The bytes of a fixed text kept under tests/data/: an expected output or a crafted input.
std::string GoldenText(const std::string& name);

// Switches LC_NUMERIC for the scope; Active() is false when the locale is not installed.
class TScopedNumericLocale {
 public:
  explicit TScopedNumericLocale(const char* name);
  ~TScopedNumericLocale();
  TScopedNumericLocale(const TScopedNumericLocale&) = delete;
  TScopedNumericLocale& operator=(const TScopedNumericLocale&) = delete;

  bool Active() const { return FActive; }

 private:
  std::string FPrevious;
  bool FActive = false;
};

// The decimal-comma locale that setup.sh generates.
inline constexpr const char* kCommaLocale = "de_DE.UTF-8";

}  // namespace zephra::test
