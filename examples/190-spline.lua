-- A curve through given points, drawn as a tube; balls run along it, and a second curve shows where it climbs.
-- tour: 2
--
--   vyr examples/190-spline.lua

function buildScene(sim, app, root)
  local ground = vyrOSG.SimulationObject:createBox("ground", vyr.AffineMatrix4x4:translate(0, 0, -0.2),
    vyr.Vec3(14, 14, 0.4), root, sim, vyr.RigidBody.STATIC)
  vyrOSG.setDiffuseColor(ground:getNode(), vyr.Vec4(0.60, 0.64, 0.68, 1))

  -- A closed roller coaster: the curve goes through every point.
  local track, heights = vyrUtil.Spline(), vyr.RealVector()
  for i = 0, 24 do
    local a = i / 24 * 2 * math.pi
    local z = 1.6 + 1.2 * math.sin(3 * a)
    track:add(vyr.Vec3(4.6 * math.cos(a), 3.4 * math.sin(a), z))
    heights:push_back(z)
  end
  local tube = vyrOSG.SplineRenderer(track, root)
  tube:setRadius(0.09)
  tube:setNumSegmentsPerUnitLength(14)
  -- One value a point: the lowest is blue, the highest red.
  tube:update(heights)

  -- Posts carry it.
  for i = 0, 23, 2 do
    local p = track:getPoint(i)
    local post = vyrUtil.Spline()
    post:add(vyr.Vec3(p.x, p.y, 0))
    post:add(p)
    local renderer = vyrOSG.SplineRenderer(post, root)
    renderer:setRadius(0.035)
    renderer:setColor(vyr.Vec4(0.35, 0.37, 0.40, 1))
    renderer:update()
    posts = posts or {}
    posts[#posts + 1] = renderer
  end

  -- Balls move along the curve with a given speed.
  local balls = {}
  for i = 1, 6 do
    local ball = vyrOSG.SimulationObject:createSphere("ball " .. i, vyr.AffineMatrix4x4(), 0.24, root, sim,
      vyr.RigidBody.KINEMATICS)
    vyrOSG.setDiffuseColor(ball:getNode(), vyr.Vec4(0.93, 0.93, 0.90, 1))
    balls[i] = ball:getRigidBody()
  end
  sim:add(vyrSDK.StepEventListener { pre = function(time)
    for i, ball in ipairs(balls) do
      local p = track:evaluate((time * 2 + i * 4) % 24)
      ball:setPosition(vyr.Vec3(p.x, p.y, p.z + 0.33))
    end
  end })
  tracks = { tube }

  local decorator = app:getSceneDecorator()
  decorator:setBackgroundColor(vyr.Vec3(0.42, 0.60, 0.80), vyr.Vec3(0.88, 0.91, 0.93))
  decorator:setEnableShadows(true)
  app:setCameraHome(vyr.Vec3(7.5, -10, 6.5), vyr.Vec3(0, 0, 1.2))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
