-- The simulation: stepping, lists, contacts, ray tests and listeners made from functions.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

-- A static slab whose top is z = 0.
local function ground()
  local body = vyr.RigidBody("ground")
  body:add(vyrCollide.Geometry(vyrCollide.Box(5, 5, 0.5), "slab"))
  body:setPosition(0, 0, -0.5)
  body:setMotionControl(vyr.RigidBody.STATIC)
  return body
end

local function ball(z)
  local body = vyr.RigidBody("ball")
  body:add(vyrCollide.Geometry(vyrCollide.Sphere(0.5), "ball geometry"))
  body:setPosition(0, 0, z)
  return body
end

function testDefaults()
  local sim = vyrSDK.Simulation()
  check.vector(sim:getGravity(), { 0, 0, -9.80665 })
  check.near(sim:getTimeStep(), 1 / 60, 1e-15)
  check.equal(sim:getTime(), 0)
  check.equal(sim:getSolver(), vyrSDK.Simulation.ITERATIVE)
end

function testSettings()
  local sim = vyrSDK.Simulation()
  sim:setGravity(vyr.Vec3(0, 0, -1))
  check.vector(sim:getGravity(), { 0, 0, -1 })
  check.isTrue(sim:setTimeStep(0.01))
  check.isFalse(sim:setTimeStep(-1))
  check.isFalse(sim:setTimeStep(0 / 0))
  check.equal(sim:getTimeStep(), 0.01)
  sim:setSolver(vyrSDK.Simulation.MULTI)
  check.equal(sim:getSolver(), 0)
  sim:setFrictionModel(vyr.FrictionModel.ITERATIVE)
  check.equal(sim:getFrictionModel(), 2)
end

function testTheClockCountsSteps()
  local sim = vyrSDK.Simulation()
  sim:setTimeStep(0.01)
  for _ = 1, 10 do check.isTrue(sim:step()) end
  check.near(sim:getTime(), 0.1, 1e-15)
  check.equal(sim:getTimeStamp():steps(), 10)
  check.near(sim:getTimeStamp():seconds(), 0.1, 1e-15)
end

function testScenesGoThroughFiles()
  local sim, file = vyrSDK.Simulation(), os.tmpname()
  sim:add(ground())
  sim:add(ball(3))
  for _ = 1, 30 do sim:step() end
  check.isTrue(sim:write(file))
  local copy = vyrSDK.Simulation()
  check.isTrue(copy:read(file))
  check.equal(copy:stateHash(), sim:stateHash())
  for _ = 1, 50 do sim:step() copy:step() end
  check.equal(copy:stateHash(), sim:stateHash())
  local kept = sim:findRigidBody("ball")
  check.isTrue(sim:restore(file))
  check.near(sim:getTime(), 0.5, 1e-12)
  check.isTrue(sim:findRigidBody("ball") == kept)
  os.remove(file)
  check.isFalse(sim:read(file))
  check.isFalse(sim:restore(file))
end

-- Semi-implicit Euler: after n steps of dt the fall is g dt^2 n (n + 1) / 2.
function testFreeFall()
  local sim = vyrSDK.Simulation()
  sim:setTimeStep(0.01)
  local body = ball(10)
  sim:add(body)
  for _ = 1, 50 do sim:step() end
  check.near(body:getPosition().z, 10 - 9.80665 * 1e-4 * 50 * 51 / 2, 1e-6)
  check.near(body:getVelocity().z, -9.80665 * 0.5, 1e-6)
end

function testListsAndLookup()
  local sim = vyrSDK.Simulation()
  local a, b = ground(), ball(1)
  check.isTrue(sim:add(a))
  check.isTrue(sim:add(b))
  check.isFalse(sim:add(b))
  local bodies = sim:getRigidBodies()
  check.equal(#bodies, 2)
  check.equal(bodies[1]:getName(), "ground")
  check.equal(sim:findRigidBody("ball"):getName(), "ball")
  check.isNil(sim:findRigidBody("nobody"))
  check.isTrue(sim:remove(b))
  check.equal(#sim:getRigidBodies(), 1)
  sim:clear()
  check.equal(#sim:getRigidBodies(), 0)
end

function testAddingNilIsRefused()
  check.isFalse(vyrSDK.Simulation():add(nil))
end

-- The contact of a ball at rest carries its weight.
function testContacts()
  local sim = vyrSDK.Simulation()
  local body = ball(0.5)
  sim:add(ground())
  sim:add(body)
  for _ = 1, 120 do sim:step() end
  local contacts = sim:getContacts()
  check.equal(#contacts, 1)
  local contact = contacts[1]
  local sign = contact.geometry1:getName() == "ball geometry" and 1 or -1
  check.near(contact:getForce().z * sign, body:getMass() * 9.80665, body:getMass() * 9.80665 * 1e-3)
  check.near(contact.point.z, 0, 1e-2)
  check.near(math.abs(contact.normal.z), 1, 1e-6)
  check.near(contact.velocity:length(), 0, 1e-3)
  -- Values of their own: they outlive the step and the table.
  sim:clear()
  contacts = nil
  collectgarbage()
  check.near(contact.normal:length(), 1, 1e-6)
end

function testRayTest()
  local sim = vyrSDK.Simulation()
  sim:add(ground())
  local hit = sim:rayTest(vyr.Vec3(0, 0, 2), vyr.Vec3(0, 0, -1))
  check.isTrue(hit.hit)
  check.equal(hit.geometry:getName(), "slab")
  check.near(hit.distance, 2, 1e-3)
  check.near(hit.normal.z, 1, 1e-6)
  check.isFalse(sim:rayTest(vyr.Vec3(0, 0, 2), vyr.Vec3(0, 0, 1)).hit)
  check.isFalse(sim:rayTest(vyr.Vec3(0, 0, 2), vyr.Vec3(0, 0, -1), 1).hit)
end

function testRepeatable()
  local function run()
    local sim = vyrSDK.Simulation()
    sim:add(ground())
    for i = 1, 5 do sim:add(ball(i)) end
    for _ = 1, 60 do sim:step() end
    return sim:stateHash()
  end
  local first = run()
  check.equal(#first, 16)
  check.equal(run(), first)
end

function testAssembly()
  local sim = vyrSDK.Simulation()
  local assembly = vyrSDK.Assembly("group")
  assembly:add(ball(1))
  assembly:add(ball(3))
  check.equal(#assembly:getRigidBodies(), 2)
  assembly:transform(vyr.AffineMatrix4x4:translate(0, 0, 10))
  check.near(assembly:getRigidBodies()[1]:getPosition().z, 11, 1e-9)
  check.isTrue(sim:add(assembly))
  check.equal(#sim:getRigidBodies(), 2)
  check.equal(sim:getAssemblies()[1]:getName(), "group")
  check.isTrue(sim:remove(assembly))
  check.equal(#sim:getRigidBodies(), 0)
end

function testStepListenersAreCalledInOrder()
  local sim = vyrSDK.Simulation()
  sim:setTimeStep(0.5)
  local calls = {}
  sim:add(vyrSDK.StepEventListener({
    pre = function(time) calls[#calls + 1] = "pre " .. time end,
    post = function(time) calls[#calls + 1] = "post " .. time end,
    last = function(time) calls[#calls + 1] = "last " .. time end,
  }))
  sim:step()
  sim:step()
  check.equal(table.concat(calls, ", "), "pre 0, post 0.5, last 0.5, pre 0.5, post 1, last 1")
end

function testForcesOfAListenerActInTheStep()
  local sim = vyrSDK.Simulation()
  sim:setGravity(vyr.Vec3())
  sim:setTimeStep(0.1)
  local body = ball(0)
  body:setMass(2)
  sim:add(body)
  sim:add(vyrSDK.StepEventListener({ pre = function() body:addForce(vyr.Vec3(4, 0, 0)) end }))
  for _ = 1, 10 do sim:step() end
  check.near(body:getVelocity().x, 2, 1e-9)
end

function testRemovedListenersAreQuiet()
  local sim = vyrSDK.Simulation()
  local calls = 0
  local listener = vyrSDK.StepEventListener({ post = function() calls = calls + 1 end })
  sim:add(listener)
  sim:step()
  check.isTrue(sim:remove(listener))
  sim:step()
  check.equal(calls, 1)
end

-- One message with a traceback; the listener is off from then on, the simulation and other listeners go on.
function testAnErrorSwitchesItsListenerOff()
  local sim = vyrSDK.Simulation()
  local bad, good = 0, 0
  sim:add(vyrSDK.StepEventListener({ pre = function() bad = bad + 1; error("on purpose, this is a test") end }))
  sim:add(vyrSDK.StepEventListener({ pre = function() good = good + 1 end }))
  for _ = 1, 3 do check.isTrue(sim:step()) end
  check.equal(bad, 1)
  check.equal(good, 3)
end

function testListenersInACoroutine()
  local sim = vyrSDK.Simulation()
  local calls = 0
  local thread = coroutine.create(function()
    sim:add(vyrSDK.StepEventListener({ post = function() calls = calls + 1 end }))
    sim:step()
  end)
  check.isTrue((coroutine.resume(thread)))
  thread = nil
  collectgarbage()
  sim:step()
  check.equal(calls, 2)
end

-- The simulation holds the listener, the listener its functions.
function testListenersOutliveTheirVariables()
  local sim = vyrSDK.Simulation()
  local calls = 0
  sim:add(vyrSDK.StepEventListener({ post = function() calls = calls + 1 end }))
  collectgarbage()
  collectgarbage()
  sim:step()
  check.equal(calls, 1)
end

function testAListenerMayAddAndRemove()
  local sim = vyrSDK.Simulation()
  local listener
  listener = vyrSDK.StepEventListener({
    post = function(time)
      sim:add(ball(5))
      sim:remove(listener)
    end,
  })
  sim:add(listener)
  sim:step()
  sim:step()
  check.equal(#sim:getRigidBodies(), 1)
end

check.run()
