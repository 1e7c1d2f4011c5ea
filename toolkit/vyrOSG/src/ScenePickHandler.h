// Picks with rays through the pixels of the application's camera against the physics' geometries.
#pragma once

#include <vyr/observer_ptr.h>
#include <vyrSDK/PickHandler.h>
#include <vyrSDK/Simulation.h>

#include <osg/Camera>
#include <osg/Matrixd>
#include <osg/observer_ptr>

namespace vyrOSG {

/// Exact picking: what is hit is the collision shape, not the triangles that are drawn for it.
class ScenePickHandler : public vyrSDK::PickHandler {
public:
  /// Nullable: without simulation or camera nothing is hit. Both *borrows*, weakly.
  void setSimulation(vyrSDK::Simulation* simulation) { m_simulation = simulation; }
  void setCamera(osg::Camera* camera) { m_camera = camera; }

  /// Simulation coordinates to those of the viewer's world.
  void setTransform(const osg::Matrixd& transform) { m_inverse = osg::Matrixd::inverse(transform); }

  vyrSDK::PickResult pick(float x, float y) override;

private:
  vyr::observer_ptr<vyrSDK::Simulation> m_simulation;
  osg::observer_ptr<osg::Camera> m_camera;
  osg::Matrixd m_inverse;
};

} // namespace vyrOSG
