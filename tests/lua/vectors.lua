-- Vectors of both precisions: components, operators, text, and the two names of one type.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

function testConstructorsKeepComponents()
  check.vector(vyr.Vec3(1, 2, 3), { 1, 2, 3 })
  check.vector(vyr.Vec3(), { 0, 0, 0 })
  check.vector(vyr.Vec2(4, 5), { 4, 5 })
  check.vector(vyr.Vec4(1, 2, 3, 4), { 1, 2, 3, 4 })
  check.vector(vyr.Vec4(vyr.Vec3(1, 2, 3), 4), { 1, 2, 3, 4 })
end

function testCopyIsIndependent()
  local a = vyr.Vec3(1, 2, 3)
  local b = vyr.Vec3(a)
  b.x = 9
  check.equal(a.x, 1)
  check.equal(b.x, 9)
end

function testComponentsCanBeSet()
  local v = vyr.Vec3()
  v.x, v.y, v.z = 1, 2, 3
  check.vector(v, { 1, 2, 3 })
  v:set(4, 5, 6)
  check.vector(v, { 4, 5, 6 })
end

function testColorNamesOfVec4()
  local v = vyr.Vec4(0.1, 0.2, 0.3, 0.4)
  check.equal(v.r, 0.1)
  check.equal(v.a, 0.4)
  v.g = 0.9
  check.equal(v.y, 0.9)
  check.vector(v:xyz(), { 0.1, 0.9, 0.3 })
end

function testIndicesCountFromZero()
  local v = vyr.Vec3(1, 2, 3)
  check.equal(v[0], 1)
  check.equal(v[2], 3)
  v[1] = 7
  check.equal(v.y, 7)
end

function testIndexOutsideIsHarmless()
  local v = vyr.Vec3(1, 2, 3)
  check.equal(v[3], 0)
  check.equal(v[-1], 0)
  v[1000000] = 5
  check.vector(v, { 1, 2, 3 })
end

function testArithmetic()
  local a, b = vyr.Vec3(1, 2, 3), vyr.Vec3(10, 20, 30)
  check.vector(a + b, { 11, 22, 33 })
  check.vector(b - a, { 9, 18, 27 })
  check.vector(a * 2, { 2, 4, 6 })
  check.vector(2 * a, { 2, 4, 6 })
  check.vector(a / 2, { 0.5, 1, 1.5 })
  check.vector(-a, { -1, -2, -3 })
end

function testProducts()
  local x, y = vyr.Vec3(1, 0, 0), vyr.Vec3(0, 1, 0)
  check.equal(vyr.Vec3(1, 2, 3) * vyr.Vec3(4, 5, 6), 32)
  check.equal(vyr.Vec3(1, 2, 3):dot(vyr.Vec3(4, 5, 6)), 32)
  check.vector(x:cross(y), { 0, 0, 1 })
end

function testLengths()
  local v = vyr.Vec3(3, 4, 12)
  check.equal(v:length(), 13)
  check.equal(v:length2(), 169)
  check.vector(v:normalized(), { 3 / 13, 4 / 13, 12 / 13 }, 1e-15)
  check.equal(v:normalize(), 13)
  check.near(v:length(), 1, 1e-15)
end

function testZeroVectorStaysZeroWhenNormalized()
  local v = vyr.Vec3()
  check.equal(v:normalize(), 0)
  check.vector(v, { 0, 0, 0 })
end

function testEquality()
  check.isTrue(vyr.Vec3(1, 2, 3) == vyr.Vec3(1, 2, 3))
  check.isFalse(vyr.Vec3(1, 2, 3) == vyr.Vec3(1, 2, 4))
  check.isTrue(vyr.Vec3(1, 2, 3) == vyr.Vec3d(1, 2, 3))
  check.isTrue(vyr.Vec2(1, 2) == vyr.Vec2(1, 2))
  check.isTrue(vyr.Vec4(1, 2, 3, 4) == vyr.Vec4(1, 2, 3, 4))
end

function testText()
  check.equal(tostring(vyr.Vec3(1, 2.5, -3)), "(1, 2.5, -3)")
  check.equal(tostring(vyr.Vec2(1, 2)), "(1, 2)")
  check.equal(tostring(vyr.Vec2u(3, 4)), "(3, 4)")
  check.equal(tostring(vyr.Vec4f(1, 2, 3, 4)), "(1, 2, 3, 4)")
end

-- Both names are asked for by bound functions; values of either must pass for the other.
function testTheTwoNamesOfADoubleVectorAreOneType()
  check.isTrue(vyr.equivalent(vyr.Vec3d(1, 2, 3), vyr.Vec3(1, 2, 3)))
  check.vector(vyr.absolute(vyr.Vec3(-1, -2, -3)), { 1, 2, 3 })
  check.vector(vyr.absolute(vyr.Vec3d(-1, -2, -3)), { 1, 2, 3 })
  local body = vyr.RigidBody()
  body:setPosition(vyr.Vec3d(1, 2, 3))
  check.vector(body:getPosition(), { 1, 2, 3 })
  body:setPosition(vyr.Vec3(4, 5, 6))
  check.vector(body:getPosition(), { 4, 5, 6 })
end

function testSinglePrecisionIsNotDoublePrecision()
  local body = vyr.RigidBody()
  check.raises("setPosition", body.setPosition, body, vyr.Vec3f(1, 2, 3))
  body:setPosition(vyr.Vec3(vyr.Vec3f(1, 2, 3)))
  check.vector(body:getPosition(), { 1, 2, 3 })
end

function testSinglePrecisionRounds()
  check.notEqual(vyr.Vec3f(0.1, 0, 0).x, 0.1)
  check.near(vyr.Vec3f(0.1, 0, 0).x, 0.1, 1e-8)
end

function testNaN()
  check.isTrue(vyr.Vec3(0 / 0, 0, 0):isNaN())
  check.isFalse(vyr.Vec3(1, 2, 3):isNaN())
  check.isFalse(vyr.Vec3(1 / 0, 0, 0):isFinite())
end

function testWrongArgumentsAreErrors()
  check.raises("error in function 'new'", function() return vyr.Vec3("a") end)
  check.raises("error in function '.add'", function() return vyr.Vec3() + 1 end)
  check.raises("invalid type in variable assignment", function() vyr.Vec3().x = "a" end)
end

-- Many values, so that the collector runs between: a value freed twice or too early crashes here.
function testCollection()
  local sum = vyr.Vec3()
  for i = 1, 20000 do sum = sum + vyr.Vec3(i, 1, 0) * 2 end
  collectgarbage()
  check.vector(sum, { 20000 * 20001, 40000, 0 })
end

check.run()
