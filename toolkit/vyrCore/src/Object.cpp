/// The out-of-line destructors that give the small base classes their home.
#include <vyr/Object.h>
#include <vyr/Singleton.h>

namespace vyr {

Object::~Object() = default;
Singleton::~Singleton() = default;

} // namespace vyr
