/// Search in lists of counted pointers.
#pragma once

#include <vyr/ref_ptr.h>

#include <algorithm>
#include <vector>

namespace vyrPhysics {

/// True when the list holds the object.
template <class T>
bool contains(const std::vector<vyr::ref_ptr<T>>& list, const T* object) {
  return std::any_of(list.begin(), list.end(), [object](const vyr::ref_ptr<T>& p) { return p.get() == object; });
}

/// Takes the object out, keeping the order of the others. False when the list does not hold it.
template <class T>
bool erase(std::vector<vyr::ref_ptr<T>>& list, const T* object) {
  const auto at =
      std::find_if(list.begin(), list.end(), [object](const vyr::ref_ptr<T>& p) { return p.get() == object; });
  if (at == list.end()) {
    return false;
  }
  list.erase(at);
  return true;
}

} // namespace vyrPhysics
