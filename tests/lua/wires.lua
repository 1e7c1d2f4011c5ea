-- Curves and wires.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")
local v = vyr.Vec3

function testASplineGoesThroughItsPoints()
  local spline = vyrUtil.Spline()
  for _, point in ipairs({ v(0, 0, 0), v(1, 2, 0), v(3, 2, 1) }) do check.isTrue(spline:add(point)) end
  check.equal(spline:getNumPoints(), 3)
  check.vector(spline:evaluate(1), { 1, 2, 0 }, 1e-12)
  check.vector(spline:getPoints()[3], { 3, 2, 1 })
  check.isFalse(spline:add(v(0 / 0, 0, 0)))
  check.isTrue(spline:setPoint(0, v(-1, 0, 0)))
  check.isFalse(spline:setPoint(9, v()))
end

function testAStraightSpline()
  local spline = vyrUtil.Spline()
  spline:add(v(0, 0, 0))
  spline:add(v(3, 4, 0))
  check.near(spline:length(), 5, 1e-9)
  check.vector(spline:tangent(0.5), { 0.6, 0.8, 0 }, 1e-9)
  local samples = spline:sample(2)
  check.equal(#samples, 11)
  check.vector(samples[#samples], { 3, 4, 0 }, 1e-12)
end

-- A wire that hangs from one end carries its own weight there.
function testAHangingWirePullsWithItsWeight()
  local sim = vyrSDK.Simulation()
  local wire = vyrWire.Wire(2, 20, 0.5)
  check.isTrue(wire:isValid())
  wire:attachBegin(nil, v(0, 0, 5))
  for i = 1, 20 do wire:setNode(i, v(0, 0, 5 - 0.1 * i)) end
  check.isTrue(sim:add(wire))
  for _ = 1, 60 do sim:step() end
  check.equal(#wire:getNodes(), 21)
  check.vector(wire:getNodes()[21], { 0, 0, 3 }, 1e-3)
  check.near(wire:getBeginTension(), 0.5 * 2 * 9.80665, 0.05 * 0.5 * 2 * 9.80665)
  check.near(wire:getEndTension(), 0, 1)
end

function testImpossibleWires()
  check.isFalse(vyrWire.Wire(-1, 10, 1):isValid())
  check.isFalse(vyrWire.Wire(1, 0, 1):isValid())
  check.isFalse(vyrWire.Wire(1, 4, 1):setStretchStiffness(-1))
end

function testAWireIsAListener()
  local sim = vyrSDK.Simulation()
  local wire = vyrWire.Wire(1, 4, 1)
  check.isTrue(sim:add(wire))
  check.isFalse(sim:add(wire))
  check.isTrue(sim:remove(wire))
end

check.run()
