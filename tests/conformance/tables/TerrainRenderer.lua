-- The renderer of modelled terrain.
types { "vyrOSG::GeometryNode", "vyr::TimeStamp", "vyrModel::Terrain", "vyrOSG::Group", "vyrSDK::StepEventListener",
  "vyr::RangeReal", "vyrOSG::TerrainRenderer" }
samples({
  time = function() return vyr.TimeStamp(0.25) end,
  upsideDown = function() return vyr.RangeReal(10, 2) end,
  renderer = function(env) return vyrOSG.TerrainRenderer:new(env.terrain, vyr.RangeReal(0, 1), env.vgroup) end,
}, { ["vyr::TimeStamp"] = "time", ["vyrOSG::TerrainRenderer"] = "renderer" })

namespace "vyrOSG"
class("TerrainRenderer", { base = "vyrSDK::StepEventListener", collector = "drops" })
-- The bounds arrive in order, the smaller one as the lower; equal ones stay equal.
constructor { "TerrainRenderer(vyrModel::Terrain* terrain, vyr::RangeReal range, vyrOSG::Group* group)",
  with = "terrain, upsideDown, vgroup", receives = { [2] = { 2, 10 } } }
row "void post(const vyr::TimeStamp& time)"
row { "vyrOSG::GeometryNode* getTerrainNode()", seen = "self:getTerrainNode() ~= nil" }
