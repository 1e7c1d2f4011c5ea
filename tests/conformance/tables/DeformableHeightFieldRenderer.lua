-- The renderer of height fields that take prints.
types { "vyrOSG::DeformableHeightFieldRenderer", "vyrOSG::Group", "vyrModel::HeightFieldDeformer",
  "vyrSDK::StepEventListener", "vyrOSG::GeometryNode", "vyr::TimeStamp" }
samples({
  time = function() return vyr.TimeStamp(0.25) end,
  renderer = function(env) return vyrOSG.DeformableHeightFieldRenderer:new(env.deformer, env.vgroup) end,
  -- One that never got a ground has no node and is not valid.
  empty = function(env) return vyrOSG.DeformableHeightFieldRenderer:new(nil, nil) end,
}, { ["vyr::TimeStamp"] = "time", ["vyrOSG::DeformableHeightFieldRenderer"] = "renderer" })

namespace "vyrOSG"
class("DeformableHeightFieldRenderer", { base = "vyrSDK::StepEventListener", collector = "drops" })
constructor "DeformableHeightFieldRenderer(vyrModel::HeightFieldDeformer* deformer, vyrOSG::Group* group)"
row "void last(const vyr::TimeStamp& time)"
row { "vyrOSG::GeometryNode* getHeightFieldNode()", seen = "self:getHeightFieldNode() ~= nil, empty:getHeightFieldNode() == nil" }
row { "bool isValid() const", gives = "true", seen = "not empty:isValid()" }
