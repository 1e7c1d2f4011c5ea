-- How bodies press on a plate: colours for pascals, with a legend.
-- tour: 3
--
-- In a window:           vyr examples/170-pressure.lua       (key "r": record; again: show the maximum; again: go on)
-- As a picture instead:  vyr --gl=egl --duration 4 --shot t=3.5:pressure.png examples/170-pressure.lua

local Vec3, Vec4, Color = vyr.Vec3, vyr.Vec4, vyrRender.Color

local function body(sim, root, name, shape, mass, position, color)
  local geometry = vyrCollide.Geometry(shape, name)
  local made = vyr.RigidBody(name)
  made:add(geometry)
  made:setPosition(position)
  if mass then made:setMass(mass) else made:setMotionControl(vyr.RigidBody.STATIC) end
  sim:add(made)
  vyrOSG.setDiffuseColor(vyrOSG.createVisual(made, root, 0.8), color)
  return made, geometry
end

function buildScene(sim, app, root)
  local steel = Vec4(0.76, 0.78, 0.80, 1)
  body(sim, root, "ground", vyrCollide.Box(Vec3(12, 12, 0.5)), nil, Vec3(0, 0, -0.8), Vec4(0.72, 0.70, 0.66, 1))
  local _, plate = body(sim, root, "plate", vyrCollide.Box(Vec3(3.2, 1.9, 0.15)), nil, Vec3(0, 0, -0.15), steel)

  -- A stack: each box weighs as much as the one below, and the plate carries all of it.
  for i = 0, 2 do
    body(sim, root, "box " .. i, vyrCollide.Box(Vec3(0.42, 0.42, 0.22)), 250, Vec3(-2.1, 0.4, 0.22 + 0.44 * i),
      Vec4(0.85, 0.55 + 0.1 * i, 0.25, 0.30))
  end
  -- A ball presses on a spot, a roller on a line.
  body(sim, root, "ball", vyrCollide.Sphere(0.5), 500, Vec3(-0.6, 0.5, 0.5), Vec4(0.80, 0.30, 0.28, 0.30))
  local roller = body(sim, root, "roller", vyrCollide.Cylinder(0.35, 1.3), 700, Vec3(0.8, 0.3, 0.35),
    Vec4(0.30, 0.55, 0.75, 0.30))
  roller:setRotation(vyr.Quat(math.rad(90), Vec3(1, 0, 0)))
  -- A post that is pushed at its head leans on the plate's far side.
  local post = body(sim, root, "post", vyrCollide.Box(Vec3(0.4, 0.4, 0.7)), 450, Vec3(2.2, 0.3, 0.7),
    Vec4(0.45, 0.68, 0.40, 0.30))
  sim:add(vyrSDK.StepEventListener{ pre = function()
    post:addForceAtPosition(Vec3(0, -520, 0), post:getPosition() + Vec3(0, 0, 0.7))
  end })

  -- From 0 to 20 kPa, 50 texels a metre; a newton takes at least 1/15000 m^2.
  local scale = vyrRender.ColorVector()
  for _, name in ipairs { "#1f3fbf", "#1fa6d9", "#35b56a", "#f2d53c", "#e0341c" } do scale:push_back(Color:named(name)) end
  local decorator = app:getSceneDecorator()
  local pressure = vyrOSG.PressureRenderer(root, decorator, sim, 0, 20e3, scale, 50, 1 / 15e3,
    vyrOSG.PressureFromContacts.NORMAL_FORCE)
  -- The colours lie over the plate and are clear where nothing presses. The legend is for pictures of any height.
  pressure:addGeometry(plate, false)
  pressure:setLegendPosition(vyr.Vec2(24, 24))

  -- Record, show the maximum of the recording, and go back to the pressure of now.
  sim:add(vyrSDK.GuiEventListener{ keyboard = function(key, modifiers, x, y, down)
    if key ~= string.byte("r") or not down then return false end
    if pressure:isRecording() then
      pressure:renderMaxPressure(pressure:stopMaxAvgRecording())
    elseif not pressure:restoreRendering() then
      pressure:startMaxAvgRecording()
    end
    return true
  end })

  decorator:setBackgroundColor(Vec3(0.42, 0.60, 0.80), Vec3(0.88, 0.91, 0.93))
  decorator:setEnableShadows(true)
  app:setCameraHome(Vec3(-1.0, -6.2, 4.0), Vec3(-0.25, 0.0, 0.15))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
