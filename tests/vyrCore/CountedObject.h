/// An object whose births and deaths the tests count.
#pragma once

#include <vyr/Referenced.h>

class CountedObject : public vyr::Referenced {
public:
  CountedObject() { ++alive; }
  CountedObject(const CountedObject& other)
      : vyr::Referenced(other) {
    ++alive;
  }
  CountedObject& operator=(const CountedObject&) = default;

  static inline int alive = 0;

protected:
  ~CountedObject() override { --alive; }
};
