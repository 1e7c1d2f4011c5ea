/// Filter that passes the contacts of certain geometries.
#include <vyrSDK/GeometryFilter.h>

namespace vyrSDK {

GeometryFilter::GeometryFilter(vyrCollide::Geometry* first, vyrCollide::Geometry* second)
    : m_first(first)
    , m_second(second)
    , m_anySecond(second == nullptr) {}

GeometryFilter::~GeometryFilter() = default;

bool GeometryFilter::match(const vyrCollide::Geometry* first, const vyrCollide::Geometry* second) const {
  if (!m_first || (!m_anySecond && !m_second)) {
    return false;
  }
  const auto matches = [this](const vyrCollide::Geometry* a, const vyrCollide::Geometry* b) {
    return m_first.get() == a && (m_anySecond || m_second.get() == b);
  };
  return matches(first, second) || matches(second, first);
}

} // namespace vyrSDK
