/// Conversions from Lua's double to C++ numbers that are defined for every input.
#pragma once

#include <tolua++.h>

#include <cstdint>
#include <limits>
#include <type_traits>

namespace vyrBinding {

/// Truncates toward zero; what does not fit, and NaN, gives the smallest value, as x86-64's own conversion does.
template <class Signed>
Signed truncate(double value) {
  // -limit is a power of two and so exact as a double, unlike the largest value.
  constexpr double kLimit = -static_cast<double>(std::numeric_limits<Signed>::min());
  if (value >= -kLimit && value < kLimit)
    return static_cast<Signed>(value);
  return std::numeric_limits<Signed>::min();
}

/// Converts a Lua number to `T`: truncation toward zero for integers and enumerations, narrowing for float.
///
/// Out of range and NaN: `int` gives its smallest value, `unsigned int` the low 32 bits of the 64-bit truncation,
/// narrower integers the low bits of the 32-bit one; 64-bit unsigned integers keep the upper half of their range and
/// give 0 above it.
template <class T>
T convertNumber(double value) {
  if constexpr (std::is_same_v<T, bool>)
    return value != 0;
  else if constexpr (std::is_floating_point_v<T>)
    return static_cast<T>(value);
  else if constexpr (std::is_enum_v<T>)
    return static_cast<T>(truncate<std::int32_t>(value));
  else if constexpr (std::is_same_v<T, std::int32_t>)
    return truncate<std::int32_t>(value);
  else if constexpr (sizeof(T) == 8 && std::is_unsigned_v<T>) {
    constexpr double kHalf = 9223372036854775808.0; // 2^63
    if (value >= kHalf)
      return value < 2 * kHalf ? static_cast<T>(truncate<std::int64_t>(value - kHalf)) ^ (T{1} << 63) : T{0};
    return static_cast<T>(truncate<std::int64_t>(value));
  } else if constexpr (sizeof(T) < 4)
    return static_cast<T>(truncate<std::int32_t>(value));
  else
    return static_cast<T>(truncate<std::int64_t>(value));
}

/// The number at `position`, or `fallback` where the argument is absent.
template <class T>
T toNumber(lua_State* state, int position, lua_Number fallback) {
  return convertNumber<T>(tolua_tonumber(state, position, fallback));
}

} // namespace vyrBinding
