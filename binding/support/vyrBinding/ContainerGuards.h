/// Guards of containers that scripts fill.
#pragma once

#include <vyrBinding/Guards.h>

#include <cstddef>

namespace vyrBinding {
namespace guards {

/// Room for more elements than a script will ever add: making it would only take the machine's memory.
constexpr std::size_t kMostReserved = std::size_t{1} << 26;

template <class Container>
bool reserve(Container&, std::size_t count) {
  return count <= kMostReserved;
}

} // namespace guards
} // namespace vyrBinding
