#pragma once
/// @file
/// TCellVector, the cell array of an image: a std::vector in all but one way: its
/// memory comes zero-filled from the system and its allocator never writes a new cell.
//
// A vector made with a size therefore holds that many zero cells at no cost: large blocks are
// pages that the system fills with zeros only when they are first touched. So an image is filled
// straight from its file without being cleared first, and a short text raster claiming a huge
// grid costs memory only for the cells its text holds.
//
// Only a fresh allocation is known to be zero: a vector shrunk and grown again within its
// capacity gets back the old cells, not zeros. Code that sizes such a vector makes a new one.

#include <array>
#include <bit>
#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include <zephra/Common/zpExport.h>

namespace zephra {

/// size bytes of zero-filled memory: whole pages straight from the system for large blocks, the
/// heap for small ones. Raises std::bad_alloc when the system refuses.
// Exported, since the vector code that calls it is compiled into host programs too.
ZEPHRA_API void* AllocateZeroedCells(std::size_t size);
/// Gives back a block of AllocateZeroedCells with the size it was allocated with. Never raises.
ZEPHRA_API void ReleaseZeroedCells(void* block, std::size_t size) noexcept;

/// The allocator of TCellVector: zero-filled blocks, and value-initialisation that writes nothing.
template <typename T>
class TZeroedCellAllocator {
  // Skipping construction is sound only for cells whose zero bytes are the value zero.
  static_assert(std::is_arithmetic_v<T>);

 public:
  /// The cell type.
  using value_type = T;

  /// Stateless. Never raises.
  TZeroedCellAllocator() noexcept = default;
  /// Stateless: any two allocators are interchangeable. Never raises.
  template <typename U>
  TZeroedCellAllocator(const TZeroedCellAllocator<U>&) noexcept {}

  /// count zero cells. Raises std::bad_array_new_length for a count past max_size, and
  /// std::bad_alloc when the system refuses.
  T* allocate(std::size_t count) {
    if (count > std::allocator_traits<std::allocator<T>>::max_size(std::allocator<T>())) {
      throw std::bad_array_new_length();
    }
    return static_cast<T*>(AllocateZeroedCells(count * sizeof(T)));
  }
  /// Gives back a block of allocate(count). Never raises.
  void deallocate(T* block, std::size_t count) noexcept {
    ReleaseZeroedCells(block, count * sizeof(T));
  }

  /// Value-initialisation writes nothing: the zero the new cell must hold is in memory already.
  /// Never raises.
  template <typename U>
  void construct(U* /*place*/) noexcept {}
  /// Constructs from args as std::allocator does. Never raises for arithmetic cells.
  template <typename U, typename... TArgs>
  void construct(U* place, TArgs&&... args) {
    std::construct_at(place, std::forward<TArgs>(args)...);
  }

  /// Always true: memory of one allocator may go back through another. Never raises.
  friend bool operator==(const TZeroedCellAllocator&, const TZeroedCellAllocator&) noexcept {
    return true;
  }
};

/// A std::vector of cells whose memory comes zero-filled and whose new cells are never written.
template <typename T>
using TCellVector = std::vector<T, TZeroedCellAllocator<T>>;

/// count cells of value. A value of zero bytes takes the zero-filled memory as it comes, so a new
/// image of any size costs nothing until its cells are written. Raises as allocate().
template <typename T>
TCellVector<T> FilledCells(std::size_t count, T value) {
  if (std::bit_cast<std::array<std::byte, sizeof(T)>>(value) ==
      std::array<std::byte, sizeof(T)>{}) {
    return TCellVector<T>(count);
  }
  return TCellVector<T>(count, value);
}

}  // namespace zephra
