-- Bodies, geometries, shapes and materials.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

local function boxBody(density)
  local geometry = vyrCollide.Geometry(vyrCollide.Box(vyr.Vec3(0.5, 0.5, 0.5)), "box")
  geometry:setMaterial(vyr.Material("m", density or 1000))
  local body = vyr.RigidBody("body")
  body:add(geometry)
  return body, geometry
end

function testNames()
  local body, geometry = boxBody()
  check.equal(body:getName(), "body")
  check.equal(geometry:getName(), "box")
  body:setName("other")
  check.equal(body:getName(), "other")
  check.equal(vyr.RigidBody():getName(), "")
end

function testMotionControlConstants()
  check.equal(vyr.RigidBody.STATIC, 1)
  check.equal(vyr.RigidBody.KINEMATICS, 2)
  check.equal(vyr.RigidBody.DYNAMICS, 3)
  local body = boxBody()
  check.equal(body:getMotionControl(), vyr.RigidBody.DYNAMICS)
  body:setMotionControl(vyr.RigidBody.STATIC)
  check.equal(body:getMotionControl(), vyr.RigidBody.STATIC)
end

function testMassFollowsFromDensityAndVolume()
  check.near(boxBody(1000):getMass(), 1000, 1e-9)
  check.near(boxBody(10):getMass(), 10, 1e-9)
end

function testMassCanBeSet()
  local body = boxBody()
  check.isTrue(body:setMass(5))
  check.equal(body:getMass(), 5)
  check.isFalse(body:setMass(-1))
  check.equal(body:getMass(), 5)
end

function testPose()
  local body = boxBody()
  body:setPosition(1, 2, 3)
  check.vector(body:getPosition(), { 1, 2, 3 })
  body:setRotation(vyr.Quat(math.pi / 2, vyr.Vec3(0, 0, 1)))
  check.vector(vyr.Vec3(1, 0, 0) * body:getTransform(), { 1, 3, 3 }, 1e-12)
  body:setTransform(vyr.AffineMatrix4x4:translate(4, 5, 6))
  check.vector(body:getPosition(), { 4, 5, 6 })
end

function testVelocities()
  local body = boxBody()
  body:setVelocity(vyr.Vec3(1, 2, 3))
  body:setAngularVelocity(vyr.Vec3(0, 0, 2))
  check.vector(body:getVelocity(), { 1, 2, 3 })
  check.vector(body:getAngularVelocity(), { 0, 0, 2 })
  -- v + w x r
  check.vector(body:getVelocityAtPoint(body:getCenterOfMass() + vyr.Vec3(1, 0, 0)), { 1, 4, 3 }, 1e-12)
end

function testForcesAddUp()
  local body = boxBody()
  body:addForce(vyr.Vec3(1, 0, 0))
  body:addForce(vyr.Vec3(0, 2, 0))
  check.vector(body:getForce(), { 1, 2, 0 }, 1e-12)
  body:addTorque(vyr.Vec3(0, 0, 3))
  check.vector(body:getTorque(), { 0, 0, 3 }, 1e-12)
end

function testGeometriesOfABody()
  local body, geometry = boxBody()
  local list = body:getGeometries()
  check.equal(#list, 1)
  check.equal(list[1]:getName(), "box")
  check.equal(geometry:getRigidBody():getName(), "body")
  check.isTrue(body:remove(geometry))
  check.equal(#body:getGeometries(), 0)
  check.isNil(geometry:getRigidBody())
end

function testLocalTransformOfAGeometry()
  local body = vyr.RigidBody()
  local geometry = vyrCollide.Geometry(vyrCollide.Sphere(0.5))
  body:add(geometry, vyr.AffineMatrix4x4:translate(1, 0, 0))
  body:setPosition(0, 0, 5)
  check.vector(geometry:getTransform():getTranslate(), { 1, 0, 5 }, 1e-12)
  check.vector(geometry:getLocalTransform():getTranslate(), { 1, 0, 0 }, 1e-12)
end

function testShapesComeBackAsWhatTheyAre()
  local function shapeOf(shape) return vyrCollide.Geometry(shape):getShape() end
  check.vector(shapeOf(vyrCollide.Box(1, 2, 3)):getHalfExtents(), { 1, 2, 3 })
  check.equal(shapeOf(vyrCollide.Sphere(0.5)):getRadius(), 0.5)
  check.equal(shapeOf(vyrCollide.Capsule(0.5, 2)):getHeight(), 2)
  check.equal(shapeOf(vyrCollide.Cylinder(0.25, 2)):getRadius(), 0.25)
  check.equal(shapeOf(vyrCollide.Plane()):getType(), vyrCollide.Shape.PLANE)
end

function testShapeVolumes()
  check.near(vyrCollide.Box(0.5, 1, 1.5):getVolume(), 6, 1e-12)
  check.near(vyrCollide.Sphere(1):getVolume(), 4 / 3 * math.pi, 1e-12)
  check.near(vyrCollide.Cylinder(1, 2):getVolume(), 2 * math.pi, 1e-12)
  check.near(vyrCollide.Capsule(1, 2):getVolume(), 2 * math.pi + 4 / 3 * math.pi, 1e-12)
end

function testShapeBounds()
  local bounds = vyrCollide.Box(1, 2, 3):getBounds()
  check.vector(bounds.min, { -1, -2, -3 }, 1e-9)
  check.vector(bounds:getSize(), { 2, 4, 6 }, 1e-9)
end

function testImpossibleSizesGiveInvalidShapes()
  check.isFalse(vyrCollide.Sphere(-1):isValid())
  check.isFalse(vyrCollide.Box(0 / 0, 1, 1):isValid())
  local geometry = vyrCollide.Geometry(vyrCollide.Sphere(-1))
  check.isFalse(geometry:isValid())
  check.isFalse(vyr.RigidBody():add(geometry))
end

function testHeightField()
  local field = vyrCollide.HeightField(2, 3, 4, 6, vyr.RealVector:fromTable({ 0, 1, 2, 3, 4, 5 }))
  check.isTrue(field:isValid())
  check.equal(field:getNumColumns(), 2)
  check.equal(field:getHeight(1, 2), 5)
  check.isTrue(field:setHeight(0, 0, 7))
  check.equal(field:getHeights()[0], 7)
  check.isFalse(field:setHeight(9, 9, 7))
  check.vector(field:getVertex(0, 0), { -2, -3, 7 }, 1e-12)
end

function testTrimesh()
  local v = vyr.Vec3
  local corners = { v(0, 0, 0), v(1, 0, 0), v(0, 1, 0), v(0, 0, 1) }
  local mesh = vyrCollide.Trimesh(corners, { 0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3 })
  check.isTrue(mesh:isValid())
  check.isTrue(mesh:isClosed())
  check.equal(mesh:getNumTriangles(), 4)
  check.near(mesh:getVolume(), 1 / 6, 1e-12)
  check.isFalse(vyrCollide.Trimesh(corners, { 0, 1, 4 }):isValid())
  check.isFalse(vyrCollide.Trimesh({ v(), "no vector", v() }, { 0, 1, 2 }):isValid())
  check.isNil(vyrCollide.Trimesh:create("no such file.obj"))
end

function testMaterials()
  local material = vyr.Material("ice", 917, 0.03, 0.1)
  check.equal(material:getName(), "ice")
  check.equal(material:getDensity(), 917)
  check.equal(material:getFriction(), 0.03)
  check.equal(material:getRestitution(), 0.1)
  check.isFalse(material:setDensity(-1))
  check.isFalse(material:setFriction(0 / 0))
  check.isFalse(material:setRestitution(2))
  check.equal(material:getDensity(), 917)
  local other = vyr.Material("rubber", 1100, 0.9, 0.8)
  check.near(vyr.Material:combineFriction(material, other), math.sqrt(0.03 * 0.9), 1e-12)
  check.equal(vyr.Material:combineRestitution(material, other), 0.8)
end

function testGeometrySwitches()
  local geometry = vyrCollide.Geometry(vyrCollide.Sphere(1))
  check.isFalse(geometry:isSensor())
  geometry:setSensor(true)
  check.isTrue(geometry:isSensor())
  geometry:setEnableCollisions(false)
  check.isFalse(geometry:getEnableCollisions())
end

function testFrames()
  local body = boxBody()
  body:setPosition(1, 2, 3)
  local frame = vyr.Frame(body, vyr.AffineMatrix4x4:translate(0, 0, 1))
  check.vector(frame:getPosition(), { 1, 2, 4 }, 1e-12)
  local made = vyr.Frame:create(body, vyr.Vec3(1, 2, 5), vyr.Vec3(1, 0, 0))
  check.vector(made:getPosition(), { 1, 2, 5 }, 1e-12)
  check.vector(made:getAxis(), { 1, 0, 0 }, 1e-12)
  check.equal(made:getReferenceCount(), 1)
  check.isNil(vyr.Frame():getRigidBody())
end

-- The body holds its geometry: dropping the script's value leaves the geometry alive.
function testABodyHoldsItsGeometries()
  local body = vyr.RigidBody()
  body:add(vyrCollide.Geometry(vyrCollide.Sphere(1), "kept"))
  collectgarbage()
  collectgarbage()
  check.equal(body:getGeometries()[1]:getName(), "kept")
end

check.run()
