-- A car with springs and a driver: it goes round by itself until an arrow key is pressed, and then obeys the keys.
--
--   vyr examples/080-car.lua

-- The codes of the arrow keys as the window hands them over.
local LEFT, UP, RIGHT, DOWN = 0xFF51, 0xFF52, 0xFF53, 0xFF54

function buildScene(sim, app, root)
  local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
  local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end
  local function paint(object, r, g, b) vyrOSG.setDiffuseColor(object:getNode(), Vec4(r, g, b, 1)) end

  local ground = S:createBox("ground", at(0, 0, -0.5), Vec3(60, 60, 1), root, sim, vyr.RigidBody.STATIC)
  paint(ground, 0.62, 0.66, 0.62)
  local here = arg[0]:match("^(.*/)") or "./"
  vyrOSG.setTexture(ground:getNode(), here .. "data/tiles.png", true, vyrOSG.DIFFUSE_TEXTURE, 15, 15)

  -- A speed bump, and a wall of cartons in the way.
  local lying = vyr.AffineMatrix4x4:rotate(math.pi / 2, Vec3(1, 0, 0))
  local bump = S:createCylinder("bump", lying * at(6, 0, -0.35), 0.5, 6, root, sim, vyr.RigidBody.STATIC)
  paint(bump, 0.85, 0.70, 0.20)
  for row = 0, 3 do
    for column = 0, 4 do
      local carton = S:createBox("carton " .. row .. column, at(14, -2 + column + 0.5 * (row % 2), 0.4 + 0.8 * row), Vec3(0.8, 0.9, 0.8), root, sim)
      carton:getRigidBody():setMass(8)
      paint(carton, 0.75 - 0.05 * row, 0.58, 0.38)
    end
  end

  -- The car: its chassis is 3.6 m long, 1.6 m wide, 0.7 m high and weighs 900 kg.
  local car = vyrOSG.createSimpleBoxCar(Vec3(3.6, 1.6, 0.7), 900, sim, root)
  car:transform(at(-6, 0, 1))

  -- Which of the keys are down; as long as none ever was, the car drives by itself.
  local keys, driven = {}, false
  sim:add(vyrSDK.GuiEventListener({ keyboard = function(key, modifiers, x, y, down)
    if key ~= LEFT and key ~= RIGHT and key ~= UP and key ~= DOWN then return false end
    keys[key], driven = down, true
    return true
  end }))
  sim:add(vyrSDK.StepEventListener({ pre = function(time)
    if driven then
      car:setThrottle((keys[UP] and 1 or 0) - (keys[DOWN] and 1 or 0))
      car:setSteering((keys[LEFT] and 1 or 0) - (keys[RIGHT] and 1 or 0))
    else
      car:setThrottle(time > 0.5 and car:getSpeed() < 9 and 1 or 0)
      car:setSteering(time > 3.5 and 0.5 or 0)
    end
    app:getSceneDecorator():setText(0, string.format("%.0f km/h   arrow keys drive", 3.6 * math.abs(car:getSpeed())))
  end }))

  app:setCameraHome(Vec3(1, -13, 6), Vec3(8, 0, 0.5))
  app:getSceneDecorator():setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
