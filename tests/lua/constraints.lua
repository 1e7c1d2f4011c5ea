-- Joints: motors, ranges, locks and measured forces.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")
local v = vyr.Vec3

local function box(x, y, z)
  local body = vyr.RigidBody()
  body:add(vyrCollide.Geometry(vyrCollide.Box(0.1, 0.1, 0.1)))
  body:setPosition(x, y, z)
  body:setMass(2)
  return body
end

function testConstants()
  check.equal(vyr.Constraint.DIRECT, 1)
  check.equal(vyr.Constraint.ITERATIVE, 4)
  check.equal(vyr.Constraint.DIRECT_AND_ITERATIVE, 5)
  check.equal(vyr.FrictionModel.ITERATIVE, 2)
end

-- A body that hangs from a locked rod pulls with its weight.
function testALockHoldsTheWeight()
  local sim = vyrSDK.Simulation()
  local body = box(0, 0, 0)
  local lock = vyr.Lock:create(body, nil)
  check.isTrue(sim:add(lock))
  for _ = 1, 60 do sim:step() end
  check.near(lock:getForce().z, 2 * 9.80665, 0.02)
  check.near(body:getPosition().z, 0, 1e-3)
end

function testAHingeMotorTurns()
  local sim = vyrSDK.Simulation()
  sim:setGravity(v())
  local body = box(0, 0, 0)
  local hinge = vyr.Hinge:create(body, nil, v(0, 0, 0), v(0, 0, 1))
  check.isTrue(hinge:isRotational())
  hinge:setEnableMotor(true)
  hinge:setMotorSpeed(2)
  sim:add(hinge)
  for _ = 1, 60 do sim:step() end
  check.near(hinge:getSpeed(), 2, 0.02)
  check.near(body:getAngularVelocity().z, 2, 0.02)
  check.near(hinge:getPosition(), 2, 0.1)
end

function testAPrismaticKeepsItsRange()
  local sim = vyrSDK.Simulation()
  local body = box(0, 0, 0)
  local slide = vyr.Prismatic:create(body, nil, v(0, 0, 0), v(0, 0, 1))
  check.isFalse(slide:isRotational())
  slide:setEnableRange(true)
  check.isTrue(slide:setRange(vyr.RangeReal(-0.5, 0.5)))
  check.isFalse(slide:setRange(vyr.RangeReal(1, -1)))
  check.isTrue(slide:getRange() == vyr.RangeReal(-0.5, 0.5))
  sim:add(slide)
  for _ = 1, 120 do sim:step() end
  check.near(body:getPosition().z, -0.5, 0.01)
  check.near(slide:getCurrentForce(), 2 * 9.80665, 0.2)
end

-- The iterative solver lets a swinging rod stretch by a hundredth or so.
function testARodKeepsItsLength()
  local sim = vyrSDK.Simulation()
  local body = box(1, 0, 0)
  local rod = vyr.Distance:create(body, v(1, 0, 0), nil, v(0, 0, 0))
  sim:add(rod)
  for _ = 1, 120 do sim:step() end
  check.near(rod:getPosition(), 1, 0.02)
  check.near(body:getPosition():length(), 1, 0.02)
end

function testABallJoint()
  local sim = vyrSDK.Simulation()
  local body = box(0, 0, -1)
  local ball = vyr.Ball:create(body, nil, v(0, 0, 0))
  sim:add(ball)
  for _ = 1, 30 do sim:step() end
  check.near(ball:getForce().z, 2 * 9.80665, 0.05)
end

function testListsGiveConstraintsAsWhatTheyAre()
  local sim = vyrSDK.Simulation()
  sim:add(vyr.Hinge:create(box(0, 0, 0), nil, v(), v(0, 0, 1)))
  sim:add(vyr.Ball:create(box(3, 0, 0), nil, v()))
  local list = sim:getConstraints()
  check.equal(#list, 2)
  check.isTrue(list[1]:isRotational())
  check.isNil(list[2].isRotational)
  check.isNil(list[1]:getRigidBody2())
end

function testFramesOfAConstraint()
  local body = box(1, 2, 3)
  local hinge = vyr.Hinge(vyr.Frame(body), vyr.Frame(nil, vyr.AffineMatrix4x4:translate(1, 2, 3)))
  check.isTrue(hinge:isValid())
  check.vector(hinge:getFrame1():getPosition(), { 1, 2, 3 }, 1e-12)
  check.equal(hinge:getReferenceCount(), 1)
end

check.run()
