/// Interface through which things of the simulation get their drawings without knowing what draws them.
#pragma once

#include <vyrPhysics/export.h>

namespace vyr {
class RigidBody;
}
namespace vyrCollide {
class Geometry;
}

namespace vyrUtil {

/// Makes drawings. The visualisation layer implements it and installs itself; without one, nothing is drawn.
class VYRPHYSICS_EXPORT SceneRoot {
public:
  /// Draws all geometries of a body. `detailRatio` above 0: 1 is fine, small is coarse. False when nothing was drawn.
  virtual bool createVisual(vyr::RigidBody* body, float detailRatio) = 0;

  /// Draws one geometry.
  virtual bool createVisual(vyrCollide::Geometry* geometry, float detailRatio) = 0;

  /// *returns inner*. Nullable: the root that is installed in this process.
  static SceneRoot* getInstance();

  /// Installs a root (*borrows*); null takes it out.
  static void setInstance(SceneRoot* root);

protected:
  SceneRoot() = default;
  SceneRoot(const SceneRoot&) = default;
  SceneRoot& operator=(const SceneRoot&) = default;
  virtual ~SceneRoot();
};

} // namespace vyrUtil
