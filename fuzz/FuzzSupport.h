#pragma once
// What every harness shares: one-time settings, a per-process scratch folder whose file names are
// reused from input to input, and the splitting of one fuzz input into the parts of a format.

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include <zephra/Common/zpExceptions.h>

namespace zephra::fuzz {

// Applies the settings every harness runs under (allocation cap, no debug text); runs once.
void Setup();

// The scratch folder of this process (made once, removed at exit) and a path inside it.
const std::string& ScratchDir();
std::string ScratchFile(const std::string& name);
void WriteFile(const std::string& fileName, std::string_view bytes);
// Dates the file's last write long ago, as a raster that nobody is writing.
void MakeFileOld(const std::string& fileName);

// Takes the parts of a format off the front of the input.
class TInputParts {
 public:
  TInputParts(const uint8_t* data, size_t size)
      : FRest(reinterpret_cast<const char*>(data), size) {}

  // A fixed-size value from the front; zero bytes stand in where the input is short.
  template <typename T>
  T Take() {
    unsigned char bytes[sizeof(T)] = {};
    const size_t n = FRest.size() < sizeof(T) ? FRest.size() : sizeof(T);
    std::memcpy(bytes, FRest.data(), n);
    FRest.remove_prefix(n);
    T value;
    std::memcpy(&value, bytes, sizeof(T));
    return value;
  }
  // Everything up to the first NUL byte, which is dropped; all the rest if there is none.
  std::string_view TakeText();
  // At most count bytes.
  std::string_view TakeBytes(size_t count);
  std::string_view Rest() const { return FRest; }

 private:
  std::string_view FRest;
};

void Swallowed(const Exception& error);

// Runs an action, swallowing only the failures the library is meant to raise (printed when the
// environment sets ZEPHRA_FUZZ_VERBOSE, to see how far the seeds get).
template <typename TAction>
void Try(TAction&& action) {
  try {
    action();
  } catch (const Exception& error) {
    Swallowed(error);
  }
}

}  // namespace zephra::fuzz
