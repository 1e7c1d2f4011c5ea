// Draws the paths of rigid bodies.
#include <vyrOSG/utils.h>

#include "Trails.h"

#include <vyrOSG/Conversions.h>

#include <vyr/Notify.h>
#include <vyr/observer_ptr.h>
#include <vyrSDK/Simulation.h>

namespace vyrOSG {

osg::Geode* createRigidBodyTrajectoriesVisual(vyrSDK::Simulation* simulation, vyrOSG::Group* group, double timeInterval,
                                              size_t maxPoints, const vyr::Vec4& color) {
  if (!simulation || !group)
    return nullptr;
  if (!color.isFinite()) {
    VYR_NOTIFY(vyr::NOTIFY_ERROR) << "vyrOSG::createRigidBodyTrajectoriesVisual: the colour (" << color
                                  << ") is not finite";
    return nullptr;
  }
  const vyr::observer_ptr<vyrSDK::Simulation> observed(simulation);
  const osg::Vec4 lineColor = toOsg(color);
  TrailSource source;
  source.simulation = [observed] { return observed.get(); };
  source.points = [observed, lineColor] {
    std::vector<TrailPoint> points;
    if (!observed)
      return points;
    for (const vyr::ref_ptr<vyr::RigidBody>& body : observed->getRigidBodies()) {
      if (body->getMotionControl() == vyr::RigidBody::DYNAMICS)
        points.push_back({reinterpret_cast<uintptr_t>(body.get()), osg::Vec3(toOsg(body->getPosition())), lineColor});
    }
    return points;
  };
  osg::ref_ptr<osg::Geode> geode =
      makeTrails("vyrOSG::createRigidBodyTrajectoriesVisual", source, timeInterval, maxPoints);
  if (!geode)
    return nullptr;
  geode->setName("body trajectories");
  group->addChild(geode);
  return geode.get();
}

} // namespace vyrOSG
