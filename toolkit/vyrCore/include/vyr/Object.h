/// A shared toolkit object with a name.
#pragma once

#include <vyr/Referenced.h>
#include <vyr/VyrString.h>

namespace vyr {

/// The base of objects that a scene file or a script knows by name.
class VYRCORE_EXPORT Object : public Referenced {
public:
  explicit Object(const String& name = String())
      : m_name(name) {}

  void setName(const String& name) { m_name = name; }
  const String& getName() const { return m_name; }

protected:
  ~Object() override;

private:
  String m_name;
};

} // namespace vyr
