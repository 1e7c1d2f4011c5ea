-- Geometries coloured by the pressure on them.
types { "vyr::Vec3", "vyr::Referenced", "vyr::Vec2d", "vyrOSG::SceneDecorator", "vyr::Vec2f", "vyr::Constraint",
  "vyrOSG::Group", "vyr::Vec2", "vyrCollide::Geometry", "vyr::Quat", "vyrOSG::PressureFromContacts",
  "vyr::FrictionModel", "vyr::Vec4f", "vyr::Vec4", "vyr::SPDMatrix3x3", "vyrSDK::ExecuteFilter",
  "vyr::AffineMatrix4x4", "vyrSDK::Simulation", "vyr::Vec4d", "osgSim::ColorRange", "vyrRender::ColorVector",
  "vyrCollide::Trimesh", "vyr::Vec3f", "vyrOSG::PressureAtlasManager", "vyrOSG::PressureRenderer", "vyr::Vec3d" }
samples({
  filter = function(env) return vyrSDK.GeometryFilter(env.geometry) end,
  mesh = function() return vyrCollide.Trimesh({ vyr.Vec3(0, 0, 0), vyr.Vec3(1, 0, 0), vyr.Vec3(0, 1, 0) }, { 0, 1, 2 }) end,
  colors = function() return vyrRender.ColorVector:fromTable({ vyrRender.Color(0, 0, 1), vyrRender.Color(1, 0, 0) }) end,
  renderer = function(env)
    env.simulation:add(env.geometry)
    native.hold("vyrOSG::Group", env.vgroup) -- a group in use
    return vyrOSG.PressureRenderer:new(env.vgroup, env.decorator, env.simulation, 1, 2, env.colors)
  end,
}, {
  ["vyrSDK::ExecuteFilter"] = "filter", ["vyrCollide::Trimesh"] = "mesh", ["vyrRender::ColorVector"] = "colors",
  ["vyrOSG::PressureRenderer"] = "renderer",
})

shared()

namespace "vyrOSG"
-- The constants alone; base and collector of the module that registers the whole class stay in place.
class("PressureFromContacts")
constants { "TANGENTIAL_FORCE", 0, "NORMAL_FORCE", 1, "TOTAL_FORCE", 2 }

-- The simulation updates it after each step and holds it for that.
class("PressureRenderer", { base = "vyr::Referenced", collector = "drops" })
constructor { "PressureRenderer(vyrOSG::Group* group, vyrOSG::SceneDecorator* decorator, vyrSDK::Simulation* simulation, double a, double b, const vyrRender::ColorVector& colors)",
  reaches = "vyrOSG::PressureRenderer::PressureRenderer(vyrOSG::Group*, vyrOSG::SceneDecorator*, vyrSDK::Simulation*, double, double, const vyrRender::ColorVector&, double = 50, double = 2e-05, enum vyrOSG::PressureFromContacts::ForceType = 2)", references = 1, takesAll = true }
constructor { "PressureRenderer(vyrOSG::Group* group, vyrOSG::SceneDecorator* decorator, vyrSDK::Simulation* simulation, double a, double b, const vyrRender::ColorVector& colors, double c)",
  reaches = "vyrOSG::PressureRenderer::PressureRenderer(vyrOSG::Group*, vyrOSG::SceneDecorator*, vyrSDK::Simulation*, double, double, const vyrRender::ColorVector&, double, double = 2e-05, enum vyrOSG::PressureFromContacts::ForceType = 2)", references = 1, takesAll = true }
constructor { "PressureRenderer(vyrOSG::Group* group, vyrOSG::SceneDecorator* decorator, vyrSDK::Simulation* simulation, double a, double b, const vyrRender::ColorVector& colors, double c, double d, enum vyrOSG::PressureFromContacts::ForceType forceType = 2)",
  references = 1, takesAll = true }
row { "bool addTrimesh(vyrCollide::Trimesh* mesh, bool flag = true)", with = "mesh, false", gives = "false" }
row { "bool addGeometry(vyrCollide::Geometry* geometry, bool flag = true)", on = "renderer", with = "geometry, false", gives = "true" }
row { "bool startMaxAvgRecording()", seen = "self:isRecording()" }
row { "unsigned int stopMaxAvgRecording()", before = "self:startMaxAvgRecording()", seen = "not self:isRecording()" }
row { "bool isRecording()", gives = "false", seen = "self:startMaxAvgRecording() == self:isRecording()" }
row { "unsigned int getNumRecordings()", gives = "0" }
-- 64 bits wide in the library; the low 32 bits of the whole number arrive.
row { "bool renderMaxPressure(unsigned int index)", reaches = "bool vyrOSG::PressureRenderer::renderMaxPressure(unsigned long)",
  with = "4294967299.5" }
row { "bool renderAvgPressure(unsigned int index)", reaches = "bool vyrOSG::PressureRenderer::renderAvgPressure(unsigned long)",
  with = "4294967299.5" }
row "bool restoreRendering()"
row { "void setEnableLegend(bool enable)", with = "false" }
row { "vyr::Vec2 getLegendPosition() const", before = "self:setLegendPosition(vec2)",
  seen = "vyr.equivalent(self:getLegendPosition(), vec2), not rawequal(self:getLegendPosition(), self:getLegendPosition())" }
row { "void setLegendPosition(const vyr::Vec2& position)", seen = "vyr.equivalent(self:getLegendPosition(), vec2)" }
row "osgSim::ColorRange* getColorRange()"
row "vyrOSG::PressureAtlasManager* getPressureAtlasManager()"
row "void addFilter(vyrSDK::ExecuteFilter* filter)"
