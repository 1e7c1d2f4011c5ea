-- A fountain of particles over a few obstacles, and a source that drops pebbles among them.
--
--   vyr examples/070-particles.lua

function buildScene(sim, app, root)
  local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
  local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end
  local STATIC = vyr.RigidBody.STATIC
  local function stone(object, r, g, b) vyrOSG.setDiffuseColor(object:getNode(), Vec4(r, g, b, 1)) end

  -- A basin with a rim, and things to run around.
  local floor = S:createBox("floor", at(0, 0, -0.25), Vec3(8, 8, 0.5), root, sim, STATIC)
  stone(floor, 0.45, 0.48, 0.52)
  for i = 0, 3 do
    local turn = vyr.AffineMatrix4x4:rotate(i * math.pi / 2, Vec3(0, 0, 1))
    local rim = S:createBox("rim " .. i, at(4, 0, 0.2) * turn, Vec3(0.2, 8.2, 0.9), root, sim, STATIC)
    stone(rim, 0.58, 0.55, 0.50)
    local post = S:createCylinder("post " .. i, at(2, 1, 0.6) * turn, 0.35, 1.2, root, sim, STATIC)
    stone(post, 0.70, 0.45, 0.30)
  end

  -- The particles: small balls that collide with everything. Each lives for a few seconds and then fades away.
  local water = vyr.ParticleSystem("water")
  sim:add(water)
  vyrOSG.createVisual(water, root)
  math.randomseed(1)
  local function around(spread) return (2 * math.random() - 1) * spread end
  sim:add(vyrSDK.StepEventListener({ pre = function(time)
    for _ = 1, 3 do
      local number = water:add(Vec3(around(0.1), around(0.1), 0.3), Vec3(around(1.2), around(1.2), 6.5 + around(0.5)), 0.06, 0.001, 4)
      local shade = math.random()
      water:setColor(number, Vec4(0.15 + 0.35 * shade, 0.45 + 0.35 * shade, 0.95, 1))
    end
  end }))

  -- The pebbles: ten a second for five seconds, of random sizes, at random places of a box above the basin.
  local pebbles = vyr.RigidBodyEmitter(5)
  local rock = vyr.Material("pebble", 2600, 0.5, 0.3)
  pebbles:setGeometryFactory(function(index, random)
    local pebble = vyrCollide.Geometry(vyrCollide.Sphere(0.11 + 0.11 * random()))
    pebble:setMaterial(rock)
    return pebble
  end)
  pebbles:setRegion(Vec3(-2.5, -2.5, 4), Vec3(2.5, 2.5, 5))
  pebbles:setRate(10)
  pebbles:setMaximum(50)
  sim:add(pebbles)
  vyrOSG.createVisual(pebbles, root)

  app:setCameraHome(Vec3(6, -9, 6.5), Vec3(0, 0, 0.3))
  app:getSceneDecorator():setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
