-- Trees.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")
local v = vyr.Vec3

local function small()
  local form = vyrModel.TreeParameters()
  form.height, form.trunkRadius, form.levels, form.boughs = 3, 0.08, 2, 4
  return form
end

function testParametersAreFields()
  local form = small()
  check.equal(form.height, 3)
  check.equal(form.levels, 2)
  form.stiffness = 5e9
  local tree = vyrModel.Tree()
  check.isTrue(tree:grow(form, 3))
  check.equal(tree:getParameters().stiffness, 5e9)
end

function testATreeGrowsOnceForEachSeed()
  local a, b = vyrModel.Tree(), vyrModel.Tree()
  check.isTrue(a:grow(small(), 3))
  check.isTrue(b:grow(small(), 3))
  check.equal(a:getNumBranches(), b:getNumBranches())
  check.equal(a:getMass(), b:getMass())
  check.isTrue(a:getNumLeaves() > 10)
  local form = small()
  form.height = -1
  check.isFalse(a:grow(form, 1))
end

function testLeavesAreBodiesWhenAsked()
  local form = small()
  check.equal(form.leafBodies, 0)
  form.leafBodies = 4
  local tree, sim = vyrModel.Tree(), vyrSDK.Simulation()
  check.isTrue(tree:grow(form, 3))
  check.equal(tree:getNumLeafBodies(), 4)
  check.isTrue(tree:addTo(sim))
  check.equal(#sim:getRigidBodies(), tree:getNumBranches() + 4)
end

function testBranchesTellTheirForm()
  local tree = vyrModel.Tree()
  tree:grow(small(), 3)
  local foot = tree:getBranch(0)
  check.equal(foot.parent, -1)
  check.equal(foot.level, 0)
  check.near(foot.radiusBegin, 0.08, 1e-12)
  check.isTrue(foot.radiusEnd < foot.radiusBegin)
  check.isFalse(foot.broken)
  check.isTrue(foot.body:getMass() > 0)
  check.equal(tree:getBranch(tree:getNumBranches()), nil)
end

function testATreeStandsSwaysAndBreaks()
  local sim = vyrSDK.Simulation()
  local tree = vyrModel.Tree()
  tree:grow(small(), 3)
  check.isTrue(tree:setTransform(vyr.AffineMatrix4x4:translate(4, 0, 0)))
  check.isTrue(tree:addTo(sim))
  check.isFalse(tree:addTo(sim))
  check.equal(#sim:getRigidBodies(), tree:getNumBranches())
  check.isTrue(tree:setWind(v(12, 0, 0)))
  check.vector(tree:getWind(), { 12, 0, 0 })
  check.isTrue(tree:setGustiness(0))
  check.vector(tree:getWindAt(v(1, 2, 3), 4), { 12, 0, 0 })
  for _ = 1, 60 do sim:step() end
  check.isTrue(tree:getStress(0) > 0)
  check.equal(tree:getNumBroken(), 0)
  check.isTrue(tree:breakBranch(0))
  check.isTrue(tree:getBranch(0).broken)
  check.isTrue(tree:remove())
  check.equal(#sim:getRigidBodies(), 0)
end

function testATreeThatLuaForgetsStaysInItsSimulation()
  local sim = vyrSDK.Simulation()
  do
    local tree = vyrModel.Tree()
    tree:grow(small(), 3)
    tree:addTo(sim)
  end
  collectgarbage()
  collectgarbage()
  check.isTrue(#sim:getRigidBodies() > 5)
  sim:step()
end

check.run()
