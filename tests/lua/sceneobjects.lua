-- Objects of the scene-graph library that scripts make for functions of the visual layer.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

local data = (arg[0]:match("^(.*/)") or "./") .. "../../examples/data/"

function testTextures()
  local image = osg.Image:read(data .. "noise.png")
  check.equal(image:s(), 64)
  check.equal(image:t(), 64)
  check.isNil(osg.Image:read("no such picture.png"))
  local texture = osg.Texture2D(image)
  check.equal(texture:getImage():s(), 64)
  local node = osg.Group()
  check.isTrue(vyrOSG.setTexture(node, texture, true))
  -- It is a texture and a state attribute as well.
  check.notNil(node:getStateSet():getTextureAttribute(0, osg.StateAttribute.TEXTURE))
  node:getStateSet():setTextureAttributeAndModes(3, texture)
  check.notNil(node:getStateSet():getTextureAttribute(3, osg.StateAttribute.TEXTURE))
  local manager = vyrOSG.RenderStateManager:instance()
  manager:addTexture("made", texture)
  check.notNil((manager:findTexture("made")))
  manager:clear()
  -- One picture for the surface of another: what is drawn to a texture.
  local mirror = vyrOSG.RenderToTexture(16, 16)
  manager:addTexture("drawn", mirror:getTexture())
  check.notNil((manager:findTexture("drawn")))
  manager:clear()
  check.raises("error in function", vyrOSG.setTexture, node, osg.TexMat())
end

function testTextureMatrices()
  local matrix = osg.TexMat(osg.Matrixd:scale(2, 3, 1))
  check.equal(matrix:getMatrix():get(1, 1), 3)
  local state = vyrOSG.RenderStateManager.RenderState("tiled")
  state:addTexture(0, osg.Texture2D(osg.Image:read(data .. "noise.png")), matrix)
  local group = vyrOSG.Group()
  state:apply(group)
  check.notNil(group:getStateSet():getTextureAttribute(0, osg.StateAttribute.TEXMAT))
end

function testOptionsOfReaders()
  local options = osgDB.ReaderWriter.Options("noRotation")
  check.equal(options:getOptionString(), "noRotation")
  check.isNil((vyrOSG.readNodeFile("gem.obj", options)))
  options:addFolder(data)
  check.notNil((vyrOSG.readNodeFile("gem.obj", options, false)))
  check.notNil((vyrOSG.readNodeFile("gem.obj", options)))
end

function testConstraintVectors()
  local sim = vyrSDK.Simulation()
  local load = vyr.RigidBody("load")
  load:add(vyrCollide.Geometry(vyrCollide.Sphere(0.5)))
  sim:add(load)
  local slide = vyr.Prismatic:create(load, nil, vyr.Vec3(), vyr.Vec3(1, 0, 0))
  sim:add(slide)
  local constraints = vyr.Constraint1DOFVector()
  check.isTrue(constraints:add(slide))
  check.isFalse(constraints:add(nil))
  check.equal(constraints:size(), 1)
  local renderer = vyrOSG.ForceArrowRenderer()
  renderer:add(constraints, vyr.Vec3())
  sim:step()
  check.isTrue(renderer:remove(constraints))
  check.isFalse(renderer:remove(constraints))
  -- A list whose constraints have gone is empty of meaning, not of harm.
  renderer:add(constraints, vyr.Vec3())
  sim, load, slide = nil, nil, nil
  collectgarbage()
  collectgarbage()
  check.equal(constraints:size(), 1)
  for _ = 1, 1000 do vyr.Constraint1DOFVector() end
  collectgarbage()
end

function testMatricesPassUnderTheirShortName()
  -- nil is a visitor, too: the camera alone counts.
  local camera = osg.Camera()
  check.isTrue(camera:computeLocalToWorldMatrix(osg.Matrixd(), nil))
end

check.run()
