#pragma once
// TCellVector: the cell array of a typed image. It is a std::vector in every respect but one: its
// allocator leaves new cells uninitialised instead of zeroing them. An image of a quarter
// gigabyte is filled straight from its file, and zeroing it first would cost as much again. Code
// that grows such a vector (resize, the size constructor) must therefore write every new cell
// itself; assign(n, value) and the other filling forms work as usual.

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace zephra {

template <typename T>
class TUninitialisedAllocator : public std::allocator<T> {
 public:
  using value_type = T;

  TUninitialisedAllocator() noexcept = default;
  template <typename U>
  TUninitialisedAllocator(const TUninitialisedAllocator<U>&) noexcept {}

  // Default-initialisation: nothing at all for the arithmetic cell types.
  template <typename U>
  void construct(U* place) noexcept(std::is_nothrow_default_constructible_v<U>) {
    std::uninitialized_default_construct_n(place, 1);
  }
  template <typename U, typename... TArgs>
  void construct(U* place, TArgs&&... args) {
    std::construct_at(place, std::forward<TArgs>(args)...);
  }
};

template <typename T>
using TCellVector = std::vector<T, TUninitialisedAllocator<T>>;

}  // namespace zephra
