/// The base of the toolkit's one-of-a-kind objects.
#pragma once

#include <vyrCore/export.h>

namespace vyr {

/// An object of which a process has one; the deriving class gives it out by a static `instance()`.
class VYRCORE_EXPORT Singleton {
public:
  Singleton(const Singleton&) = delete;
  Singleton& operator=(const Singleton&) = delete;

protected:
  Singleton() = default;
  virtual ~Singleton();
};

} // namespace vyr
