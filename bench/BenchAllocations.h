#pragma once
// Counts every allocation of the program, so that a benchmark can show that a pass allocates
// nothing. It replaces the global operator new and delete: include it in the one source file of
// a benchmark program, and in no other.

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace zephra::bench {

inline std::atomic<int64_t> gAllocations{0};

}  // namespace zephra::bench

void* operator new(std::size_t size) {
  zephra::bench::gAllocations.fetch_add(1, std::memory_order_relaxed);
  if (void* memory = std::malloc(size == 0 ? 1 : size)) {
    return memory;
  }
  throw std::bad_alloc();
}

// GCC takes the free() below for a mismatch once it has inlined both sides of a replaced pair.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}
#pragma GCC diagnostic pop
