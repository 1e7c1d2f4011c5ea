// A camera that follows a visual: circling it, or at a fixed offset.
#pragma once

#include <vyr/Vec3.h>
#include <vyrOSG/GeometryNode.h>

#include <osg/Vec3d>
#include <osg/observer_ptr>

namespace vyrOSG {

/// Computes where the following camera stands at a simulated time.
class OrbitCamera {
public:
  /// Circles the node. @param speed turns a second. @param turn whether to turn with the node's heading.
  void circle(GeometryNode* node, double distance, double height, double speed, bool turn);
  /// Keeps offsets to the node. @param turn whether they turn with the node.
  void follow(GeometryNode* node, const vyr::Vec3& eye, const vyr::Vec3& center, const vyr::Vec3& up, bool turn);
  void end() { m_node = nullptr; }

  /// The view at @p time (s); false when no node is followed.
  bool getView(double time, osg::Vec3d& eye, osg::Vec3d& center, osg::Vec3d& up) const;

private:
  osg::observer_ptr<GeometryNode> m_node;
  bool m_circles = false;
  bool m_turns = false;
  double m_distance = 1.0;
  double m_height = 0.0;
  double m_speed = 0.0;
  osg::Vec3d m_eye;
  osg::Vec3d m_center;
  osg::Vec3d m_up;
};

} // namespace vyrOSG
