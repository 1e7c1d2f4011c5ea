/// A pointer that becomes null when its `vyr::Referenced` object dies.
#pragma once

#include <vyr/Referenced.h>

namespace vyr {

/// Observes an object without holding a reference. Nullable: empty, or the object has gone.
template <class T>
class observer_ptr final : public Observer {
public:
  using element_type = T;

  observer_ptr() = default;
  observer_ptr(T* object) { attach(object); }
  observer_ptr(const observer_ptr& other)
      : Observer() {
    attach(other.m_object);
  }
  ~observer_ptr() override { detach(); }

  observer_ptr& operator=(const observer_ptr& other) { return *this = other.m_object; }
  /// Observes `object` instead; nothing happens when it is the one observed already.
  observer_ptr& operator=(T* object) {
    if (object != m_object) {
      detach();
      attach(object);
    }
    return *this;
  }

  T* get() const { return m_object; }
  T* operator->() const { return m_object; }
  T& operator*() const { return *m_object; }
  bool valid() const { return m_object != nullptr; }
  explicit operator bool() const { return valid(); }
  bool operator!() const { return !valid(); }

  void objectDeleted(Referenced*) override { m_object = nullptr; }

private:
  void attach(T* object) {
    m_object = object;
    if (m_object != nullptr) {
      m_object->addObserver(this);
    }
  }
  void detach() {
    if (m_object != nullptr) {
      m_object->removeObserver(this);
      m_object = nullptr;
    }
  }

  T* m_object = nullptr;
};

template <class A, class B>
bool operator==(const observer_ptr<A>& a, const observer_ptr<B>& b) {
  return a.get() == b.get();
}
template <class A, class B>
bool operator==(const observer_ptr<A>& a, B* b) {
  return a.get() == b;
}
template <class A, class B>
bool operator!=(const observer_ptr<A>& a, B* b) {
  return a.get() != b;
}

} // namespace vyr
