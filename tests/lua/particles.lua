-- Particle systems, emitters, and the car.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")
local v = vyr.Vec3

function testParticlesFall()
  local sim = vyrSDK.Simulation()
  sim:setTimeStep(0.01)
  local system = vyr.ParticleSystem("dust")
  check.equal(system:add(v(0, 0, 5), v(1, 0, 0), 0.05, 0.01), 0)
  check.equal(system:add(v(1, 0, 5), v(), 0.05, 0.01, 0.2), 1)
  check.isTrue(sim:add(system))
  check.equal(sim:getParticleSystems()[1]:getName(), "dust")
  for _ = 1, 10 do sim:step() end
  check.near(system:getPosition(0).x, 0.1, 1e-6)
  check.near(system:getVelocity(0).z, -0.980665, 1e-6)
  for _ = 1, 20 do sim:step() end
  check.equal(system:getNumParticles(), 1)
end

function testRefusedParticles()
  local system = vyr.ParticleSystem()
  check.isNil(system:add(v(), v(), -1, 1))
  check.isNil(system:add(v(0 / 0, 0, 0), v(), 1, 1))
  check.equal(system:getNumParticles(), 0)
end

function testColors()
  local system = vyr.ParticleSystem()
  system:setDefaultColor(vyr.Vec4(1, 0, 0, 1))
  system:add(v(), v(), 0.1, 1)
  check.vector(system:getColor(0), { 1, 0, 0, 1 })
  check.isTrue(system:setColor(0, vyrRender.Color:Blue()))
  check.vector(system:getColor(0), { 0, 0, 1, 1 })
end

-- A particle at rest presses with its weight.
function testParticleContacts()
  local sim = vyrSDK.Simulation()
  local ground = vyr.RigidBody()
  ground:add(vyrCollide.Geometry(vyrCollide.Box(1, 1, 0.5), "ground"))
  ground:setPosition(0, 0, -0.5)
  ground:setMotionControl(vyr.RigidBody.STATIC)
  sim:add(ground)
  local system = vyr.ParticleSystem()
  system:add(v(0, 0, 0.1), v(), 0.1, 2)
  sim:add(system)
  for _ = 1, 120 do sim:step() end
  local contacts = system:getContacts()
  check.equal(#contacts, 1)
  check.equal(contacts[1].geometry:getName(), "ground")
  check.near(contacts[1].normalForce, 2 * 9.80665, 0.2)
end

function testEmitter()
  local sim = vyrSDK.Simulation()
  local emitter = vyr.RigidBodyEmitter(7)
  emitter:setShape(vyrCollide.Sphere(0.1))
  check.isTrue(emitter:setRate(60))
  check.isFalse(emitter:setRate(-1))
  emitter:setMaximum(10)
  check.isTrue(emitter:setRegion(v(-1, -1, 4), v(1, 1, 5)))
  check.vector(emitter:getRegion().max, { 1, 1, 5 })
  check.isTrue(sim:add(emitter))
  for _ = 1, 60 do sim:step() end
  check.equal(emitter:getNumEmitted(), 10)
  check.equal(#emitter:getRigidBodies(), 10)
  check.equal(#sim:getRigidBodies(), 10)
end

-- Each body is as large as the function says; every third place goes empty.
function testEmitterWithAFactory()
  local sim = vyrSDK.Simulation()
  local emitter = vyr.RigidBodyEmitter(7)
  local indices, numbers, kept = {}, {}, nil
  emitter:setGeometryFactory(function(index, random)
    indices[#indices + 1], numbers[#numbers + 1], kept = index, random(), random
    if index % 3 == 0 then return nil end
    return vyrCollide.Geometry(vyrCollide.Sphere(0.01 * index))
  end)
  emitter:setRate(60)
  emitter:setMaximum(9)
  sim:add(emitter)
  for _ = 1, 30 do
    sim:step()
    collectgarbage()
  end
  check.equal(table.concat(indices, " "), "1 2 3 4 5 6 7 8 9")
  check.equal(emitter:getNumEmitted(), 9)
  check.equal(#emitter:getRigidBodies(), 6)
  check.near(emitter:getRigidBodies()[3]:getGeometries()[1]:getShape():getRadius(), 0.04, 1e-12)
  for i, number in ipairs(numbers) do
    check.isTrue(number >= 0 and number < 1 and number ~= numbers[i + 1])
  end
  check.raises("only while the geometry is made", kept)
end

-- A mistake ends the emission of bodies, not the simulation; another function or shape starts it again.
function testEmitterWithABrokenFactory()
  local sim = vyrSDK.Simulation()
  local emitter = vyr.RigidBodyEmitter()
  local calls = 0
  emitter:setRate(60)
  sim:add(emitter)
  local function steps(factory)
    emitter:setGeometryFactory(factory)
    for _ = 1, 5 do sim:step() end
  end
  for _, result in ipairs({ 1, "text", vyr.Vec3(), vyrCollide.Sphere(1) }) do
    calls = 0
    steps(function() calls = calls + 1 return result end)
    check.equal(calls, 1)
  end
  calls = 0
  steps(function(index, random)
    calls = calls + 1
    local nothing = nil
    return nothing.field
  end)
  check.equal(calls, 1)
  check.equal(#sim:getRigidBodies(), 0)
  -- One geometry has one body.
  local same = vyrCollide.Geometry(vyrCollide.Sphere(0.1))
  steps(function() return same end)
  check.equal(#sim:getRigidBodies(), 1)
  emitter:setShape(vyrCollide.Sphere(0.1))
  for _ = 1, 5 do sim:step() end
  check.equal(#sim:getRigidBodies(), 6)
  emitter:setGeometryFactory("no function")
  for _ = 1, 5 do sim:step() end
  check.equal(#sim:getRigidBodies(), 11)
end

-- The function may let go of everything that calls it.
function testEmitterThatDropsItself()
  local sim = vyrSDK.Simulation()
  local emitter = vyr.RigidBodyEmitter()
  emitter:setRate(600)
  emitter:setGeometryFactory(function()
    emitter:setShape(vyrCollide.Sphere(0.1))
    emitter, sim.nothing = nil, nil
    collectgarbage()
    collectgarbage()
    return vyrCollide.Geometry(vyrCollide.Sphere(0.1))
  end)
  sim:add(emitter)
  sim:step()
  check.isTrue(#sim:getRigidBodies() >= 1)
end

function testCar()
  local sim = vyrSDK.Simulation()
  local ground = vyr.RigidBody()
  ground:add(vyrCollide.Geometry(vyrCollide.Box(100, 10, 0.5)))
  ground:setPosition(0, 0, -0.5)
  ground:setMotionControl(vyr.RigidBody.STATIC)
  sim:add(ground)
  local car = vyrUtil.SimpleCar(v(4, 1.8, 0.8), 1200)
  check.isTrue(car:isValid())
  car:transform(vyr.AffineMatrix4x4:translate(0, 0, 1.2))
  check.isTrue(sim:add(car))
  check.equal(#car:getRigidBodies(), 5)
  for _ = 1, 60 do sim:step() end
  car:setThrottle(1)
  for _ = 1, 120 do sim:step() end
  check.isTrue(car:getSpeed() > 3, "speed " .. car:getSpeed())
  check.isTrue(car:getChassis():getPosition().x > 2)
  check.notNil(car:getWheel(vyrUtil.SimpleCar.REAR_LEFT))
  check.isNil(car:getWheel(9))
  car:setThrottle(5)
  check.equal(car:getThrottle(), 1)
  check.isFalse(vyrUtil.SimpleCar(v(-1, 1, 1), 100):isValid())
end

check.run()
