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
