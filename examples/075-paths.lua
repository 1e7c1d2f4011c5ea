-- Paths: balls that bounce down stairs draw grey lines behind them, the drops of a fountain lines in their own colours.
-- tour: 3.2
--
--   vyr examples/075-paths.lua

function buildScene(sim, app, root)
  local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
  local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end
  local STATIC = vyr.RigidBody.STATIC

  local floor = S:createBox("floor", at(0, 0, -0.25), Vec3(40, 30, 0.5), root, sim, STATIC)
  vyrOSG.setDiffuseColor(floor:getNode(), Vec4(0.86, 0.87, 0.88, 1))
  local elastic = vyr.Material("rubber", 900, 0.4, 0.8)
  for i = 1, 5 do
    local stair = S:createBox("stair " .. i, at(-4.6 + 0.9 * i, 0, 0.25 * (6 - i)), Vec3(0.9, 4, 0.5 * (6 - i)), root, sim, STATIC)
    stair:getGeometry():setMaterial(elastic)
    vyrOSG.setDiffuseColor(stair:getNode(), Vec4(0.62, 0.66, 0.72, 1))
  end

  -- Three balls, each thrown a little faster than the one before.
  local colors = { Vec4(0.85, 0.25, 0.20, 1), Vec4(0.95, 0.65, 0.15, 1), Vec4(0.25, 0.50, 0.85, 1) }
  for i = 1, 3 do
    local ball = S:createSphere("ball " .. i, at(-4.2, 2 - i, 3.6), 0.18, root, sim)
    ball:getGeometry():setMaterial(elastic)
    ball:getRigidBody():setVelocity(Vec3(0.9 + 0.5 * i, 0, 1))
    vyrOSG.setDiffuseColor(ball:getNode(), colors[i])
  end
  -- A point every 0.02 s, as many as there will be.
  vyrOSG.createRigidBodyTrajectoriesVisual(sim, root, 0.02, 0, Vec4(0.15, 0.17, 0.22, 1))

  -- One drop every twentieth of a second, in turn around the compass; each lives for 1.6 s.
  local drops = vyr.ParticleSystem("drops")
  sim:add(drops)
  vyrOSG.createVisual(drops, root)
  local count = 0
  sim:add(vyrSDK.StepEventListener { pre = function(time)
    if time < 0.05 * count then
      return
    end
    local turn = 2.4 * count
    count = count + 1
    local drop = drops:add(Vec3(4, 0, 0.2), Vec3(1.6 * math.cos(turn), 1.6 * math.sin(turn), 7), 0.07, 0.001, 1.6)
    drops:setColor(drop, vyr.Vec4(0.5 + 0.4 * math.cos(turn), 0.5 + 0.4 * math.cos(turn - 2.1), 0.5 + 0.4 * math.cos(turn + 2.1), 1))
  end })
  vyrOSG.createParticleTrajectoriesVisual(drops, root, 0.02, 60)

  app:setCameraHome(Vec3(1.5, -9.5, 4.4), Vec3(0.6, 0, 1.5))
  app:getSceneDecorator():setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
