/// A pointer that becomes null when its `vyr::Referenced` object dies.
#pragma once

#include <vyr/Referenced.h>

#include <atomic>

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
    const Lock lock;
    attach(other.get());
  }
  ~observer_ptr() override { detach(); }

  observer_ptr& operator=(const observer_ptr& other) {
    const Lock lock;
    return *this = other.get();
  }
  /// Observes `object` instead; nothing happens when it is the one observed already.
  observer_ptr& operator=(T* object) {
    if (object != get()) {
      detach();
      attach(object);
    }
    return *this;
  }

  T* get() const { return m_object.load(std::memory_order_acquire); }
  T* operator->() const { return get(); }
  T& operator*() const { return *get(); }
  bool valid() const { return get() != nullptr; }
  explicit operator bool() const { return valid(); }
  bool operator!() const { return !valid(); }

  void objectDeleted(Referenced*) override { m_object.store(nullptr, std::memory_order_release); }

private:
  struct Lock {
    Lock() { Referenced::lockObservers(); }
    ~Lock() { Referenced::unlockObservers(); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
  };

  void attach(T* object) {
    m_object.store(object, std::memory_order_release);
    if (object != nullptr) {
      object->addObserver(this);
    }
  }
  // Under the lock, so that the object cannot go between the look at the pointer and the letting go.
  void detach() {
    if (get() == nullptr) {
      return;
    }
    const Lock lock;
    if (T* const object = get()) {
      object->removeObserver(this);
      m_object.store(nullptr, std::memory_order_release);
    }
  }

  std::atomic<T*> m_object{nullptr};
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
