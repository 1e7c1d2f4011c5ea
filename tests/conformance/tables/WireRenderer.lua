-- Simulated wires drawn as tubes.
types { "vyr::Vec3", "vyr::Vec2d", "vyr::Vec2f", "vyr::Constraint", "vyr::Vec2", "vyr::Quat", "vyrOSG::WireRenderer",
  "vyr::FrictionModel", "vyrWire::Wire", "vyr::Vec4f", "vyr::Vec4", "vyr::SPDMatrix3x3", "vyr::AffineMatrix4x4",
  "vyr::Vec4d", "vyr::Vec3f", "osg::Group", "vyr::Vec3d", "vyrOSG::SplineRenderer" }

shared()

namespace "vyrOSG"
class("WireRenderer", { base = "vyrOSG::SplineRenderer", collector = "drops" })
-- It answers the spline renderer's methods, and is one wherever such a renderer is asked for.
constructor { "WireRenderer(vyrWire::Wire* wire, osg::Group* parent)",
  seen = "select('#', vyrOSG.WireRenderer:new(wire, group):setRadius(0.05)) == 0, native.isa(vyrOSG.WireRenderer:new(wire, group), 'vyrOSG::SplineRenderer')" }
