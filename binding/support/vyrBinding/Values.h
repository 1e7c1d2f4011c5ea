/// How objects are handed to operations that take them by value.
#pragma once

#include <vyr/Range.h>

#include <algorithm>

namespace vyrBinding {

/// Most values go as they are.
template <class T>
const T& byValue(const T& value) {
  return value;
}

/// A range that was given upside down arrives ordered.
inline vyr::Range<double> byValue(const vyr::Range<double>& range) {
  return {std::min(range.lower(), range.upper()), std::max(range.lower(), range.upper())};
}

} // namespace vyrBinding
