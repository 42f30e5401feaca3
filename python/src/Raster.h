#pragma once
// TRaster, what a zephra._zephra.Raster holds: one image of the library and the lock that lets
// its operations run with the GIL released while other Python threads call the same raster.

#include <memory>
#include <mutex>
#include <utility>

#include <pybind11/pybind11.h>

#include <zephra/Raster/Images/zplbZephraAbstractImage.h>

namespace zephra::python {

class TRaster {
 public:
  explicit TRaster(std::unique_ptr<TAbstractImage> image) : FImage(std::move(image)) {}
  TRaster(const TRaster&) = delete;
  TRaster& operator=(const TRaster&) = delete;

  // work(image) with the GIL released and the lock held. The lock is taken only once the GIL is
  // let go, so a thread that waits for it never holds the GIL that the holder may need back (an
  // export's progress callback).
  template <typename TWork>
  auto Run(TWork&& work) {
    const pybind11::gil_scoped_release release;
    const std::lock_guard lock(FMutex);
    return std::forward<TWork>(work)(*FImage);
  }

  // work(first image, second image) with the GIL released and both locks held.
  template <typename TWork>
  static auto RunOn(TRaster& first, TRaster& second, TWork&& work) {
    const pybind11::gil_scoped_release release;
    const std::scoped_lock lock(first.FMutex, second.FMutex);
    return std::forward<TWork>(work)(*first.FImage, *second.FImage);
  }

  // The image, for what reads fields with the GIL held and writes nothing.
  const TAbstractImage& Image() const { return *FImage; }
  // The image, for what changes fields with the GIL held and reads no cells.
  TAbstractImage& Image() { return *FImage; }

 private:
  std::unique_ptr<TAbstractImage> FImage;
  std::mutex FMutex;
};

// After cells were written straight into the buffer (a NumPy view), which the library's writes
// would have tracked: the header's range becomes that of the cells that are not no data, and the
// image counts as written, so that Close() writes it back.
void MarkWritten(TAbstractImage& image);

}  // namespace zephra::python
