/// A camera that takes over the view of another camera just before it draws.
#pragma once

#include <osg/Camera>
#include <osg/observer_ptr>

namespace vyrOSG {

/// Follows while the scene is culled, because the viewer moves its own camera after all update callbacks have run.
class FollowingCamera : public osg::Camera {
public:
  /// `aspectRatio`: width by height of the own picture, which a projection taken over is fitted to.
  explicit FollowingCamera(double aspectRatio);

  /// Sets the camera to follow. Nullable: null keeps the last view. *Borrows* through a weak pointer.
  void setReference(const osg::Camera* camera) { m_reference = camera; }

  void accept(osg::NodeVisitor& visitor) override;

protected:
  ~FollowingCamera() override = default;

private:
  void follow(const osg::Camera& reference);

  double m_aspectRatio;
  osg::observer_ptr<const osg::Camera> m_reference;
};

} // namespace vyrOSG
