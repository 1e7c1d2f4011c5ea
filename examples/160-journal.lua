-- A wall is knocked over and the run is written to a journal; then the journal is played back beside pale pictures of what
-- was: the played run goes through them exactly.
-- tour: 2
--
--   vyr examples/160-journal.lua

local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end
local steps = 240

-- The same bodies in the same order, for the recording as for the playback.
local function buildWall(sim, root)
  local function box(name, place, size, color, motion)
    local object = S:createBox(name, place, size, root, sim, motion or vyr.RigidBody.DYNAMICS)
    if root then vyrOSG.setDiffuseColor(object:getNode(), color) end
    return object:getRigidBody()
  end
  box("floor", at(0, 0, -0.25), Vec3(18, 10, 0.5), Vec4(0.44, 0.48, 0.44, 1), vyr.RigidBody.STATIC)
  for row = 0, 5 do
    for column = 0, 4 do
      local shade = 0.06 * ((row + column) % 3)
      box("brick " .. row .. " " .. column, at(2, -2 + column + 0.5 * (row % 2), 0.3 + 0.6 * row), Vec3(0.5, 0.98, 0.6),
        Vec4(0.66 + shade, 0.36 + shade, 0.28 + shade, 1))
    end
  end
  local ball = S:createSphere("ball", at(-6, 0.2, 1.6), 0.6, root, sim)
  if root then vyrOSG.setDiffuseColor(ball:getNode(), Vec4(0.20, 0.24, 0.30, 1)) end
  ball:getRigidBody():setMass(5000)
  ball:getRigidBody():setVelocity(Vec3(13, 0, 3))
end

-- Records the run in an application that is never shown, plays it back there, and compares step by step. Formats: 0, double
-- precision; 1, single precision and only what moved. Gives where all bodies were, and the largest difference in metres.
local function recordAndCompare(file, session, format)
  local app = vyrOSG.ExampleApplication()
  app:init(vyrIO.ArgumentParser({ [0] = arg[0], "--journal", file, "--journal-session", session, "--journal-record",
    "--journal-format", tostring(format) }))
  buildWall(app:getSimulation(), nil)
  local bodies, run, largest = app:getSimulation():getRigidBodies(), {}, 0
  for step = 1, steps do
    app:step()
    run[step] = {}
    for i, body in ipairs(bodies) do run[step][i] = body:getTransform() end
  end
  app:journalPlayback() -- ends the recording and goes to its beginning: steps now read instead of computing
  for step = 1, steps do
    app:step()
    for i, body in ipairs(bodies) do
      largest = math.max(largest, (body:getPosition() - run[step][i]:getTranslate()):length())
    end
  end
  return run, largest
end

local file = os.tmpname()
local run, full = recordAndCompare(file, "full", 0)
local _, compact = recordAndCompare(file, "compact", 1)
print(string.format("played back in double precision: %g m away at most", full))
print(string.format("played back in single precision: %.1g m away at most", compact))

function buildScene(sim, app, root)
  buildWall(sim, root)
  -- Pale pictures: the ball every tenth of a second, the bricks where they end. No simulation has them.
  local bodies = sim:getRigidBodies()
  local function pale(object, r, g, b)
    vyrOSG.setDiffuseColor(object:getNode(), Vec4(r, g, b, 1))
    vyrOSG.setAlpha(object:getNode(), 0.25)
  end
  for step = 6, 120, 6 do pale(S:createSphere("was", run[step][#bodies], 0.6, root, nil), 0.35, 0.55, 0.90) end
  for i = 2, #bodies - 1 do pale(S:createBox("was", run[steps][i], Vec3(0.5, 0.98, 0.6), root, nil), 1.0, 0.85, 0.60) end

  app:journalPlayback()
  local decorator = app:getSceneDecorator()
  decorator:setEnableShadows(true)
  decorator:setText(0, string.format("The journal's run; pale: what was recorded, %g m away", full))
  app:setCameraHome(Vec3(-2, -15, 7), Vec3(1.5, 0, 1))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser({ [0] = arg[0], "--journal", file, "--journal-session", "full" }))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
os.remove(file)
