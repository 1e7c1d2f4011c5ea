// The one scene root that lower layers may ask for visuals without knowing the scene graph.
#pragma once

#include <vyrOSG/Group.h>

#include <vyrUtil/SceneRoot.h>

namespace vyrOSG {

/// Holds the group under which parts of the toolkit that know no scene graph let their objects be drawn.
class VYROSG_EXPORT OSGSceneRoot : public vyrUtil::SceneRoot {
public:
  /// The one instance (*returns inner*); made on the first call, without a group.
  static OSGSceneRoot* instance();

  /// Makes the instance, if there is none, and gives it a group (*retains*). Nullable: root (takes the group away).
  static void create(vyrOSG::Group* root);

  /// The group (*returns inner*). Nullable: null until create or set was called.
  static vyrOSG::Group* get();

  /// Replaces the group (*retains*). Nullable: root (takes the group away). Visuals under the old group stay there.
  static void set(vyrOSG::Group* root);

  /// Draws a body under the group. Nullable: body. False if there is no body, no group or nothing to draw.
  bool createVisual(vyr::RigidBody* body, float detailRatio = 0.3f) override;

  /// Draws a geometry under the group. Nullable: geometry. False if there is no geometry, no group or nothing to draw.
  bool createVisual(vyrCollide::Geometry* geometry, float detailRatio = 0.3f) override;

private:
  OSGSceneRoot();
  ~OSGSceneRoot() override;

  osg::ref_ptr<vyrOSG::Group> m_root;
};

} // namespace vyrOSG
