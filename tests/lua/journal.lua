-- A journal gives back what was recorded: exactly in double precision, to single precision in the compact format.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

local file = os.tmpname()

-- Boxes fall on one another while they are recorded; the largest distance (m) when the journal is played back.
local function compare(session, format)
  local app = vyrOSG.ExampleApplication()
  check.isTrue((app:init(vyrIO.ArgumentParser({ [0] = arg[0], "--journal", file, "--journal-session", session,
    "--journal-record", "--journal-format", tostring(format) }))))
  local bodies, places, largest, moved = {}, {}, 0, 0
  for i = 1, 4 do
    bodies[i] = vyr.RigidBody("box " .. i)
    bodies[i]:add(vyrCollide.Geometry(vyrCollide.Box(vyr.Vec3(0.5, 0.3, 0.2))))
    bodies[i]:setPosition(0.13 * i, 0.07 * i, 1.1 * i)
    app:getSimulation():add(bodies[i])
  end
  bodies[1]:setMotionControl(vyr.RigidBody.STATIC)
  for step = 1, 90 do
    app:step()
    places[step] = {}
    for i, body in ipairs(bodies) do places[step][i] = body:getPosition() end
  end
  app:journalPlayback()
  for step = 1, 90 do
    app:step()
    check.near(app:getTimeStamp(), step / 60, 1e-9)
    for i, body in ipairs(bodies) do
      largest = math.max(largest, (body:getPosition() - places[step][i]):length())
      moved = math.max(moved, (places[step][i] - places[1][i]):length())
    end
  end
  check.isTrue(moved > 1) -- otherwise there was nothing to compare
  return largest
end

function testFullFormatIsExact()
  check.equal(compare("full", 0), 0)
end

-- The first session is still open for playing when the second is recorded into the same file.
function testCompactFormatIsSinglePrecision()
  local largest = compare("compact", 1)
  check.isTrue(largest > 0 and largest < 1e-5, "differs by " .. largest)
end

function testUnknownFormatIsRefused()
  local app = vyrOSG.ExampleApplication()
  check.isFalse((app:init(vyrIO.ArgumentParser({ [0] = arg[0], "--journal", file, "--journal-format", "2" }))))
end

check.run()
