-- Curves drawn as tubes.
types { "vyr::Vec3", "vyr::Vec2d", "vyr::RealVector", "vyr::Vec2f", "vyr::Constraint", "vyr::Vec2",
  "vyrSDK::StepEventListener", "vyr::Quat", "vyr::FrictionModel", "vyr::Vec4f", "vyr::Vec4", "vyr::SPDMatrix3x3",
  "vyr::AffineMatrix4x4", "vyr::Vec4d", "osg::Group", "vyr::Vec3f", "vyrUtil::Spline", "vyr::Vec3d",
  "vyrOSG::SplineRenderer" }
samples({
  reals = function() return vyr.RealVector:fromTable({ 0, 0.5, 1 }) end,
  renderer = function(env) return vyrOSG.SplineRenderer:new(env.spline, env.group) end,
}, { ["vyr::RealVector"] = "reals", ["vyrOSG::SplineRenderer"] = "renderer" })

shared()

namespace "vyrOSG"
class("SplineRenderer", { base = "vyrSDK::StepEventListener", collector = "drops" })
constructor "SplineRenderer(vyrUtil::Spline* spline, osg::Group* parent)"
row "void update()"
row "void update(const vyr::RealVector& values)"
row { "void setSplineModel(vyrUtil::Spline* spline)", with = "spline", seen = "self:getSplineModel() == spline" }
row { "vyrUtil::Spline* getSplineModel()", on = "vyrOSG.SplineRenderer:new(spline, group)", gives = "spline",
  seen = "vyrOSG.SplineRenderer:new(nil, group):getSplineModel() == nil" }
row { "void setRadius(double radius)", with = "-0.25", seen = "self:getRadius() == -0.25" }
row { "double getRadius() const", before = "self:setRadius(0.125)", gives = "0.125" }
row { "void setNumSegmentsPerUnitLength(double density)", with = "-2.5", seen = "self:getNumSegmentsPerUnitLength() == -2.5" }
row { "double getNumSegmentsPerUnitLength() const", before = "self:setNumSegmentsPerUnitLength(7.5)", gives = "7.5" }
row { "void setColor(const vyr::Vec4& color)", seen = "vyr.equivalent(self:getColor(), vec4)" }
row { "vyr::Vec4 getColor() const", before = "self:setColor(vec4)",
  seen = "vyr.equivalent(self:getColor(), vec4), not rawequal(self:getColor(), self:getColor())" }
