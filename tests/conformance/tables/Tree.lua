-- Modelled trees and what draws them.
types { "vyr::Vec3", "vyr::Vec2d", "vyr::Vec2f", "vyr::Constraint", "vyrOSG::Group", "vyr::Vec2",
  "vyrSDK::StepEventListener", "vyr::Quat", "vyr::FrictionModel", "vyr::Vec4f", "vyr::Vec4", "vyr::SPDMatrix3x3",
  "vyr::AffineMatrix4x4", "vyr::Vec4d", "vyrOSG::Tree", "vyr::Vec3f", "vyrOSG::TreeRenderer", "vyrModel::Tree",
  "vyr::Vec3d" }
samples({
  renderer = function(env) return vyrOSG.TreeRenderer:new(env.modelTree, env.vgroup) end,
  tree = function(env) return vyrOSG.Tree:new(env.vgroup) end,
}, { ["vyrOSG::TreeRenderer"] = "renderer", ["vyrOSG::Tree"] = "tree" })

shared()

namespace "vyrOSG"
class("TreeRenderer", { base = "vyrSDK::StepEventListener", collector = "drops" })
constructor "TreeRenderer(vyrModel::Tree* tree, vyrOSG::Group* group)"
row { "void setColor(const vyr::Vec4& color)", seen = "vyr.equivalent(self:getColor(), vec4)" }
-- The copy is read-only.
row { "const vyr::Vec4 getColor() const", before = "self:setColor(vec4)",
  seen = "vyr.equivalent(self:getColor(), vec4), not native.isa(self:getColor(), 'vyr::Vec4')" }

class("Tree", { base = "vyrModel::Tree", collector = "drops" })
constructor "Tree(vyrOSG::Group* group)"
-- Both go to the tree's renderer.
row { "void setColor(const vyr::Vec4& color)", seen = "vyr.equivalent(self:getColor(), vec4)" }
row { "const vyr::Vec4 getColor() const", before = "self:setColor(vec4)",
  seen = "vyr.equivalent(self:getColor(), vec4), not native.isa(self:getColor(), 'vyr::Vec4')" }
