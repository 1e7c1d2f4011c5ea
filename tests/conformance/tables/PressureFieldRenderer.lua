-- Pressure samples of models, drawn.
types { "vyr::Vec3", "vyr::Referenced", "vyr::Vec2d", "vyr::Vec2f", "vyr::Constraint", "vyr::Vec2", "vyr::Quat",
  "vyr::FrictionModel", "vyr::Vec4f", "vyr::Vec4", "vyr::SPDMatrix3x3", "vyrModel::PressureFieldRenderer",
  "vyr::AffineMatrix4x4", "vyr::Vec4d", "vyr::Vec3f", "osg::Group", "vyrOSG::PressureFieldRenderer", "vyr::Vec3d" }

shared()

namespace "vyrModel"
class("PressureFieldRenderer", { base = "vyr::Referenced" })

namespace "vyrOSG"
class("PressureFieldRenderer", { base = "vyrModel::PressureFieldRenderer", collector = "drops" })
-- A drawing renderer stands wherever the models' interface or a counted object is asked for.
constructor { "PressureFieldRenderer(osg::Group* parent)",
  reaches = "vyrOSG::PressureFieldRenderer::PressureFieldRenderer(osg::Group*, double = 1)",
  seen = "native.isa(vyrOSG.PressureFieldRenderer:new(group), 'vyrModel::PressureFieldRenderer'), native.isa(vyrOSG.PressureFieldRenderer:new(group), 'vyr::Referenced')" }
constructor { "PressureFieldRenderer(osg::Group* parent, double scale)", takesAll = true }
