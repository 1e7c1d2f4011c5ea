-- Soft ground and prints.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

local function flat(count)
  local heights = vyr.RealVector()
  for _ = 1, count do heights:push_back(0) end
  return heights
end

local function block(z)
  local body = vyr.RigidBody("block")
  body:add(vyrCollide.Geometry(vyrCollide.Box(0.5, 0.5, 0.5)))
  body:setPosition(0, 0, z)
  body:setMass(5000)
  return body
end

function testTerrainGivesWayAndKeepsItsMass()
  local sim = vyrSDK.Simulation()
  local terrain = vyrModel.Terrain(21, 21, 4, 4, flat(441), 0.5)
  check.isTrue(terrain:isValid())
  local mass = terrain:getMass()
  check.isTrue(sim:add(terrain))
  sim:add(block(0.5))
  for _ = 1, 120 do sim:step() end
  check.isTrue(terrain:getHeight(10, 10) < -0.005, "height " .. terrain:getHeight(10, 10))
  check.isTrue(terrain:getSinkage(10, 10) > 0)
  check.near(terrain:getMass(), mass, 1e-6 * mass)
  check.equal(terrain:getHeight(99, 99), 0)
  check.isTrue(terrain:getRevision() > 0)
end

function testSoil()
  local soil = vyrModel.Soil()
  check.isTrue(soil:isValid())
  soil.modulus = 1e6
  check.equal(soil.modulus, 1e6)
  check.equal(vyrModel.Terrain(3, 3, 1, 1, flat(9), 0.2, soil):getSoil().modulus, 1e6)
  soil.exponent = -1
  check.isFalse(soil:isValid())
end

function testImpossibleTerrains()
  check.isFalse(vyrModel.Terrain(21, 21, 4, 4, flat(3)):isValid())
  check.isFalse(vyrModel.HeightFieldDeformer(nil):isValid())
  check.isFalse(vyrModel.HeightFieldDeformer(vyrCollide.Geometry(vyrCollide.Sphere(1))):isValid())
end

function testPrints()
  local sim = vyrSDK.Simulation()
  local ground = vyrCollide.Geometry(vyrCollide.HeightField(21, 21, 4, 4, flat(441)))
  sim:add(ground)
  local deformer = vyrModel.HeightFieldDeformer(ground)
  check.isTrue(deformer:isValid())
  check.isTrue(deformer:setBearingCapacity(1000))
  check.isFalse(deformer:setBearingCapacity(-1))
  sim:add(deformer)
  sim:add(block(0.5))
  for _ = 1, 60 do sim:step() end
  check.isTrue(deformer:getDepth(10, 10) > 0)
  check.equal(deformer:getDepth(0, 0), 0)
end

check.run()
