-- Quaternions, transforms, symmetric matrices, ranges and number arrays.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

local quarter = vyr.Quat(math.pi / 2, vyr.Vec3(0, 0, 1))

function testQuaternionTurnsVectors()
  check.vector(quarter * vyr.Vec3(1, 0, 0), { 0, 1, 0 }, 1e-15)
  check.vector(vyr.Vec3(1, 0, 0) * quarter, { 0, 1, 0 }, 1e-15)
end

function testQuaternionProductAppliesTheLeftFirst()
  local tip = vyr.Quat(math.pi / 2, vyr.Vec3(1, 0, 0))
  -- x turns to y about z, then y to z about x.
  check.vector(vyr.Vec3(1, 0, 0) * (quarter * tip), { 0, 0, 1 }, 1e-15)
end

function testQuaternionInverse()
  local q = quarter * quarter:inverse()
  check.isTrue(vyr.equivalent(q, vyr.Quat()))
end

function testQuaternionAngleAndAxis()
  check.near(quarter:getAngle(), math.pi / 2, 1e-12)
  check.vector(quarter:getAxis(), { 0, 0, 1 }, 1e-12)
end

function testQuaternionFromDirections()
  local q = vyr.Quat(vyr.Vec3(1, 0, 0), vyr.Vec3(0, 0, 1))
  check.vector(q * vyr.Vec3(1, 0, 0), { 0, 0, 1 }, 1e-12)
end

function testQuaternionText()
  check.equal(tostring(vyr.Quat(0, 0, 0, 1)), "(0, 0, 0, 1)")
end

function testTransformMovesPoints()
  local m = vyr.AffineMatrix4x4:translate(1, 2, 3)
  check.vector(vyr.Vec3(10, 0, 0) * m, { 11, 2, 3 })
  check.vector(m:preMult(vyr.Vec3(10, 0, 0)), { 11, 2, 3 })
  check.vector(m:transform3x3(vyr.Vec3(10, 0, 0)), { 10, 0, 0 })
  check.vector(m:getTranslate(), { 1, 2, 3 })
end

function testTransformProductAppliesTheLeftFirst()
  local m = vyr.AffineMatrix4x4:rotate(quarter) * vyr.AffineMatrix4x4:translate(vyr.Vec3(5, 0, 0))
  check.vector(vyr.Vec3(1, 0, 0) * m, { 5, 1, 0 }, 1e-15)
end

function testTransformFromRotationAndTranslation()
  local m = vyr.AffineMatrix4x4(quarter, vyr.Vec3(5, 0, 0))
  check.vector(vyr.Vec3(1, 0, 0) * m, { 5, 1, 0 }, 1e-15)
  check.vector(vyr.Vec3(1, 0, 0) * (m * m:inverse()), { 1, 0, 0 }, 1e-12)
end

function testTransformElements()
  local m = vyr.AffineMatrix4x4:translate(1, 2, 3)
  check.equal(m:get(3, 0), 1)
  check.equal(m:get(0, 0), 1)
  check.equal(m:get(4, 0), 0)
  check.equal(m:get(0, -1), 0)
  m:set(3, 2, 9)
  m:set(7, 7, 9)
  check.vector(m:getTranslate(), { 1, 2, 9 })
end

function testTransformText()
  check.equal(tostring(vyr.AffineMatrix4x4()), "(1, 0, 0, 0)\n(0, 1, 0, 0)\n(0, 0, 1, 0)\n(0, 0, 0, 1)")
end

function testTransformEquality()
  check.isTrue(vyr.AffineMatrix4x4() == vyr.AffineMatrix4x4())
  check.isFalse(vyr.AffineMatrix4x4() == vyr.AffineMatrix4x4:translate(1, 0, 0))
  check.isTrue(vyr.AffineMatrix4x4():isIdentity())
end

function testSymmetricMatrix()
  local m = vyr.SPDMatrix3x3(1, 2, 3, 4, 5, 6)
  check.equal(m:get(0, 1), 2)
  check.equal(m:get(1, 0), 2)
  check.equal(m:get(2, 2), 6)
  check.equal(m:get(3, 0), 0)
  check.vector(m:getDiagonal(), { 1, 4, 6 })
  check.vector(m * vyr.Vec3(1, 0, 0), { 1, 2, 3 })
  check.isTrue(m * 2 == vyr.SPDMatrix3x3(2, 4, 6, 8, 10, 12))
  check.equal(tostring(m), "(1, 2, 3, 4, 5, 6)")
end

function testRange()
  local range = vyr.RangeReal(1, 3)
  check.equal(range.lower, 1)
  check.equal(range:length(), 2)
  check.equal(range:clamp(9), 3)
  check.isTrue(range:isIn(2))
  range.upper = 0
  check.isFalse(range:isValid())
end

function testRealVector()
  local numbers = vyr.RealVector:fromTable({ 1, 2, 3 })
  numbers:push_back(4)
  check.equal(numbers:size(), 4)
  check.equal(numbers[0], 1)
  check.equal(numbers[3], 4)
  check.equal(numbers[4], 0)
  numbers[0] = 9
  numbers[99] = 9
  check.equal(numbers[0], 9)
  check.equal(numbers:size(), 4)
  numbers:clear()
  check.isTrue(numbers:empty())
end

function testTimeStamp()
  check.equal(vyr.TimeStamp(0.5):getTimeStep(), 0.5)
  check.equal(vyr.TimeStamp():steps(), 0)
end

check.run()
