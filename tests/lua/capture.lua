-- The recorder: so many seconds at so many images a second give exactly the product of the two. Needs graphics.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

-- Captures a moving ball and gives the number of pictures; they are removed again.
local function record(seconds, fps, timeStep)
  local folder = os.tmpname()
  os.remove(folder)
  local app = vyrOSG.ExampleApplication()
  check.isTrue((app:init(vyrIO.ArgumentParser({ [0] = arg[0] }))))
  app:setTimeStep(timeStep)
  local ball = vyr.RigidBody("ball")
  ball:add(vyrCollide.Geometry(vyrCollide.Sphere(0.5)))
  app:getSimulation():add(ball)
  local capture = app:getImageCapture()
  capture:setDirectoryPath(folder)
  capture:setFps(fps)
  capture:setImageResolution(32, 18)
  app:setupViewer(false)
  capture:startCapture()
  app:stopAfter(seconds)
  check.equal(app:run(), 0)

  local count = 0
  while os.remove(string.format("%s/image_%05d.png", folder, count)) do count = count + 1 end
  -- Nothing is left in the folder: it can be removed, so there was no gap in the numbers.
  check.isTrue((os.remove(folder)))
  return count
end

function testAnImageForEachInterval()
  check.equal(record(1, 25, 1 / 60), 25)
end

function testFastAndSlowRates()
  check.equal(record(0.5, 60, 1 / 60), 30)
  check.equal(record(2, 3, 1 / 60), 6)
end

function testStepsLongerThanAnInterval()
  check.equal(record(1, 30, 0.1), 30)
end

check.run()
