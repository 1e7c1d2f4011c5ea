/// Tests of numbers that come from outside.
#pragma once

#include <vyr/Notify.h>

#include <cmath>

namespace vyrPhysics {

/// True for a finite number above 0; otherwise one error message that names the thing and the value.
inline bool isPositive(double value, const char* what) {
  if (std::isfinite(value) && value > 0.0) {
    return true;
  }
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << what << " must be a finite number above 0, not " << value;
  return false;
}

/// True for a finite number of at least 0; otherwise one error message.
inline bool isNotNegative(double value, const char* what) {
  if (std::isfinite(value) && value >= 0.0) {
    return true;
  }
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << what << " must be a finite number of at least 0, not " << value;
  return false;
}

/// True for anything whose isFinite() says so; otherwise one error message.
template <class Value>
bool isFinite(const Value& value, const char* what) {
  if (value.isFinite()) {
    return true;
  }
  VYR_NOTIFY(vyr::NOTIFY_ERROR) << what << " must be finite, not " << value;
  return false;
}

} // namespace vyrPhysics
