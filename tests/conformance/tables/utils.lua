-- Free helper functions: visuals, colours, textures, text, axes and grids; the scene's root; force arrows.
types {
  "vyrSDK::Simulation", "vyr::Constraint1DOF", "vyrOSG::Constraint1DOFObserverVectorVec3PairVector",
  "vyrCollide::Geometry", "vyr::Quat", "vyr::RigidBody", "vyr::Vec4", "vyr::SPDMatrix3x3",
  "vyrOSG::ParticleSystemDrawable", "vyr::Vec4d", "vyrOSG::GeometryObserverVec3PairVector", "osgText::Text",
  "vyr::Vec3", "vyr::ParticleSystem", "vyr::Vec2d", "vyrSDK::GuiEventListener", "vyr::Vec2f", "vyr::Constraint",
  "vyrOSG::Group", "osg::Geode", "vyrOSG::ForceArrowRenderer", "vyr::Vec3d",
  "vyrOSG::ExponentialMovingAverageStatisticVector", "vyr::Frame", "vyrOSG::Constraint1DOFObserverVector",
  "osg::Texture2D", "vyrOSG::GeometryNode", "vyrUtil::SceneRoot", "vyrOSG::OSGSceneRoot", "vyr::AffineMatrix4x4",
  "vyrSDK::Assembly", "vyrUtil::SimpleCar", "osg::Node", "vyrRender::Color", "vyr::RigidBodyEmitter", "osg::Group",
  "vyr::Vec2", "vyr::Vec4f", "vyr::Vec3f",
  -- Besides the module's list: a class of an undeclared type ends the process.
  "vyr::FrictionModel",
}
samples({
  drawable = function(env)
    vyrOSG.createVisual(env.particles, env.vgroup)
    return vyrOSG.findParticleSystemDrawable(env.vgroup)
  end,
  -- A group that shows the row's geometry, its body and a text.
  shown = function(env)
    vyrOSG.createVisual(env.body, env.vgroup)
    vyrOSG.addText(env.geometry, env.vgroup, "a", env.vec3, env.vec4, 0.1)
    return env.vgroup
  end,
  root = function(env)
    vyrOSG.OSGSceneRoot:create(env.vgroup)
    return vyrOSG.OSGSceneRoot:instance()
  end,
  arrows = function() return vyrOSG.ForceArrowRenderer() end,
  constraints = function() return native.given("vyrOSG::Constraint1DOFObserverVector") end,
}, {
  ["vyrOSG::ParticleSystemDrawable"] = "drawable", ["vyrOSG::OSGSceneRoot"] = "root",
  ["vyrOSG::ForceArrowRenderer"] = "arrows",
})
shared()

namespace "vyrOSG"
class("GeometryNode")
back()
constants {
  "DIFFUSE_TEXTURE", 0, "SHADOW_TEXTURE", 1, "SHADOW_JITTER_TEXTURE", 2, "NORMALMAP_TEXTURE", 3, "HEIGHTMAP_TEXTURE", 4,
  "SPECULARMAP_TEXTURE", 5, "SPHEREMAP_TEXTURE", 6,
}
class("ParticleSystemDrawable")
constants { "SPRITES", 0, "TRIANGLES", 1, "SIMPLE_SPRITES", 0, "ROTATION_SPRITES", 1, "ALPHA_SPRITES", 2 }
row "enum vyrOSG::ParticleSystemDrawable::ParticleShaderMode getParticleShaderMode() const"
row "void setParticleShaderMode(enum vyrOSG::ParticleSystemDrawable::ParticleShaderMode mode)"
back()

row { "vyrOSG::GeometryNode* findGeometryNode(const vyrCollide::Geometry* geometry, osg::Group* group)", with = "geometry, shown" }
row { "bool setCubeMapTexture(osg::Node* node, const std::string& path)",
  reaches = 'bool vyrOSG::setCubeMapTexture(osg::Node*, const std::string&, const std::string& = ".dds")', gives = "false, 'text2'" }
row { "bool setCubeMapTexture(osg::Node* node, const std::string& path, const std::string& imageType)", gives = "false, 'text2', 'text3'" }
row "void setEnvMapReflectionCoefficient(osg::Node* node, float coefficient)"
row "bool setTexture(const vyrCollide::Geometry* geometry, vyrOSG::Group* group, const std::string& imagePath, bool repeat = false, enum vyrOSG::TextureMode mode = 0)"
row "bool setTexture(const vyr::RigidBody* body, vyrOSG::Group* group, const std::string& imagePath, bool repeat = false, enum vyrOSG::TextureMode mode = 0)"
row { "bool setTexture(osg::Node* node, const std::string& imagePath, bool repeat = false, enum vyrOSG::TextureMode mode = 0, float scaleU = 1, float scaleV = 1)",
  gives = "false, 'text2'" }
row "bool setTexture(osg::Node* node, osg::Texture2D* texture, bool repeat = false, enum vyrOSG::TextureMode mode = 0, float scaleU = 1, float scaleV = 1)"
row { "bool addText(const vyrCollide::Geometry* geometry, vyrOSG::Group* group, const std::string& text, const vyr::Vec3& position, const vyr::Vec4& color, double size)",
  with = "geometry, shown", gives = "true, 'text3'" }
row { "bool addText(const vyrCollide::Geometry* geometry, vyrOSG::Group* group, const std::string& text, const vyr::Vec3& position, const vyrRender::Color& color, double size)",
  reaches = "bool vyrOSG::addText(const vyrCollide::Geometry*, vyrOSG::Group*, const std::string&, const vyr::Vec3&, const vyr::Vec4&, double)",
  with = "geometry, shown", gives = "true, 'text3'" }
-- These two are made by the wrapper itself.
row { "void setUniformInt(osg::Node* node, const std::string& name, int value)", reaches = false, with = "node, 'u', 3.7", gives = "'u'",
  seen = "node:getStateSet():getUniform('u'):getType() == osg.Uniform.INT, select(2, node:getStateSet():getUniform('u'):getInt(0)) == 3" }
row { "void setUniformFloat(osg::Node* node, const std::string& name, float value)", reaches = false, with = "node, 'u', 3.7", gives = "'u'",
  seen = "node:getStateSet():getUniform('u'):getType() == osg.Uniform.FLOAT,"
    .. " select(2, node:getStateSet():getUniform('u'):getFloat(0)) == native.narrow(3.7)" }
row { "osgText::Text* findText(const vyrCollide::Geometry* geometry, vyrOSG::Group* group, size_t index = 0)", with = "geometry, shown, 0.7", seen = "vyrOSG.findText(geometry, shown) ~= nil" }
row { "bool createGrid(unsigned int resolutionU, unsigned int resolutionV, const vyr::Vec3& corner, const vyr::Vec3& edgeU, const vyr::Vec3& edgeV, osg::Group* group)",
  with = "2.7, 3.7, vyr.Vec3(0, 0, 0), vyr.Vec3(1, 0, 0), vyr.Vec3(0, 1, 0)", gives = "true" }

-- Axes: the overloads without a colour pass one that lets each axis keep its own.
local function axes(name, arguments, holders)
  local list, native = {}, {}
  for index, argument in ipairs(arguments) do list[index], native[index] = argument, argument:gsub(" [%w]+$", "") end
  local start = table.concat(list, ", ")
  local operation = ("vyrOSG::createAxes(%s, osg::Group*, float, const vyr::Vec4&"):format(table.concat(native, ", "))
  holders = holders or { "osg::Group", "osg::Group" }
  row { ("void %s(%s, %s* group, float scale = 1)"):format(name, start, holders[1]), reaches = operation .. " = vyr::Vec4(0, 0, 0, 0))" }
  row { ("void %s(%s, %s* group, float scale, const %s& color)"):format(name, start, holders[2], holders[3] or "vyr::Vec4"),
    reaches = operation .. ")" }
end
axes("createAxesGivenFrame", { "vyrCollide::Geometry* geometry", "vyr::Frame* frame" })
axes("createAxes", { "vyrCollide::Geometry* geometry", "vyr::AffineMatrix4x4 transform" })
axes("createAxesGivenFrame", { "vyr::RigidBody* body", "vyr::Frame* frame" })
axes("createAxes", { "vyr::RigidBody* body", "vyr::AffineMatrix4x4 transform" })
axes("createAxes", { "vyr::Constraint* constraint" })
axes("createAxes", { "vyr::Constraint* constraint" }, { "vyrOSG::Group", "vyrOSG::Group", "vyrRender::Color" })

-- A colour serves wherever four numbers do.
local function colors(name, before, after)
  for _, type in ipairs { "vyr::Vec4", "vyrRender::Color" } do
    row { ("void %s(%sconst %s& color%s)"):format(name, before, type, after),
      reaches = ("vyrOSG::%s(%sconst vyr::Vec4& color%s)"):format(name, before, after) }
  end
end
colors("setDiffuseColor", "osg::Node* node, ", "")
colors("setDiffuseColor", "vyr::RigidBody* body, ", ", vyrOSG::Group* group")
colors("setSpecularColor", "osg::Node* node, ", "")
row "void setShininess(osg::Node* node, float shininess)"
colors("setAmbientColor", "osg::Node* node, ", "")
row "void setAlpha(osg::Node* node, float alpha)"
colors("setDiffuseColor", "vyrCollide::Geometry* geometry, ", ", vyrOSG::Group* group")

row "vyrOSG::GeometryNode* createVisual(const vyrCollide::Geometry* geometry, vyrOSG::Group* group, float detailRatio = 0.3, bool createAxes = false, bool evenIfSensor = false)"
row "vyrOSG::Group* createVisual(vyr::RigidBody* body, vyrOSG::Group* group, float detailRatio = 0.3, bool createAxes = false)"
row { "osg::Geode* createVisual(vyr::ParticleSystem* particles, vyrOSG::Group* group, enum vyrOSG::ParticleSystemDrawable::ParticleRenderingMode renderingMode = 0,"
  .. " enum vyrOSG::ParticleSystemDrawable::ParticleShaderMode shaderMode = 1)", with = "particles, vgroup, 1.7, 2.7" }
row "osg::Group* createVisual(vyr::RigidBodyEmitter* emitter, vyrOSG::Group* group)"
row { "vyrOSG::ParticleSystemDrawable* findParticleSystemDrawable(osg::Group* group)", before = "vyrOSG.createVisual(particles, vgroup)", with = "vgroup" }
row "osg::Geode* createParticleContactGraph(vyr::ParticleSystem* particles, vyrOSG::Group* group, double low, double high)"
row { "osg::Geode* createParticleTrajectoriesVisual(vyr::ParticleSystem* particles, vyrOSG::Group* group, double interval, size_t count)" }
row { "osg::Geode* createRigidBodyTrajectoriesVisual(vyrSDK::Simulation* simulation, vyrOSG::Group* group, double interval, size_t count)",
  reaches = "osg::Geode* vyrOSG::createRigidBodyTrajectoriesVisual(vyrSDK::Simulation*, vyrOSG::Group*, double, size_t, const vyr::Vec4& = vyr::Vec4(0.5, 0.5, 0.5, 1))" }
row "osg::Geode* createRigidBodyTrajectoriesVisual(vyrSDK::Simulation* simulation, vyrOSG::Group* group, double interval, size_t count, const vyr::Vec4& color)"
row "vyrOSG::Group* createVisual(vyrUtil::SimpleCar* car, vyrOSG::Group* group, float detailRatio = 0.3)"
row "vyrOSG::Group* createVisual(vyrSDK::Assembly* assembly, vyrOSG::Group* group, float detailRatio = 0.3, bool createAxes = false)"
row { "void setEnableLight(bool enable, int number, osg::Node* node)", with = "true, 1.7, node" }
row "bool forceWireFrameModeOn(osg::Node* node)"
row { "vyrUtil::SimpleCar* createSimpleBoxCar(const vyr::Vec3& size, double mass, vyrSDK::Simulation* simulation, vyrOSG::Group* group, bool flag = true)",
  with = "vyr.Vec3(4, 2, 1), 1000.5" }

class("OSGSceneRoot", { base = "vyrUtil::SceneRoot" })
row "static vyrOSG::OSGSceneRoot* instance()"
row "static void create(vyrOSG::Group* root)"
row { "static vyrOSG::Group* get()", before = "vyrOSG.OSGSceneRoot:set(vgroup)", gives = "vgroup" }
row "static void set(vyrOSG::Group* root)"
row "bool createVisual(vyr::RigidBody* body, float detailRatio = 0.3)"
row "bool createVisual(vyrCollide::Geometry* geometry, float detailRatio = 0.3)"

-- The vectors are handed about only.
class("Constraint1DOFObserverVector")
class("Constraint1DOFObserverVectorVec3PairVector")
class("GeometryObserverVec3PairVector")
class("ExponentialMovingAverageStatisticVector")

class("ForceArrowRenderer", { base = "vyrSDK::GuiEventListener", collector = "drops" })
constructor "ForceArrowRenderer()"
row "void add(vyr::RigidBody* body, const vyr::Vec3& vector)"
row { "bool remove(vyr::RigidBody* body)", before = "self:add(body, vec3)", with = "body", gives = "true" }
row "void add(vyrOSG::Constraint1DOFObserverVector& constraints, const vyr::Vec3& vector)"
row { "bool remove(vyr::Constraint1DOF* constraint)", gives = "false" }
row { "bool remove(vyrOSG::Constraint1DOFObserverVector& constraints)", before = "self:add(constraints, vec3)", with = "constraints" }
for _, quantity in ipairs { "SmoothFactor", "ConeLength", "ArrowRadius", "Scale" } do
  row { "void set" .. quantity .. "(const double& value)", with = "0.7", gives = "0.7", seen = ("self:get%s() == 0.7"):format(quantity) }
  row("double get" .. quantity .. "() const")
end
