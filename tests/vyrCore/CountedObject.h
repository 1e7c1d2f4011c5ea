/// An object whose births and deaths the tests count.
#pragma once

#include <vyr/Referenced.h>

#include <atomic>

class CountedObject : public vyr::Referenced {
public:
  CountedObject() { ++alive; }
  CountedObject(const CountedObject& other)
      : vyr::Referenced(other) {
    ++alive;
  }
  CountedObject& operator=(const CountedObject&) = default;

  static inline std::atomic<int> alive{0};

protected:
  ~CountedObject() override { --alive; }
};
