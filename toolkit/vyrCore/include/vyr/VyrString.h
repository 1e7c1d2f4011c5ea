/// The toolkit's string.
#pragma once

#include <string>

namespace vyr {

/// A string type of the toolkit built on `Base`; converts from and to it freely.
template <class Base>
class VyrString : public Base {
public:
  using Base::Base;
  VyrString() = default;
  VyrString(const Base& text)
      : Base(text) {}
  VyrString(Base&& text) noexcept
      : Base(static_cast<Base&&>(text)) {}
};

using String = VyrString<std::string>;

} // namespace vyr
