#include "support/TestSupport.h"

#include <clocale>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace zephra::test {

TTempDir::TTempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "zephra-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::runtime_error("cannot create a temporary folder");
  }
  FPath = pattern;
}

TTempDir::~TTempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(FPath, ignored);
}

std::string ReadFileBytes(const std::string& fileName) {
  std::ifstream in(fileName, std::ios::binary);
  if (!in) {
    throw std::runtime_error("cannot read " + fileName);
  }
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteFileBytes(const std::string& fileName, const std::string& bytes) {
  std::ofstream out(fileName, std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!out) {
    throw std::runtime_error("cannot write " + fileName);
  }
}

std::string GoldenText(const std::string& name) {
  return ReadFileBytes(std::string(ZEPHRA_TEST_DATA_DIR) + "/" + name);
}

TScopedNumericLocale::TScopedNumericLocale(const char* name) {
  FPrevious = std::setlocale(LC_NUMERIC, nullptr);
  FActive = std::setlocale(LC_NUMERIC, name) != nullptr;
}

TScopedNumericLocale::~TScopedNumericLocale() {
  std::setlocale(LC_NUMERIC, FPrevious.c_str());
}

}  // namespace zephra::test
