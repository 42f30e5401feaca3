#pragma once
// The screen width is one setting of the whole process, and the library thins every windowed
// open to it. The package keeps it wider than any raster, so that a window reads every cell, and
// narrows it only for an open that asks to be thinned, while no other open that reads it runs.

#include <cstdint>
#include <mutex>
#include <shared_mutex>

namespace zephra::python {

class TScreenWidth {
 public:
  // Sets the width that reads every cell; called once, when the module is imported.
  static void Widen();

  // open() while the screen is wider than any raster; opens of this kind run side by side.
  template <typename TOpen>
  static auto Full(TOpen open) {
    const std::shared_lock lock(Mutex());
    return open();
  }

  // open() with a screen of width pixels, alone.
  template <typename TOpen>
  static auto Narrowed(int32_t width, TOpen open) {
    const std::unique_lock lock(Mutex());
    const TNarrowing narrowing(width);
    return open();
  }

 private:
  // Narrows the screen for its lifetime.
  class TNarrowing {
   public:
    explicit TNarrowing(int32_t width);
    ~TNarrowing();
    TNarrowing(const TNarrowing&) = delete;
    TNarrowing& operator=(const TNarrowing&) = delete;
  };

  static std::shared_mutex& Mutex();
};

}  // namespace zephra::python
