-- Rocks of seven forms fall into a quarry and come to rest as a heap.
-- tour: 5
--
-- In a window:           vyr examples/200-rocks.lua
-- As a picture instead:  vyr --gl=egl --duration 7 --shot t=6:rocks.png examples/200-rocks.lua

local Vec3, Vec4 = vyr.Vec3, vyr.Vec4

local function wall(sim, root, halfExtents, position, tilt, color)
  local body = vyr.RigidBody("wall")
  local geometry = vyrCollide.Geometry(vyrCollide.Box(halfExtents))
  geometry:setMaterial(vyr.Material("ground", 2000, 0.9, 0))
  body:add(geometry)
  body:setPosition(position)
  if tilt then body:setRotation(tilt) end
  body:setMotionControl(vyr.RigidBody.STATIC)
  sim:add(body)
  vyrOSG.setDiffuseColor(vyrOSG.createVisual(body, root), color)
end

function buildScene(sim, app, root)
  local sand, clay = Vec4(0.72, 0.62, 0.46, 1), Vec4(0.60, 0.48, 0.36, 1)
  wall(sim, root, Vec3(14, 14, 0.5), Vec3(0, 0, -0.5), nil, sand)
  wall(sim, root, Vec3(4.5, 0.3, 1.6), Vec3(0, 2.9, 1.2), vyr.Quat(math.rad(-22), Vec3(1, 0, 0)), clay)
  wall(sim, root, Vec3(0.3, 3.0, 1.6), Vec3(-4.2, 0.4, 1.2), vyr.Quat(math.rad(-22), Vec3(0, 1, 0)), clay)
  wall(sim, root, Vec3(0.3, 3.0, 1.6), Vec3(4.2, 0.4, 1.2), vyr.Quat(math.rad(22), Vec3(0, 1, 0)), clay)

  -- 60 rocks of 0.25 m to 0.6 m, over a rectangle of 5 m by 2.4 m, the lowest 1.2 m above the ground. The last number
  -- is the seed: another one gives other rocks.
  local rocks = vyrSDK.Assembly("rocks")
  local granite = vyr.Material("granite", 2700, 0.8, 0.05)
  vyrOSG.RockGenerator():generateRocks(rocks, sim:getSpace(), 60, root, 0.25, 0.6, granite, 1.2, 2.5, 1.2, 4)
  sim:add(rocks)

  -- A few that rolled out of the quarry.
  local strays = vyrSDK.Assembly("strays")
  vyrOSG.RockGenerator():generateRocks(strays, sim:getSpace(), 14, root, 0.12, 0.35, granite, 0.05, 5, 4.5, 11)
  sim:add(strays)

  local mass = 0
  for _, rock in ipairs(rocks:getRigidBodies()) do mass = mass + rock:getMass() end
  local decorator = app:getSceneDecorator()
  decorator:setText(0, string.format("%d rocks of %d forms, %.1f t", #rocks:getRigidBodies(),
    vyrOSG.RockGenerator.NUM_ROCK_TYPES, mass / 1000))
  decorator:setBackgroundColor(Vec3(0.46, 0.62, 0.80), Vec3(0.90, 0.90, 0.86))
  decorator:setEnableShadows(true)
  app:setCameraHome(Vec3(3.2, -9.2, 5.0), Vec3(0, 0.3, 0.7))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
