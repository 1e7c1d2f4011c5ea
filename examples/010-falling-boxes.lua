-- Coloured boxes fall on a ground and come to rest.
--
-- In a window:           vyr examples/010-falling-boxes.lua
-- As a picture instead:  vyr --gl=egl --duration 4 --shot t=3.5:boxes.png examples/010-falling-boxes.lua

-- The application calls this function when the scene is chosen. It gets the simulation to put bodies into, the
-- application itself, and the group that everything visible hangs under. Units: metres, kilograms, seconds; z is up.
function buildScene(sim, app, root)
  -- The ground is a wide flat box that never moves. A box is given by its half extents.
  local ground = vyr.RigidBody("ground")
  ground:add(vyrCollide.Geometry(vyrCollide.Box(vyr.Vec3(5, 5, 0.25))))
  ground:setPosition(vyr.Vec3(0, 0, -0.25))
  ground:setMotionControl(vyr.RigidBody.STATIC)
  sim:add(ground)
  vyrOSG.setDiffuseColor(vyrOSG.createVisual(ground, root), vyr.Vec4(0.55, 0.58, 0.62, 1))

  -- Boxes on a winding stair in the air, each turned against the one before.
  local colors = { vyr.Vec4(0.90, 0.30, 0.24, 1), vyr.Vec4(0.95, 0.61, 0.07, 1), vyr.Vec4(0.18, 0.70, 0.44, 1),
                   vyr.Vec4(0.20, 0.60, 0.86, 1), vyr.Vec4(0.61, 0.35, 0.71, 1) }
  for i = 1, 40 do
    local box = vyr.RigidBody("box " .. i)
    box:add(vyrCollide.Geometry(vyrCollide.Box(vyr.Vec3(0.4, 0.25, 0.2))))
    box:setPosition(vyr.Vec3(1.2 * math.cos(2.4 * i), 1.2 * math.sin(2.4 * i), 0.6 + 0.35 * i))
    box:setRotation(vyr.Quat(0.7 * i, vyr.Vec3(0.3, 0.2, 1)))
    sim:add(box)
    vyrOSG.setDiffuseColor(vyrOSG.createVisual(box, root), colors[i % #colors + 1])
  end

  -- Where the camera stands, and what it looks at.
  app:setCameraHome(vyr.Vec3(5, -7, 4.5), vyr.Vec3(0, 0, 0.6))
  app:getSceneDecorator():setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
-- The key "1" (re)starts the scene that this very file builds.
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
