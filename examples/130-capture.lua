-- Dominoes fall, and the recorder writes two seconds of it as numbered pictures, exactly 25 for each second.
-- tour: 3
--
--   vyr examples/130-capture.lua           counts the pictures and removes them
--   vyr examples/130-capture.lua FOLDER    keeps them there, as FOLDER/domino_00000.png and so on

local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end

local fps, seconds = 25, 2
local folder = arg[1]
if not folder then
  -- Lua gives the name of a file of its own: with an ending it serves as the name of a folder.
  local name = os.tmpname()
  os.remove(name)
  folder = name .. "-pictures"
end

function buildScene(sim, app, root)
  local table_ = S:createBox("table", at(0, 0, -0.1), Vec3(10, 10, 0.2), root, sim, vyr.RigidBody.STATIC)
  vyrOSG.setDiffuseColor(table_:getNode(), Vec4(0.30, 0.34, 0.40, 1))
  -- A spiral of dominoes; each stands across the way.
  local angle, radius = 0, 4
  for i = 0, 72 do
    local place = vyr.AffineMatrix4x4:rotate(angle, Vec3(0, 0, 1)) * at(radius * math.cos(angle), radius * math.sin(angle), 0.4)
    local domino = S:createBox("domino " .. i, place, Vec3(0.45, 0.09, 0.8), root, sim)
    local share = i / 72
    vyrOSG.setDiffuseColor(domino:getNode(), Vec4(0.95 - 0.6 * share, 0.35 + 0.35 * share, 0.25 + 0.65 * share, 1))
    if i == 0 then domino:getRigidBody():setAngularVelocity(Vec3(-3, 0, 0)) end
    angle, radius = angle + 0.42 / radius, radius - 0.016
  end
  app:setCameraHome(Vec3(0, -10, 6), Vec3(0, 0, 0))
  app:getSceneDecorator():setEnableShadows(true)

  -- The recorder's clock is the simulation's: every step that a picture is due, it is drawn, however long that takes.
  local capture = app:getImageCapture()
  capture:setDirectoryPath(folder)
  capture:setPrefix("domino_")
  capture:setFps(fps)
  capture:setImageResolution(320, 180)
  if app:getViewer() then capture:startCapture() end -- without graphics there is nothing to write
  sim:add(vyrSDK.StepEventListener({ post = function(time)
    -- Stopped in the step after: the picture of the last moment belongs to the film.
    if time > seconds + 1e-9 then capture:stopCapture() end
  end }))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()

local count = 0
while true do
  local name = string.format("%s/domino_%05d.png", folder, count)
  local file = io.open(name, "rb")
  if not file then break end
  file:close()
  count = count + 1
  if not arg[1] then os.remove(name) end
end
if not arg[1] then os.remove(folder) end
print(string.format("%d pictures of %g s", count, math.min(seconds, app:getTimeStamp())))
