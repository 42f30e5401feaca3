#include <zephra/Raster/Images/zplbZephraCellVector.h>

#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>

namespace zephra {

namespace {

// From this size on a block is mapped pages of its own: they come zeroed, stay unbacked until
// touched, and go back to the system as soon as the block is released, whatever the heap does.
// Smaller blocks come from the heap, which may hand back warm memory and clear it: cheaper at
// that size than the page faults of fresh pages on every open.
constexpr std::size_t kMappedBlock = std::size_t{32} << 20;

}  // namespace

void* AllocateZeroedCells(std::size_t size) {
  if (size >= kMappedBlock) {
    void* block = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (block == MAP_FAILED) {
      throw std::bad_alloc();
    }
    // A raster is read or written front to back in one go: huge pages cut its page faults by
    // 512 and cost nothing where the system does not offer them, so failure is no error.
    ::madvise(block, size, MADV_HUGEPAGE);
    return block;
  }
  void* block = std::calloc(std::max<std::size_t>(size, 1), 1);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

void ReleaseZeroedCells(void* block, std::size_t size) noexcept {
  if (size >= kMappedBlock) {
    ::munmap(block, size);
  } else {
    std::free(block);
  }
}

}  // namespace zephra
