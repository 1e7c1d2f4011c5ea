-- Pressure from the contacts of a simulation.
types { "vyrOSG::PressureGenerator", "vyr::Vec3", "vyr::Vec2d", "vyrSDK::ExecuteFilter", "vyr::Vec2f",
  "vyr::Constraint", "vyr::Vec2", "vyr::Quat", "vyrOSG::PressureFromContacts", "vyr::FrictionModel",
  "vyrOSG::PressureAtlas", "vyr::Vec4f", "vyr::Vec4", "vyr::SPDMatrix3x3", "vyr::AffineMatrix4x4", "vyr::Vec4d",
  "vyr::Vec3f", "vyrSDK::Simulation", "vyr::Vec3d" }
samples({
  filter = function(env) return vyrSDK.GeometryFilter(env.geometry) end,
  contacts = function(env) return vyrOSG.PressureFromContacts:new(env.simulation, native.given("vyrOSG::PressureAtlas")) end,
}, { ["vyrSDK::ExecuteFilter"] = "filter", ["vyrOSG::PressureFromContacts"] = "contacts" })

shared()

namespace "vyrOSG"
class("PressureAtlas")
class("PressureFromContacts", { base = "vyrOSG::PressureGenerator", collector = "drops" })
constants { "TANGENTIAL_FORCE", 0, "NORMAL_FORCE", 1, "TOTAL_FORCE", 2 }
-- Its simulation holds it too.
constructor { "PressureFromContacts(vyrSDK::Simulation* simulation, vyrOSG::PressureAtlas* atlas, double factor = 2e-05, enum vyrOSG::PressureFromContacts::ForceType forceType = 2)",
  references = 1, takesAll = true }
row { "void setRangeFactor(double factor)", seen = "self:getRangeFactor() == 1.3" }
row { "double getRangeFactor() const", before = "self:setRangeFactor(0.75)", gives = "0.75" }
row "void addFilter(vyrSDK::ExecuteFilter* filter)"
