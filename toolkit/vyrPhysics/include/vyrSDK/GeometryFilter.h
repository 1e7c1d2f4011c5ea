/// Filter that passes the contacts of certain geometries.
#pragma once

#include <vyr/observer_ptr.h>
#include <vyrCollide/Geometry.h>
#include <vyrSDK/ExecuteFilter.h>

namespace vyrSDK {

/// Passes pairs with the given geometry, or only the pair of the two given ones.
class VYRPHYSICS_EXPORT GeometryFilter : public ExecuteFilter {
public:
  /// Both are *borrows*, weakly. Nullable: a null `second` stands for any geometry; a null `first` passes nothing.
  explicit GeometryFilter(vyrCollide::Geometry* first, vyrCollide::Geometry* second = nullptr);

  bool match(const vyrCollide::Geometry* first, const vyrCollide::Geometry* second) const override;

protected:
  ~GeometryFilter() override;

private:
  vyr::observer_ptr<vyrCollide::Geometry> m_first;
  vyr::observer_ptr<vyrCollide::Geometry> m_second;
  bool m_anySecond;
};

} // namespace vyrSDK
