-- Balls of different springiness bounce, and a head-up display tells how high each of them rises.
-- tour: 2.4
--
--   vyr examples/120-hud.lua

local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end

function buildScene(sim, app, root)
  local function springy(object, restitution)
    object:getGeometry():setMaterial(vyr.Material("springy", 1000, 0.5, restitution))
  end
  local floor = S:createBox("floor", at(0, 0, -0.25), Vec3(16, 6, 0.5), root, sim, vyr.RigidBody.STATIC)
  vyrOSG.setDiffuseColor(floor:getNode(), Vec4(0.42, 0.46, 0.52, 1))

  -- The manager writes its lines from the top of the screen down: the constant ones, then the texts that their owners
  -- change, then the lines of the step. As a listener of the simulation it does so after every step.
  local hud = vyrOSG.HudTextManager(app:getSceneDecorator())
  sim:add(hud)
  hud:addConstantText("Balls that fall from 4 m")
  hud:addConstantText(string.rep("-", 32))

  -- Two ready-made printers add a line for the time, and one while the simulation is paused (space bar).
  sim:add(vyrOSG.SimulationTimePrinter(hud))
  sim:add(vyrOSG.SimulationPausedPrinter(hud, app))

  local balls = {}
  for i = 1, 5 do
    -- The springier of two things that hit counts: here the ball.
    local restitution, x = 0.4 + 0.1 * i, -3.6 + 1.6 * i
    local ball = S:createSphere("ball " .. i, at(x, 0, 4.5), 0.5, root, sim)
    springy(ball, restitution)
    vyrOSG.setDiffuseColor(ball:getNode(), Vec4(1.0 - 0.15 * i, 0.25 + 0.1 * i, 0.10 + 0.17 * i, 1))
    vyrOSG.addText(ball:getGeometry(), root, string.format("%.1f", restitution), Vec3(0, 0, 0.8), Vec4(1, 1, 1, 1), 0.45)
    -- The manager shows a text for as long as it is alive: the table keeps it so.
    local text = vyrOSG.HudTextManager.ReferencedText("")
    hud:addReferencedText(text)
    balls[i] = { body = ball:getRigidBody(), restitution = restitution, text = text, highest = 0, bounced = false }
  end

  sim:add(vyrSDK.StepEventListener({ post = function(time)
    local moving = 0
    for _, ball in ipairs(balls) do
      local rising, height = ball.body:getVelocity().z, ball.body:getPosition().z - 0.5
      ball.bounced = ball.bounced or rising > 0.1
      if ball.bounced then ball.highest = math.max(ball.highest, height) end
      if math.abs(rising) > 0.1 then moving = moving + 1 end
      ball.text:setText(string.format("restitution %.1f: now %.2f m, rose to %.2f m", ball.restitution, height, ball.highest))
    end
    hud:addText(string.format("%d of %d are moving", moving, #balls)) -- for this step alone
  end }))

  app:getSceneDecorator():setEnableShadows(true)
  app:setCameraHome(Vec3(-2, -15, 4.4), Vec3(-2, 0, 2.6))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
