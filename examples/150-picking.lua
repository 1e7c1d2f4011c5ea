-- Rays through the pixels of the picture: a net of them marks what the bodies look like to a pick.
-- tour: 2
--
--   vyr examples/150-picking.lua [WIDTH HEIGHT]     the picture's size in pixels; 1280 720 unless it was asked to differ
--
-- In a window a click marks the point below the pointer, too, and its name appears on the screen.

local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end
local width, height = tonumber(arg[1]) or 1280, tonumber(arg[2]) or 720

function buildScene(sim, app, root)
  local floor = S:createBox("floor", at(0, 0, -0.25), Vec3(14, 10, 0.5), root, sim, vyr.RigidBody.STATIC)
  vyrOSG.setDiffuseColor(floor:getNode(), Vec4(0.50, 0.52, 0.55, 1))
  for i = 0, 4 do
    local x = -4.4 + 2.2 * i
    local crate = S:createBox("crate " .. i, vyr.AffineMatrix4x4:rotate(0.4 * i, Vec3(0, 0, 1)) * at(x, 1.2, 0.7), Vec3(1.4, 1.4, 1.4), root, sim)
    local ball = S:createSphere("ball " .. i, at(x, -1.6, 0.75), 0.75, root, sim)
    vyrOSG.setDiffuseColor(crate:getNode(), Vec4(0.70, 0.50, 0.30, 1))
    vyrOSG.setDiffuseColor(ball:getNode(), Vec4(0.30, 0.48, 0.66, 1))
  end

  -- Marks are bodies that no simulation has: they are seen, and rays pass through them.
  local marks, decorator = {}, app:getSceneDecorator()
  local colors = { floor = Vec4(1, 1, 1, 1), crate = Vec4(1.0, 0.25, 0.15, 1), ball = Vec4(1.0, 0.90, 0.20, 1) }
  local function mark(result)
    local name = result.geometry:getRigidBody():getName()
    local point = S:createSphere("mark", vyr.AffineMatrix4x4:translate(result.worldPoint), 0.05, root, nil)
    vyrOSG.setDiffuseColor(point:getNode(), colors[name:match("%a+")])
    marks[#marks + 1] = point
    return name
  end

  -- After a second all is at rest: a ray through every 64th part of the picture's width. Pixels count from the lower left.
  local cast = false
  sim:add(vyrSDK.StepEventListener({ last = function(time)
    if cast or time < 1 or not app:getCamera() then return end
    cast = true
    local hits, step = {}, width / 64
    for y = step / 2, height, step do
      for x = step / 2, width, step do
        local result = app:getPickHandler():pick(x, y)
        if result.hit then
          local kind = mark(result):match("%a+")
          hits[kind] = (hits[kind] or 0) + 1
        end
      end
    end
    local middle = app:getPickHandler():pick(width / 2, height / 2)
    decorator:setText(0, string.format("floor %d, crates %d, balls %d of %d rays", hits.floor or 0, hits.crate or 0, hits.ball or 0, 64 * 36))
    decorator:setText(1, string.format("the middle of the picture is %.2f m away, on %s", middle.distance,
      middle.hit and middle.geometry:getRigidBody():getName() or "nothing"))
  end }))
  sim:add(vyrSDK.GuiEventListener({ mouse = function(button, x, y, down)
    local result = down and app:getPickHandler():pick(x, y)
    if result and result.hit then decorator:setText(2, "clicked: " .. mark(result)) end
    return false
  end }))
  app:setCameraHome(Vec3(2.5, -10, 5.5), Vec3(0, 0, 0.3))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
