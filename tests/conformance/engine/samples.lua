-- Objects for the rows: what a name in a row's `with` stands for, and what a parameter gets that a row says nothing about.
local samples = {}

local function heights() return vyr.RealVector:fromTable({ 0, 0, 0, 0, 0, 0, 0, 0, 0 }) end

-- What was made stays until the end: some objects know others without holding them.
local kept = {}

-- Makers by name; each is called once a row.
local make = {
  vec2 = function() return vyr.Vec2(1.25, -2.5) end,
  vec3 = function() return vyr.Vec3(1.1, -2.2, 3.3) end,
  vec4 = function() return vyr.Vec4(0.1, 0.2, 0.3, 0.4) end,
  quat = function() return vyr.Quat(0, 0, 0.6, 0.8) end,
  matrix = function() return vyr.AffineMatrix4x4() end,
  color = function() return vyrRender.Color(0.4, 0.3, 0.2, 0.1) end,
  node = function() return osg.Node() end,
  group = function() return osg.Group:new() end,
  geode = function() return osg.Geode:new() end,
  transform = function() return osg.MatrixTransform:new() end,
  camera = function() return osg.Camera() end,
  vnode = function() return vyrOSG.Node:new() end,
  vgroup = function() return vyrOSG.Group:new() end,
  vtransform = function() return vyrOSG.Transform:new() end,
  stateSet = function() return osg.StateSet:new() end,
  uniform = function() return (osg.Uniform:new(osg.Uniform.FLOAT, "u")) end,
  light = function() return vyrOSG.LightSource(native.given("osg::LightSource")) end,
  geometry = function() return vyrCollide.Geometry(vyrCollide.Box(0.5, 0.5, 0.5)) end,
  body = function(env)
    local body = vyr.RigidBody("body")
    body:add(env.geometry)
    return body
  end,
  frame = function() return vyr.Frame() end,
  simulation = function() return vyrSDK.Simulation() end,
  decorator = function() return vyrOSG.SceneDecorator(64, 64) end,
  texts = function(env) return vyrOSG.HudTextManager(env.decorator) end,
  app = function() return vyrOSG.ExampleApplication() end,
  arguments = function() return vyrIO.ArgumentParser({ "program" }) end,
  terrain = function() return vyrModel.Terrain(3, 3, 2, 2, heights(), 0.5, vyrModel.Soil()) end,
  ground = function() return vyrCollide.Geometry(vyrCollide.HeightField(3, 3, 2, 2, heights())) end,
  deformer = function(env) return vyrModel.HeightFieldDeformer(env.ground) end,
  hinge = function(env) return vyr.Hinge(vyr.Frame(env.body), vyr.Frame()) end,
  spline = function() return vyrUtil.Spline() end,
  wire = function() return vyrWire.Wire(1, 4, 1) end,
  modelTree = function() return vyrModel.Tree() end,
  car = function() return vyrUtil.SimpleCar(vyr.Vec3(4, 2, 1), 1000) end,
  assembly = function() return vyrSDK.Assembly() end,
  particles = function() return vyr.ParticleSystem() end,
  emitter = function() return vyr.RigidBodyEmitter(1) end,
  vec2f = function() return vyr.Vec2f(1.25, -2.5) end,
  vec3f = function() return vyr.Vec3f(1.25, -2.5, 0.5) end,
  vec4f = function() return vyr.Vec4f(1.25, -2.5, 0.5, 0.75) end,
  spd = function() return vyr.SPDMatrix3x3() end,
}

-- Which of them a parameter or self of a type gets.
local byType = {
  ["vyr::Vec2"] = "vec2", ["vyr::Vec2d"] = "vec2", ["vyr::Vec3"] = "vec3", ["vyr::Vec3d"] = "vec3",
  ["vyr::Vec4"] = "vec4", ["vyr::Vec4d"] = "vec4", ["vyr::Vec2f"] = "vec2f", ["vyr::Vec3f"] = "vec3f",
  ["vyr::Vec4f"] = "vec4f", ["vyr::Quat"] = "quat", ["vyr::AffineMatrix4x4"] = "matrix", ["vyr::SPDMatrix3x3"] = "spd",
  ["vyrRender::Color"] = "color",
  ["osg::Node"] = "node", ["osg::Group"] = "group", ["osg::Geode"] = "geode", ["osg::MatrixTransform"] = "transform",
  ["osg::Camera"] = "camera", ["osg::StateSet"] = "stateSet", ["osg::Uniform"] = "uniform",
  ["vyrOSG::Node"] = "vnode", ["vyrOSG::Group"] = "vgroup", ["vyrOSG::Transform"] = "vtransform",
  ["vyrOSG::LightSource"] = "light", ["vyrOSG::SceneDecorator"] = "decorator", ["vyrOSG::HudTextManager"] = "texts",
  ["vyrOSG::ExampleApplication"] = "app",
  ["vyrCollide::Geometry"] = "geometry", ["vyr::RigidBody"] = "body", ["vyr::Frame"] = "frame",
  ["vyrSDK::Simulation"] = "simulation", ["vyrIO::ArgumentParser"] = "arguments", ["vyrModel::Terrain"] = "terrain",
  ["vyrModel::HeightFieldDeformer"] = "deformer", ["vyr::Constraint"] = "hinge", ["vyr::Constraint1DOF"] = "hinge",
  ["vyrUtil::Spline"] = "spline", ["vyrWire::Wire"] = "wire", ["vyrModel::Tree"] = "modelTree",
  ["vyrUtil::SimpleCar"] = "car", ["vyrSDK::Assembly"] = "assembly", ["vyr::ParticleSystem"] = "particles",
  ["vyr::RigidBodyEmitter"] = "emitter",
}

-- The names of a row, made when they are first used; `self` comes from the row.
function samples.environment()
  local env = {}
  return setmetatable(env, {
    __index = function(_, name)
      local value
      if make[name] then value = make[name](env) else value = _G[name] end
      if make[name] then rawset(env, name, value) end
      return value
    end,
  })
end

-- Adds makers and the types that they serve, for the rows of one table.
function samples.add(makers, types)
  for name, maker in pairs(makers or {}) do make[name] = maker end
  for typeName, name in pairs(types or {}) do byType[typeName] = name end
end

-- What a parameter gets that a row says nothing about: numbers and texts differ from place to place.
function samples.argument(parameter, index)
  if parameter.kind == "number" then
    -- Fractions show truncation and narrowing.
    return parameter.travels == "d" and index + 0.3 or parameter.travels == "f" and index + 0.1 or index + 0.7
  end
  if parameter.kind == "boolean" then return true end
  if parameter.kind == "string" then return "text" .. index end
  return samples.object(parameter.base)
end

-- An object of a class.
function samples.object(typeName)
  local name = byType[typeName]
  if not name then return assert(native.given(typeName), "no sample of " .. typeName) end
  local env = samples.environment()
  kept[#kept + 1] = env
  return env[name]
end

-- Evaluates a list of expressions in a row's environment. Gives the values and their number.
function samples.evaluate(text, env)
  local chunk = assert(loadstring("return " .. text, text))
  setfenv(chunk, env)
  local function pack(...) return { ... }, select("#", ...) end
  return pack(chunk())
end

return samples
