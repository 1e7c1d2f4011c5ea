// Draws the paths of rigid bodies.
#include <vyrOSG/utils.h>

#include "Trails.h"

#include <vyrOSG/Conversions.h>

#include <vyr/Notify.h>
#include <vyr/observer_ptr.h>
#include <vyrSDK/Simulation.h>

#include <map>

namespace vyrOSG {

namespace {

/// Numbers bodies. An address is not enough: a new body may stand where one died.
class BodyNumbers {
public:
  uint64_t get(vyr::RigidBody* body) {
    Entry& entry = m_entries[body];
    if (entry.body != body)
      entry = {vyr::observer_ptr<vyr::RigidBody>(body), ++m_last};
    return entry.number;
  }

  void forgetDead() {
    for (auto i = m_entries.begin(); i != m_entries.end();)
      i = i->second.body ? std::next(i) : m_entries.erase(i);
  }

private:
  struct Entry {
    vyr::observer_ptr<vyr::RigidBody> body;
    uint64_t number = 0;
  };

  std::map<const vyr::RigidBody*, Entry> m_entries;
  uint64_t m_last = 0;
};

} // namespace

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
  source.points = [observed, lineColor, numbers = BodyNumbers()]() mutable {
    std::vector<TrailPoint> points;
    if (!observed)
      return points;
    numbers.forgetDead();
    for (const vyr::ref_ptr<vyr::RigidBody>& body : observed->getRigidBodies()) {
      if (body->getMotionControl() == vyr::RigidBody::DYNAMICS)
        points.push_back({numbers.get(body.get()), osg::Vec3(toOsg(body->getPosition())), lineColor});
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
