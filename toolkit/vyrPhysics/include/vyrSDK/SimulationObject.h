/// A geometry together with the body that carries it, as one value.
#pragma once

#include <vyr/RigidBody.h>
#include <vyr/ref_ptr.h>
#include <vyrCollide/Geometry.h>

namespace vyrSDK {

/// Holds one reference on each part that is not null; a copy shares the parts. Not polymorphic: it is passed by value.
/// The references are taken geometry first and given back body first, which the order of the members ensures.
class SimulationObject {
public:
  /// Nullable: both parts (*retains*).
  explicit SimulationObject(vyrCollide::Geometry* inGeometry = nullptr, vyr::RigidBody* inBody = nullptr)
      : geometry(inGeometry)
      , body(inBody) {}

  /// *returns inner*. Nullable.
  vyrCollide::Geometry* getGeometry() const { return geometry.get(); }

  /// *returns inner*. Nullable.
  vyr::RigidBody* getRigidBody() const { return body.get(); }

  vyr::ref_ptr<vyrCollide::Geometry> geometry;
  vyr::ref_ptr<vyr::RigidBody> body;
};

} // namespace vyrSDK
