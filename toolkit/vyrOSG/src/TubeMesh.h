// Turns a line of places into the mesh of a round tube.
#pragma once

#include <osg/Geometry>
#include <osg/Vec3d>
#include <osg/Vec4>

#include <vector>

namespace vyrOSG::mesh {

/// A tube with flat caps around `places` (m), smooth and lit; places that coincide are taken once. `colors`: one a
/// place, or one for all. Nullable: result (*returns new*), for fewer than two different places or no positive radius.
osg::ref_ptr<osg::Geometry> makeTube(const std::vector<osg::Vec3d>& places, double radius,
                                     const std::vector<osg::Vec4>& colors);

} // namespace vyrOSG::mesh
