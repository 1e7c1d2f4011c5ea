-- Words and helpers in the scene: titles, labels that follow bodies, axes, a grid, and the paths that bodies take.
--
--   vyr examples/060-text-and-axes.lua

function buildScene(sim, app, root)
  local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
  local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end

  local ground = S:createBox("ground", at(0, 0, -0.25), Vec3(80, 60, 0.5), root, sim, vyr.RigidBody.STATIC)
  vyrOSG.setDiffuseColor(ground:getNode(), Vec4(0.40, 0.44, 0.50, 1))
  -- 16 by 8 cells from a corner along two edges, just above the ground.
  vyrOSG.createGrid(16, 8, Vec3(-8, -4, 0.01), Vec3(16, 0, 0), Vec3(0, 8, 0), root)

  -- A title that always faces the viewer, and one that lies on the ground. Nodes are made with ":new": the scene holds them.
  local title = vyrOSG.Text:new("Thrown at 45 degrees", Vec3(0, 3.5, 4.2), Vec4(1, 1, 1, 1))
  title:setFont("DejaVuSans")
  title:setCharacterSize(0.6)
  title:setAlignment(vyrOSG.Text.CENTER_CENTER)
  root:addChild(title)
  local lying = vyrOSG.Text:new("x", Vec3(7.2, -3.8, 0.02), Vec4(1, 0.4, 0.3, 1))
  lying:setFont("DejaVuSans")
  lying:setCharacterSize(0.8)
  lying:setAxisAlignment(vyrOSG.Text.XY_PLANE)
  root:addChild(lying)

  -- The axes of the world, and three boxes that are thrown, each with its name, its own axes and its speed.
  vyrOSG.createAxes(nil, vyr.AffineMatrix4x4:translate(-7, -2.5, 0.02), root, 1.0)
  local boxes = {}
  for i, name in ipairs({ "Anna", "Bruno", "Clara" }) do
    local box = S:createBox(name, at(-7, -3.5 + 1.75 * i, 0.5), Vec3(0.7, 0.5, 0.4), root, sim)
    local body, geometry = box:getRigidBody(), box:getGeometry()
    local speed = 6 + 1.4 * i
    body:setVelocity(Vec3(speed / math.sqrt(2), 0, speed / math.sqrt(2)))
    body:setAngularVelocity(Vec3(0, 0, 2 - i))
    vyrOSG.createAxes(geometry, vyr.AffineMatrix4x4(), root, 0.8)
    vyrOSG.addText(geometry, root, name, Vec3(0, 0, 0.7), Vec4(1, 0.95, 0.6, 1), 0.4)
    boxes[i] = body
  end

  -- The paths of all moving bodies: a point every 20 ms, at most 500 a body.
  vyrOSG.createRigidBodyTrajectoriesVisual(sim, root, 0.02, 500, Vec4(1, 0.85, 0.3, 1))

  -- A line of text on the screen, renewed after each step.
  local decorator = app:getSceneDecorator()
  sim:add(vyrSDK.StepEventListener({ last = function(time)
    decorator:setText(0, string.format("t = %.2f s", time))
    for i, body in ipairs(boxes) do
      decorator:setText(i, string.format("%s: %.1f m/s", body:getName(), body:getVelocity():length()))
    end
  end }))

  app:setCameraHome(Vec3(0, -13.5, 5), Vec3(0, 0, 1.4))
  app:getSceneDecorator():setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
