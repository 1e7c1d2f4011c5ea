-- Calls that once ended the process: each is a result or an error now.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

function testNodeIsRefusedBelowItself()
  for _, class in ipairs { osg.Group, osg.MatrixTransform, osg.Transform, vyrOSG.Group, vyrOSG.Transform } do
    local above, below = class:new(), class:new()
    check.isFalse(above:addChild(above))
    check.isTrue(above:addChild(below))
    check.isFalse(below:addChild(above))
  end
end

function testNodeIsRefusedBelowItselfThroughManyPaths()
  local top = vyrOSG.Group:new()
  local parent = top
  for _ = 1, 40 do
    local child = osg.Group:new()
    parent:addChild(child)
    parent:addChild(child) -- 2^40 paths lead up from the last one
    parent = child
  end
  check.isFalse(parent:addChild(top))
end

function testDecoratorIsRefusedBelowItself()
  local decorator = vyrOSG.SceneDecorator(64, 64)
  local group = osg.Group:new()
  check.isTrue(decorator:addChild(group))
  check.isFalse(group:addChild(decorator))
  check.isFalse(decorator:addChild(decorator))
  check.isFalse(decorator:insertChild(0, decorator))
  check.isFalse(decorator:replaceChild(group, decorator))
  check.isFalse(decorator:setChild(0, decorator))
end

function testRenderChildAboveItsNodeIsNotShown()
  local node = vyrOSG.GeometryNode(vyrCollide.Geometry(vyrCollide.Sphere(1)))
  local above = osg.Group:new()
  check.isTrue(above:addChild(node))
  node:setRenderChild(vyrOSG.GeometryNode.RENDER_DATA, above)
  node:selectRenderChild(vyrOSG.GeometryNode.RENDER_DATA)
  vyrOSG.setShininess(above, 4) -- walks the scene
end

function testDecoratorMakesLightsWithoutItsUniforms()
  local decorator = vyrOSG.SceneDecorator(64, 64)
  local function removeUniforms(state)
    if not state then return end
    for _, name in ipairs { "vyr_lightOn", "vyr_shadowLight", "vyr_shadowTexel" } do state:removeUniform(name) end
  end
  local parent = decorator:getShadowedScene()
  while parent and parent:getNumParents() > 0 do
    parent = parent:getParent(0)
    removeUniforms(parent:getStateSet())
  end
  decorator:createLights(7)
  decorator:setEnableShadows(true)
end

function testReadOnlyViewOfAnUnknownClassIsPushedTwice()
  local camera = osg.Camera:new()
  local first = camera:getBufferAttachmentMap()
  check.isTrue(rawequal(first, camera:getBufferAttachmentMap()))
  check.isFalse(pcall(function() return first.field + 1 end))
  collectgarbage()
end

function testPressuresBeyondTheRangeOfColors()
  local colors = vyrRender.ColorVector()
  for _, range in ipairs { { 0, 1e308 }, { 1, 1 + 1e-12 }, { -1e308, 1e308 }, { 0, 0 / 0 } } do
    check.notNil(vyrOSG.PressureRenderer(vyrOSG.Group:new(), vyrOSG.SceneDecorator(64, 64), vyrSDK.Simulation(), range[1], range[2],
      colors))
  end
end

function testUniformsOfDifferentDataAreCompared()
  local number = osg.Uniform:new(osg.Uniform.FLOAT, "a")
  local matrix = osg.Uniform:new(osg.Uniform.FLOAT_MAT4, "a")
  check.equal(number:compareData(number), 0)
  check.notEqual(number:compareData(matrix), 0)
  check.equal(number:compareData(matrix), -matrix:compareData(number))
end

function testRoomForAbsurdlyManyContextsIsRefused()
  osg.Camera():resizeGLObjectBuffers(-1)
end

function testHandleThatIsRegisteredAsCountedHasNoCount()
  check.equal(vyrOSG.LightSource(nil):getReferenceCount(), 0)
  check.equal(vyr.RigidBody("a"):getReferenceCount(), 1)
end

function testRoomForAbsurdlyManyNumbersIsRefused()
  local numbers = vyr.RealVector()
  numbers:reserve(2 ^ 32 - 1)
  check.equal(numbers:size(), 0)
end

function testViewGoesWithItsObject()
  local camera, owner = osg.Camera:new(), osg.Geode:new()
  local color = camera:getClearColor()
  local keeper = osg.Camera()
  keeper:addChild(owner)
  local object = vyrOSG.SimulationObject(vyrCollide.Geometry(vyrCollide.Sphere(1)), nil, camera)
  object:delete()
  check.isFalse((pcall(function() color.r = 2 end)))
end

function testBranchOutlivesItsTree()
  local tree = vyrModel.Tree()
  tree:grow()
  local branch = tree:getBranch(0)
  local length = branch.length
  tree = nil
  collectgarbage()
  check.equal(branch.length, length)
  check.isTrue(branch.body ~= nil)
end

function testArrayWithoutItsOwnerHasNoElements()
  local array = osg.Vec3f(1, 2, 3)._v
  collectgarbage()
  check.isFalse((pcall(function() return array[1] end)))
end

check.run()
