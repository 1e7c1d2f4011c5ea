/// A coordinate frame, fixed to a body or to the world.
#pragma once

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Referenced.h>
#include <vyr/Vec3.h>
#include <vyr/observer_ptr.h>
#include <vyrPhysics/export.h>

namespace vyr {

class RigidBody;

/// A frame: place and orientation relative to a body, or to the world when there is none. Constraints act between two
/// frames and along their z axes.
class VYRPHYSICS_EXPORT Frame : public Referenced {
public:
  /// `body` (*borrows*, weakly): Nullable: null fixes the frame to the world. `local`: frame to body, row vectors.
  explicit Frame(RigidBody* body = nullptr, const AffineMatrix4x4& local = AffineMatrix4x4());

  /// *returns inner*. Nullable: the body, null for the world or when the body is gone.
  RigidBody* getRigidBody() const;
  void setRigidBody(RigidBody* body);

  /// Frame to body (or world), row vectors.
  const AffineMatrix4x4& getLocalTransform() const { return m_local; }
  void setLocalTransform(const AffineMatrix4x4& local) { m_local = local; }

  /// Frame to world, row vectors.
  AffineMatrix4x4 getTransform() const;

  /// Origin of the frame in the world, in m.
  Vec3 getPosition() const;

  /// Direction of the frame's z axis in the world, a unit vector.
  Vec3 getAxis() const;

  /// *returns new*. A frame with its origin at `position` (m) and its z axis along `axis`, both in the world, fixed to
  /// `body` (Nullable: the world) as the body stands now. The x axis is some direction across.
  static Frame* create(RigidBody* body, const Vec3& position, const Vec3& axis = Vec3(0.0, 0.0, 1.0));

protected:
  ~Frame() override;

private:
  observer_ptr<RigidBody> m_body;
  AffineMatrix4x4 m_local;
};

} // namespace vyr
