/// The toolkit's growing array.
#pragma once

#include <vyr/ByteAllocator.h>

#include <vector>

namespace vyr {

/// `std::vector` over the toolkit's allocator; everything of it is available.
template <class T, class Allocator = ByteAllocator>
class Vector : public std::vector<T, StandardAllocator<T, Allocator>> {
public:
  using std::vector<T, StandardAllocator<T, Allocator>>::vector;
};

} // namespace vyr
