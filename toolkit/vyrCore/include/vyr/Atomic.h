/// Atomic operations of the reference counts and observer locks; the only header that names APR.
#pragma once

#include <apr_atomic.h>

#include <cstdint>

namespace vyr {

/// A 32-bit count that several threads may change at once.
using AtomicCount = volatile std::uint32_t;

#ifdef __SANITIZE_THREAD__

// ThreadSanitizer does not see into APR's library: under it the compiler's own operations stand in.
inline std::uint32_t atomicIncrement(AtomicCount& count) {
  return __atomic_fetch_add(&count, 1u, __ATOMIC_ACQ_REL);
}
inline std::uint32_t atomicDecrement(AtomicCount& count) {
  return __atomic_fetch_sub(&count, 1u, __ATOMIC_ACQ_REL);
}
inline std::uint32_t atomicRead(const AtomicCount& count) {
  return __atomic_load_n(&count, __ATOMIC_ACQUIRE);
}
inline std::uint32_t atomicExchange(AtomicCount& count, std::uint32_t value) {
  return __atomic_exchange_n(&count, value, __ATOMIC_ACQ_REL);
}

#else

/// Adds one; returns the value before the change.
inline std::uint32_t atomicIncrement(AtomicCount& count) {
  return apr_atomic_inc32(&count);
}

/// Subtracts one; returns the value before the change. Adding the two's complement of 1 gives the old value,
/// which APR's own decrement does not.
inline std::uint32_t atomicDecrement(AtomicCount& count) {
  return apr_atomic_add32(&count, 0xFFFFFFFFu);
}

/// Reads the value.
inline std::uint32_t atomicRead(const AtomicCount& count) {
  return apr_atomic_read32(const_cast<AtomicCount*>(&count));
}

/// Stores `value`; returns the value before the change.
inline std::uint32_t atomicExchange(AtomicCount& count, std::uint32_t value) {
  return apr_atomic_xchg32(&count, value);
}

#endif

/// A lock for sections of a few instructions, taken by an atomic exchange.
class SpinLock {
public:
  void lock() {
    while (atomicExchange(m_taken, 1) != 0) {
    }
  }
  void unlock() { atomicExchange(m_taken, 0); }

private:
  AtomicCount m_taken = 0;
};

} // namespace vyr
