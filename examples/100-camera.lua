-- The camera circles a ball that rolls through a garden of columns, and the screen tells where the camera is.
-- tour: 4
--
--   vyr examples/100-camera.lua

local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end

function buildScene(sim, app, root)
  local lawn = S:createBox("lawn", at(0, 0, -0.25), Vec3(40, 40, 0.5), root, sim, vyr.RigidBody.STATIC)
  vyrOSG.setDiffuseColor(lawn:getNode(), Vec4(0.36, 0.55, 0.33, 1))

  -- Columns on two rings, the taller the farther round, in colours that run round the circle.
  for i = 0, 35 do
    local angle, radius = i * math.pi / 18, i % 2 == 0 and 9 or 5
    local height = 1.0 + 0.08 * i
    local column = S:createCylinder("column " .. i, at(radius * math.cos(angle), radius * math.sin(angle), height / 2), 0.35,
      height, root, sim, vyr.RigidBody.STATIC)
    local function wave(shift) return 0.55 + 0.35 * math.cos(angle + shift) end
    vyrOSG.setDiffuseColor(column:getNode(), Vec4(wave(0), wave(2.1), wave(4.2), 1))
  end

  -- A ball rolls round between the rings: a force towards the middle keeps it on its circle, m v^2 / r.
  local radius, speed = 7, 4
  local ball = S:createSphere("ball", at(radius, 0, 0.6), 0.6, root, sim)
  vyrOSG.setDiffuseColor(ball:getNode(), Vec4(0.93, 0.90, 0.82, 1))
  local body = ball:getRigidBody()
  body:setVelocity(Vec3(0, speed, 0))
  body:setAngularVelocity(Vec3(-speed / 0.6, 0, 0))

  -- The camera keeps 8 m away from the ball and 4 m above it, and goes round it once in 20 s.
  local node = vyrOSG.findGeometryNode(ball:getGeometry(), root)
  app:setOrbitCamera(node, 8, 4, 0.05)

  -- What a camera sees can be read, changed and given back: here the vertical field of view, in degrees. Without a
  -- picture there is no camera; the record then says that it is not valid.
  local data = app:getCameraData()
  if data.valid then
    data.fieldOfView = 55
    app:applyCameraData(data)
  end

  local decorator = app:getSceneDecorator()
  decorator:setEnableShadows(true)
  decorator:setBackgroundColor(Vec3(0.40, 0.60, 0.85), Vec3(0.85, 0.90, 0.95))
  sim:add(vyrSDK.StepEventListener({ pre = function()
    local place = body:getPosition()
    local inward = Vec3(-place.x, -place.y, 0):normalized()
    body:addForce(inward * (body:getMass() * body:getVelocity():length() ^ 2 / radius))
  end }))
  -- "update" is called for every frame, just before it is drawn.
  sim:add(vyrSDK.GuiEventListener({ update = function()
    local now, direction = app:getCameraData(), app:getViewDirection()
    decorator:setText(0, string.format("eye        %6.2f %6.2f %6.2f m", now.eye.x, now.eye.y, now.eye.z))
    decorator:setText(1, string.format("direction  %6.2f %6.2f %6.2f", direction.x, direction.y, direction.z))
    decorator:setText(2, string.format("field of view %.0f degrees", now.fieldOfView))
  end }))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
