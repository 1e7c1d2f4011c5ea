/// A growing array of plain values.
#pragma once

#include <vyr/Vector.h>

#include <type_traits>

namespace vyr {

/// A `Vector` whose elements may be copied byte by byte.
template <class T, class Allocator = ByteAllocator>
class VectorPOD : public Vector<T, Allocator> {
  static_assert(std::is_trivially_copyable<T>::value, "VectorPOD holds trivially copyable values only");

public:
  using Vector<T, Allocator>::Vector;
};

/// An array of doubles, as height fields take it.
using RealVector = VectorPOD<double, ByteAllocator>;

} // namespace vyr
