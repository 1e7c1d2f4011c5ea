// Follows a visual through the world.
#include "OrbitCamera.h"

#include <vyrOSG/Conversions.h>

#include <osg/Matrixd>
#include <osg/Transform>

#include <cmath>

namespace vyrOSG {

namespace {

constexpr double kTwoPi = 6.283185307179586;

} // namespace

void OrbitCamera::circle(GeometryNode* node, double distance, double height, double speed, bool turn) {
  m_node = node;
  m_circles = true;
  m_turns = turn;
  m_distance = distance;
  m_height = height;
  m_speed = speed;
}

void OrbitCamera::follow(GeometryNode* node, const vyr::Vec3& eye, const vyr::Vec3& center, const vyr::Vec3& up,
                         bool turn) {
  m_node = node;
  m_circles = false;
  m_turns = turn;
  m_eye = toOsg(eye);
  m_center = toOsg(center);
  m_up = toOsg(up);
}

bool OrbitCamera::getView(double time, osg::Vec3d& eye, osg::Vec3d& center, osg::Vec3d& up) const {
  osg::ref_ptr<GeometryNode> node;
  if (!m_node.lock(node))
    return false;
  node->update();
  const osg::NodePathList paths = node->getParentalNodePaths();
  if (paths.empty())
    return false;
  const osg::Matrixd place = osg::computeLocalToWorld(paths.front());
  const osg::Vec3d middle = place.getTrans();
  if (m_circles) {
    const osg::Vec3d heading = osg::Matrixd::transform3x3(osg::Vec3d(1.0, 0.0, 0.0), place);
    // The circle begins behind the node (on the side of negative y), where a chase camera would stand.
    const double angle = kTwoPi * (m_speed * time - 0.25) + (m_turns ? std::atan2(heading.y(), heading.x()) : 0.0);
    eye = middle + osg::Vec3d(m_distance * std::cos(angle), m_distance * std::sin(angle), m_height);
    center = middle;
    up.set(0.0, 0.0, 1.0);
    return true;
  }
  const osg::Matrixd turn = m_turns ? osg::Matrixd::rotate(place.getRotate()) : osg::Matrixd::identity();
  eye = middle + m_eye * turn;
  center = middle + m_center * turn;
  up = m_up * turn;
  return true;
}

} // namespace vyrOSG
