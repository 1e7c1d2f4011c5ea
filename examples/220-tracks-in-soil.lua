-- A car drives over soft ground and leaves ruts: the soil sinks under the wheels, is pushed aside, and keeps its mass.
-- tour: 6
--
--   vyr examples/220-tracks-in-soil.lua

function buildScene(sim, app, root)
  -- Gentle hills, 0.06 m between the heights.
  local columns, rows, sizeX, sizeY = 301, 121, 18, 7.2
  local heights = vyr.RealVector()
  for row = 0, rows - 1 do
    for column = 0, columns - 1 do
      local x, y = column / (columns - 1), row / (rows - 1)
      heights:push_back(0.12 * math.sin(9 * x) * math.cos(5 * y) + 0.05 * math.sin(23 * x + 11 * y))
    end
  end
  local soil = vyrModel.Soil()
  soil.modulus = 2.0e6 -- Pa: a wheel of this car sinks by some centimetres
  local terrain = vyrModel.Terrain(columns, rows, sizeX, sizeY, heights, 0.6, soil)
  sim:add(terrain)
  -- The colours go from dark earth at -0.2 m to grass at 0.2 m; pressed soil is darker.
  sim:add(vyrOSG.TerrainRenderer(terrain, vyr.RangeReal(-0.25, 0.2), root))

  local car = vyrUtil.SimpleCar(vyr.Vec3(2.6, 1.4, 0.5), 900)
  car:getChassis():setPosition(vyr.Vec3(-7, 0, 1.1))
  for wheel = 0, 3 do
    local body = car:getWheel(wheel)
    local p = body:getPosition()
    body:setPosition(vyr.Vec3(p.x - 7, p.y, p.z + 1.1))
  end
  sim:add(car)
  vyrOSG.createVisual(car, root)
  vyrOSG.setDiffuseColor(car:getChassis(), vyr.Vec4(0.78, 0.20, 0.16, 1), root)
  for wheel = 0, 3 do vyrOSG.setDiffuseColor(car:getWheel(wheel), vyr.Vec4(0.16, 0.16, 0.17, 1), root) end

  local mass = terrain:getMass()
  sim:add(vyrSDK.StepEventListener { pre = function(time)
    car:setThrottle(time > 0.5 and car:getSpeed() < 2.6 and 0.8 or 0)
    car:setSteering(0.35 * math.sin(1.6 * time))
    app:getSceneDecorator():setText(0, string.format("%.1f m/s, soil kept to %.4f %%", car:getSpeed(),
      100 * terrain:getMass() / mass))
  end })

  local decorator = app:getSceneDecorator()
  decorator:setBackgroundColor(vyr.Vec3(0.46, 0.62, 0.80), vyr.Vec3(0.92, 0.90, 0.84))
  decorator:setEnableShadows(true)
  app:setCameraHome(vyr.Vec3(-8.4, -4.6, 4.6), vyr.Vec3(-2.0, -0.1, -0.2))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
