-- Who holds what, for every class that scripts construct: in scenes, in simulations, and after `delete`. Runs in both modes
-- of collectors.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

local hasCollectors = rawget(osg.Group, ".collector") ~= nil

local function collect()
  collectgarbage()
  collectgarbage()
end

local function isDead(object)
  return tostring(object):find("^deleted ") ~= nil
end

-- Nodes by class; those without a collector of their own are made by `new`, unless the mode gives them one.
local nodeClasses = {
  ["osg.Node"] = osg.Node, ["osg.Group"] = osg.Group, ["osg.MatrixTransform"] = osg.MatrixTransform,
  ["osg.Transform"] = osg.Transform, ["osg.Geode"] = osg.Geode, ["vyrOSG.Node"] = vyrOSG.Node,
  ["vyrOSG.Group"] = vyrOSG.Group, ["vyrOSG.Transform"] = vyrOSG.Transform,
}

-- A group, and what holds it.
local function makeScene()
  local owner, scene = osg.Camera(), vyrOSG.Group:new()
  owner:addChild(scene)
  return scene, owner
end

local function makeNode(class)
  return (hasCollectors or rawget(class, ".collector")) and class() or class:new()
end

function testNodesInASceneOutliveTheirVariables()
  for name, class in pairs(nodeClasses) do
    local scene, owner = makeScene()
    local node = makeNode(class)
    scene:addChild(node)
    node = nil
    collect()
    check.equal(scene:getNumChildren(), 1, name)
    check.equal(scene:getChild(0):getNumParents(), 1, name)
    check.isFalse(isDead(owner))
  end
end

function testNodesOfASceneAreTheSameObjects()
  for name, class in pairs(nodeClasses) do
    local scene, owner = makeScene()
    local node = makeNode(class)
    scene:addChild(node)
    check.isTrue(rawequal(scene:getChild(0), node), name)
    node.remark = "kept"
    check.equal(scene:getChild(0).remark, "kept", name)
    check.isFalse(isDead(owner))
  end
end

function testNodesHeldByLuaOutliveTheirScene()
  for name, class in pairs(nodeClasses) do
    if hasCollectors or rawget(class, ".collector") then
      local scene, node = osg.Camera(), class()
      scene:addChild(node)
      scene = nil
      collect()
      check.isFalse(isDead(node), name)
      check.equal(node:getNumParents(), 0, name)
    end
  end
end

function testNodesMadeByNewGoWithTheirScene()
  for name, class in pairs(nodeClasses) do
    local scene, node = osg.Camera(), class:new()
    scene:addChild(node)
    check.isFalse(isDead(node), name)
    scene = nil
    collect()
    check.isTrue(isDead(node), name)
    check.isFalse((pcall(function() return node:getNumParents() end)), name)
  end
end

function testAWholeSceneGoesAtOnce()
  local scene = osg.Camera()
  local nodes = {}
  local parent = scene
  for depth = 1, 20 do
    local child = vyrOSG.Group:new()
    parent:addChild(child)
    nodes[depth] = child
    parent = child
  end
  parent, scene = nil
  collect()
  for depth = 1, 20 do check.isTrue(isDead(nodes[depth]), "depth " .. depth) end
end

function testBodiesOfASimulationOutliveTheirVariables()
  local simulation = vyrSDK.Simulation()
  simulation:add(vyr.RigidBody("body"))
  simulation:findRigidBody("body"):add(vyrCollide.Geometry(vyrCollide.Sphere(1)))
  collect()
  check.equal(simulation:findRigidBody("body"):getReferenceCount(), 1)
  check.equal(#simulation:findRigidBody("body"):getGeometries(), 1)
end

function testBodiesHeldByLuaOutliveTheirSimulation()
  local simulation, body = vyrSDK.Simulation(), vyr.RigidBody("body")
  simulation:add(body)
  simulation = nil
  collect()
  check.equal(body:getName(), "body")
  check.isNil(body:getSimulation())
  check.equal(body:getReferenceCount(), 1)
end

function testRenderersHeldByTheSceneDrawOn()
  local scene = osg.Camera()
  local group = vyrOSG.Group:new()
  scene:addChild(group)
  local wire = vyrWire.Wire(1, 4, 1)
  local renderer = vyrOSG.WireRenderer(wire, group)
  local children = group:getNumChildren()
  check.isTrue(children > 0)
  wire, renderer = nil
  collect()
  check.isTrue(group:getNumChildren() <= children)
end

function testCountsTellWhoHolds()
  local body = vyr.RigidBody("body")
  check.equal(body:getReferenceCount(), 1)
  check.equal(vyr.RigidBody:new("other"):getReferenceCount(), 0)
  local simulation = vyrSDK.Simulation()
  simulation:add(body)
  check.equal(body:getReferenceCount(), 2)
  simulation:remove(body)
  check.equal(body:getReferenceCount(), 1)
end

function testViewsKeepTheirOwnersAlive()
  local color = osg.Camera():getClearColor()
  local eye = vyrOSG.CameraData(osg.Camera()).eye
  collect()
  check.equal(type(color.r), "number")
  check.equal(type(eye.x), "number")
end

function testDeletedObjectsAreRefused()
  for name, class in pairs { ["vyr.Vec3"] = vyr.Vec3, ["osg.Vec4"] = osg.Vec4, ["osg.Matrixd"] = osg.Matrixd,
                             ["vyrOSG.CameraData"] = vyrOSG.CameraData } do
    local object = name == "vyrOSG.CameraData" and class(osg.Camera()) or class()
    if object.delete then
      object:delete()
      check.isFalse((pcall(function() return object:delete() end)), name)
      object = nil
      collect()
    end
  end
end

function testObjectsOfEveryClassComeAndGo()
  local make = dofile((arg[0]:gsub("lua/[^/]*$", "binding/constructors.lua")))
  local classes = 0
  for name, create in pairs(make) do
    for _ = 1, 3 do create() end
    classes = classes + 1
  end
  collect()
  check.isTrue(classes > 90)
end

check.run()
