-- How an object of each class with a constructor is made and let go; returns class -> function.
local function heights() return vyr.RealVector:fromTable({ 0, 0, 0, 0, 0, 0, 0, 0, 0 }) end
local function terrain() return vyrModel.Terrain(3, 3, 2, 2, heights(), 0.5, vyrModel.Soil()) end
local function geometry() return vyrCollide.Geometry(vyrCollide.Sphere(1)) end
local function body()
  local b = vyr.RigidBody("b")
  b:add(geometry())
  return b
end
local function colors() return vyrRender.ColorVector:fromTable({ vyr.Vec4(0, 0, 1, 1), vyr.Vec4(1, 0, 0, 1) }) end
-- A group for the pictures of what comes and goes; it goes with its owner.
local function parent()
  local owner, group = osg.Camera(), vyrOSG.Group:new()
  owner:addChild(group)
  return group, owner
end
local simulation = vyrSDK.Simulation()
local decorator = vyrOSG.SceneDecorator(64, 64)
local texts = vyrOSG.HudTextManager(decorator)
local application = vyrOSG.ExampleApplication()
local camera = osg.Camera()

local function constraint(class)
  return function() return vyr[class](vyr.Frame(body()), vyr.Frame()) end
end
-- Classes whose objects scripts make by `new`: an owner lets go of them.
local function child(class)
  return function() osg.Camera():addChild(class:new()) end
end

local make = {
  ["osg.StateSet"] = function() osg.Node():setStateSet(osg.StateSet:new()) end,
  ["osg.Uniform"] = function() osg.Node():getOrCreateStateSet():addUniform((osg.Uniform:new(osg.Uniform.FLOAT, "u"))) end,
  ["osg.Group"] = child(osg.Group),
  ["osg.Geode"] = child(osg.Geode),
  ["osg.MatrixTransform"] = child(osg.MatrixTransform),
  ["osg.Transform"] = child(osg.Transform),
  ["vyrOSG.Node"] = child(vyrOSG.Node),
  ["vyrOSG.Group"] = child(vyrOSG.Group),
  ["vyrOSG.Transform"] = child(vyrOSG.Transform),
  ["vyr.Ball"] = constraint "Ball",
  ["vyr.Distance"] = constraint "Distance",
  ["vyr.Hinge"] = constraint "Hinge",
  ["vyr.Lock"] = constraint "Lock",
  ["vyr.Prismatic"] = constraint "Prismatic",
  ["vyr.Suspension"] = constraint "Suspension",
  ["vyr.RigidBody"] = body,
  ["vyr.RigidBodyEmitter"] = function() return vyr.RigidBodyEmitter(1) end,
  ["vyrCollide.Box"] = function() return vyrCollide.Box(1, 1, 1) end,
  ["vyrCollide.Capsule"] = function() return vyrCollide.Capsule(1, 1) end,
  ["vyrCollide.Cylinder"] = function() return vyrCollide.Cylinder(1, 1) end,
  ["vyrCollide.Sphere"] = function() return vyrCollide.Sphere(1) end,
  ["vyrCollide.Geometry"] = geometry,
  ["vyrCollide.HeightField"] = function() return vyrCollide.HeightField(3, 3, 2, 2, heights()) end,
  ["vyrCollide.Trimesh"] = function()
    return vyrCollide.Trimesh({ vyr.Vec3(0, 0, 0), vyr.Vec3(1, 0, 0), vyr.Vec3(0, 1, 0), vyr.Vec3(0, 0, 1) },
      { 0, 2, 1, 0, 1, 3, 1, 2, 3, 2, 0, 3 })
  end,
  ["vyrIO.ArgumentParser"] = function() return vyrIO.ArgumentParser({ "program", "--a", "b" }) end,
  ["vyrModel.HeightFieldDeformer"] = function()
    return vyrModel.HeightFieldDeformer(vyrCollide.Geometry(vyrCollide.HeightField(3, 3, 2, 2, heights())))
  end,
  ["vyrModel.Terrain"] = terrain,
  ["vyrOSG.CameraData"] = function() return vyrOSG.CameraData(camera) end,
  ["vyrOSG.DeformableHeightFieldRenderer"] = function()
    local ground = vyrCollide.Geometry(vyrCollide.HeightField(3, 3, 2, 2, heights()))
    local group, owner = parent()
    return vyrOSG.DeformableHeightFieldRenderer(vyrModel.HeightFieldDeformer(ground), group), owner
  end,
  ["vyrOSG.GeometryNode"] = function() return vyrOSG.GeometryNode(geometry()) end,
  ["vyrOSG.HudTextManager"] = function() return vyrOSG.HudTextManager(decorator) end,
  ["vyrOSG.HudTextManager.ReferencedText"] = function() return vyrOSG.HudTextManager.ReferencedText("a") end,
  ["vyrOSG.ImageCapture"] = function() return vyrOSG.ImageCapture(simulation) end,
  ["vyrOSG.LightSource"] = function() return vyrOSG.LightSource(nil) end,
  ["vyrOSG.PressureFieldRenderer"] = function()
    local group, owner = parent()
    return vyrOSG.PressureFieldRenderer(group), owner
  end,
  ["vyrOSG.PressureFromContacts"] = function() return vyrOSG.PressureFromContacts(vyrSDK.Simulation(), nil) end,
  ["vyrOSG.PressureRenderer"] = function()
    local group, owner = parent()
    return vyrOSG.PressureRenderer(group, decorator, vyrSDK.Simulation(), 0, 1000, colors()), owner
  end,
  ["vyrOSG.RenderStateManager.RenderState"] = function() return vyrOSG.RenderStateManager.RenderState("a") end,
  ["vyrOSG.RenderStateManager.ShaderState"] = function() return vyrOSG.RenderStateManager.ShaderState("a", "b") end,
  ["vyrOSG.RenderToTexture"] = function() return vyrOSG.RenderToTexture(16, 16) end,
  ["vyrOSG.SceneDecorator"] = function() return vyrOSG.SceneDecorator(64, 64) end,
  ["vyrOSG.SimulationObject"] = function() return vyrOSG.SimulationObject(geometry(), vyr.RigidBody("a")) end,
  ["vyrOSG.SimulationPausedPrinter"] = function() return vyrOSG.SimulationPausedPrinter(texts, application) end,
  ["vyrOSG.SimulationTimePrinter"] = function() return vyrOSG.SimulationTimePrinter(texts) end,
  ["vyrOSG.SplineRenderer"] = function()
    local group, owner = parent()
    return vyrOSG.SplineRenderer(vyrUtil.Spline(), group), owner
  end,
  ["vyrOSG.TerrainRenderer"] = function()
    local group, owner = parent()
    return vyrOSG.TerrainRenderer(terrain(), vyr.RangeReal(0, 1), group), owner
  end,
  ["vyrOSG.Tree"] = function()
    local group, owner = parent()
    return vyrOSG.Tree(group), owner
  end,
  ["vyrOSG.TreeRenderer"] = function()
    local group, owner = parent()
    return vyrOSG.TreeRenderer(vyrModel.Tree(), group), owner
  end,
  ["vyrOSG.WireRenderer"] = function()
    local group, owner = parent()
    return vyrOSG.WireRenderer(vyrWire.Wire(1, 4, 1), group), owner
  end,
  ["vyrSDK.GeometryFilter"] = function() return vyrSDK.GeometryFilter(geometry(), geometry()) end,
  ["vyrSDK.GuiEventListener"] = function() return vyrSDK.GuiEventListener({ update = function() end }) end,
  ["vyrSDK.StepEventListener"] = function() return vyrSDK.StepEventListener({ pre = function() end }) end,
  ["vyrUtil.SimpleCar"] = function() return vyrUtil.SimpleCar(vyr.Vec3(4, 2, 1), 1000) end,
  ["vyrWire.Wire"] = function() return vyrWire.Wire(1, 4, 1) end,
}

-- No bound function takes objects of these classes and lets them go again; making them by a call would hand them to the
-- runtime's own collector.
local unowned = { ["osg.HeightField"] = true, ["osg.Uniform.Callback"] = true }

-- Every other class is made without arguments.
local function complete(path, from, seen)
  for key, value in pairs(from) do
    if type(key) == "string" and type(value) == "table" and not key:find("^[%._t]") and not seen[value] then
      seen[value] = true
      local name = path .. key
      if rawget(value, "new") and not make[name] and not unowned[name] then make[name] = function() return value() end end
      complete(name .. ".", value, seen)
    end
  end
end
for _, root in ipairs { "osg", "vyr", "vyrCFG", "vyrCollide", "vyrIO", "vyrModel", "vyrOSG", "vyrRender", "vyrSDK", "vyrUtil", "vyrWire" } do
  complete(root .. ".", _G[root], {})
end

return make
