-- The scene-graph library's small values.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

function testVectors()
  local v = osg.Vec4(1, 2, 3, 4)
  check.vector(v, { 1, 2, 3, 4 })
  v.x, v.a = 5, 6
  check.equal(v.r, 5)
  check.equal(v.w, 6)
  check.vector(osg.Vec2(1, 2) + osg.Vec2(1, 1), { 2, 3 })
  check.vector(2 * osg.Vec3(1, 2, 3), { 2, 4, 6 })
  check.isTrue(osg.Vec2(1, 2) == osg.Vec2(1, 2))
  check.equal(osg.Vec3(2, 3, 6):length(), 7)
end

function testText()
  check.equal(tostring(osg.Vec2(1, 2)), "(1, 2)")
  check.equal(tostring(osg.Vec4(1, 2, 3, 4)), "(1, 2, 3, 4)")
  check.equal(tostring(osg.Matrixd()), "(1, 0, 0, 0)\n(0, 1, 0, 0)\n(0, 0, 1, 0)\n(0, 0, 0, 1)")
end

function testMatrices()
  local m = osg.Matrixd:translate(1, 2, 3) * osg.Matrixd:translate(1, 0, 0)
  check.equal(m:get(3, 0), 2)
  check.equal(m:get(9, 9), 0)
  m:set(3, 1, 7)
  check.equal(m:get(3, 1), 7)
  check.isTrue(osg.Matrixd():isIdentity())
  check.equal(osg.Matrixf(m):get(3, 1), 7)
end

function testBounds()
  local sphere = osg.BoundingSphere(osg.Vec3(1, 2, 3), 4)
  check.equal(sphere:radius(), 4)
  check.vector(sphere:center(), { 1, 2, 3 })
  check.isFalse(osg.BoundingSphere():valid())
  check.vector(osg.BoundingBox(0, 0, 0, 2, 4, 6):center(), { 1, 2, 3 })
end

function testCollection()
  for _ = 1, 5000 do local _ = osg.Vec4(1, 2, 3, 4) + osg.Vec4() end
  collectgarbage()
  check.notNil(osg.Shader:vertex())
end

check.run()
