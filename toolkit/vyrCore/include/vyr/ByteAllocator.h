/// The toolkit's allocator of raw bytes, and its form for standard containers.
#pragma once

#include <cstddef>
#include <new>

namespace vyr {

/// Allocates raw bytes; the second parameter of the toolkit's containers.
struct ByteAllocator {
  /// *Returns new* memory for `size` bytes, aligned for any fundamental type. Failure: std::bad_alloc.
  static void* allocate(std::size_t size) { return ::operator new(size); }
  static void deallocate(void* memory) noexcept { ::operator delete(memory); }
};

/// Lets a standard container draw its memory from a byte allocator.
template <class T, class Bytes>
struct StandardAllocator {
  using value_type = T;
  template <class Other>
  struct rebind {
    using other = StandardAllocator<Other, Bytes>;
  };

  StandardAllocator() = default;
  template <class Other>
  StandardAllocator(const StandardAllocator<Other, Bytes>&) noexcept {}

  T* allocate(std::size_t count) {
    if (count > static_cast<std::size_t>(-1) / sizeof(T)) {
      throw std::bad_array_new_length();
    }
    return static_cast<T*>(Bytes::allocate(count * sizeof(T)));
  }
  void deallocate(T* memory, std::size_t) noexcept { Bytes::deallocate(memory); }
};

template <class A, class B, class Bytes>
bool operator==(const StandardAllocator<A, Bytes>&, const StandardAllocator<B, Bytes>&) {
  return true;
}
template <class A, class B, class Bytes>
bool operator!=(const StandardAllocator<A, Bytes>&, const StandardAllocator<B, Bytes>&) {
  return false;
}

} // namespace vyr
