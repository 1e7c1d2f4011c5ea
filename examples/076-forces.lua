-- Forces: grains under a block show the forces between them, boxes show the force that carries each of them.
-- tour: 4
--
--   vyr examples/076-forces.lua

function buildScene(sim, app, root)
  local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
  local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end
  local STATIC = vyr.RigidBody.STATIC
  local function fixed(name, place, size, color)
    local object = S:createBox(name, place, size, root, sim, STATIC)
    vyrOSG.setDiffuseColor(object:getNode(), color)
    return object
  end

  fixed("ground", at(0, 0, -0.25), Vec3(40, 30, 0.5), Vec4(0.86, 0.87, 0.88, 1))

  -- A narrow bin with glass in front, filled with a single layer of grains of three sizes, and a block that presses
  -- on them.
  local wood = Vec4(0.55, 0.42, 0.30, 1)
  fixed("left", at(-4.05, 0, 1.1), Vec3(0.1, 0.34, 2.2), wood)
  fixed("right", at(-0.95, 0, 1.1), Vec3(0.1, 0.34, 2.2), wood)
  fixed("back", at(-2.5, 0.17, 1.1), Vec3(3.2, 0.06, 2.2), Vec4(0.17, 0.19, 0.23, 1))
  local front = fixed("front", at(-2.5, -0.17, 1.1), Vec3(3.2, 0.06, 2.2), Vec4(0.75, 0.85, 0.90, 1))
  vyrOSG.setAlpha(front:getNode(), 0.12)
  local grains = vyr.ParticleSystem("grains")
  sim:add(grains)
  math.randomseed(1)
  for layer = 0, 10 do
    for column = 0, 12 do
      local radius = 0.08 + 0.02 * math.random(0, 2)
      grains:add(Vec3(-3.85 + 0.225 * column + 0.02 * math.random(), 0, 0.2 + 0.225 * layer), Vec3(), radius, 2000 * radius ^ 3)
    end
  end
  local block = S:createBox("block", at(-2.5, 0, 2.8), Vec3(2.9, 0.24, 0.3), root, sim)
  block:getRigidBody():setMass(200)
  vyrOSG.setDiffuseColor(block:getNode(), Vec4(0.80, 0.55, 0.20, 1))
  -- Blue for 0 N, over green to red for 280 N: chains of strong forces carry the block, past grains that carry little.
  vyrOSG.createParticleContactGraph(grains, root, 0, 280)

  -- Boxes of the same size and of more and more mass. What carries each of them is its weight.
  local renderer = vyrOSG.ForceArrowRenderer()
  renderer:setScale(0.00035)
  renderer:setArrowRadius(0.05)
  sim:add(renderer)
  for i = 1, 4 do
    local box = S:createBox("box " .. i, at(-1 + 1.02 * i, 0, 0.4), Vec3(0.7, 0.7, 0.7), root, sim)
    box:getRigidBody():setMass(100 * i)
    vyrOSG.setDiffuseColor(box:getNode(), Vec4(0.30, 0.45, 0.62, 1))
    renderer:add(box:getRigidBody(), Vec3(0, 0, 0.35))
    vyrOSG.addText(box:getGeometry(), root, 100 * i .. " kg", Vec3(0, -0.5, -0.05), Vec4(1, 1, 1, 1), 0.17)
  end
  app:setCameraHome(Vec3(-0.1, -6.7, 2.7), Vec3(-0.25, 0, 1.2))
  app:getSceneDecorator():setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
