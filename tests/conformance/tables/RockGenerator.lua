-- Heaps of rocks.
types { "vyr::Vec3", "vyr::Vec2d", "vyr::Vec2f", "vyr::Constraint", "vyrOSG::Group", "vyr::Vec2", "vyr::Quat",
  "vyr::FrictionModel", "vyr::Vec4f", "vyrOSG::RockGenerator", "vyr::SPDMatrix3x3", "vyr::Material",
  "vyr::AffineMatrix4x4", "vyr::Vec4d", "vyrCollide::Space", "vyr::Vec3f", "vyrSDK::Assembly", "vyr::Vec4",
  "vyr::Vec3d" }
samples({
  space = function() return vyrCollide.Space() end,
  material = function() return vyr.Material("stone") end,
  generator = function() return vyrOSG.RockGenerator:new() end,
}, { ["vyrCollide::Space"] = "space", ["vyr::Material"] = "material", ["vyrOSG::RockGenerator"] = "generator" })

shared()

namespace "vyrOSG"
class("RockGenerator", { collector = "drops" })
constants { "COMPOSITE_ONE", 0, "COMPOSITE_TWO", 1, "COMPOSITE_THREE", 2, "COMPOSITE_FOUR", 3, "MAYA_ROCK1", 4,
  "MAYA_ROCK2", 5, "MAYA_ROCK3", 6, "NUM_ROCK_TYPES", 7 }
constructor "RockGenerator()"
row { "void generateRocks(vyrSDK::Assembly* assembly, vyrCollide::Space* space, int count, vyrOSG::Group* group, double minimum, double maximum, vyr::Material* material, double a = 0, double b = 0.5, double c = 0.5, double d = 0)",
  with = "assembly, space, 2.7, vgroup, 0.25, 0.5, material, 0.125, 3.5, 4.5, 6.75" }
