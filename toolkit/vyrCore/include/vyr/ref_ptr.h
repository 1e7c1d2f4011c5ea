/// A counted pointer to a `vyr::Referenced` object.
#pragma once

#include <utility>

namespace vyr {

/// Holds one reference on its object. Nullable: an empty pointer is valid.
template <class T>
class ref_ptr {
public:
  using element_type = T;

  ref_ptr() = default;
  ref_ptr(T* object)
      : m_object(object) {
    acquire(m_object);
  }
  ref_ptr(const ref_ptr& other)
      : m_object(other.m_object) {
    acquire(m_object);
  }
  ref_ptr(ref_ptr&& other) noexcept
      : m_object(other.m_object) {
    other.m_object = nullptr;
  }
  template <class Other>
  ref_ptr(const ref_ptr<Other>& other)
      : m_object(other.get()) {
    acquire(m_object);
  }
  ~ref_ptr() { drop(m_object); }

  ref_ptr& operator=(const ref_ptr& other) { return assign(other.m_object); }
  ref_ptr& operator=(ref_ptr&& other) noexcept {
    std::swap(m_object, other.m_object);
    return *this;
  }
  template <class Other>
  ref_ptr& operator=(const ref_ptr<Other>& other) {
    return assign(other.get());
  }
  ref_ptr& operator=(T* object) { return assign(object); }

  T* get() const { return m_object; }
  T* operator->() const { return m_object; }
  T& operator*() const { return *m_object; }
  bool valid() const { return m_object != nullptr; }
  explicit operator bool() const { return valid(); }
  bool operator!() const { return !valid(); }

  /// Gives the object up without destroying it, for functions that return a fresh object without a holder.
  T* release() {
    T* object = m_object;
    m_object = nullptr;
    if (object != nullptr) {
      object->unrefWithoutDelete();
    }
    return object;
  }

private:
  static void acquire(T* object) {
    if (object != nullptr) {
      object->ref();
    }
  }
  static void drop(T* object) {
    if (object != nullptr) {
      object->unref();
    }
  }
  /// The new object is taken before the old one is dropped: the old one may be its only other holder.
  ref_ptr& assign(T* object) {
    if (object != m_object) {
      T* old = m_object;
      m_object = object;
      acquire(object);
      drop(old);
    }
    return *this;
  }

  T* m_object = nullptr;
};

template <class A, class B>
bool operator==(const ref_ptr<A>& a, const ref_ptr<B>& b) {
  return a.get() == b.get();
}
template <class A, class B>
bool operator!=(const ref_ptr<A>& a, const ref_ptr<B>& b) {
  return a.get() != b.get();
}
template <class A, class B>
bool operator==(const ref_ptr<A>& a, B* b) {
  return a.get() == b;
}
template <class A, class B>
bool operator!=(const ref_ptr<A>& a, B* b) {
  return a.get() != b;
}
template <class A, class B>
bool operator<(const ref_ptr<A>& a, const ref_ptr<B>& b) {
  return a.get() < b.get();
}

} // namespace vyr
