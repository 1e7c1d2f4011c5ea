-- Marbles run down a chute; two cameras watch them, and the screens on the wall show what these see.
-- tour: 3
--
--   vyr examples/140-render-to-texture.lua

local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end

-- A camera with a picture of its own. It looks from eye to center and draws before the main picture.
local function watch(app, eye, center)
  local target = vyrOSG.RenderToTexture(512, 320)
  local camera = target:getCamera()
  camera:setViewMatrixAsLookAt(osg.Vec3d(eye.x, eye.y, eye.z), osg.Vec3d(center.x, center.y, center.z), osg.Vec3d(0, 0, 1))
  camera:setProjectionMatrixAsPerspective(45, 512 / 320, 0.1, 100)
  app:addRenderToTexture(target)
  return target:getTexture()
end

function buildScene(sim, app, root)
  local function box(place, size, r, g, b)
    local part = S:createBox("part", place, size, root, sim, vyr.RigidBody.STATIC)
    vyrOSG.setDiffuseColor(part:getNode(), Vec4(r, g, b, 1))
    return part:getNode()
  end
  box(at(0, 0, -0.25), Vec3(16, 12, 0.5), 0.50, 0.52, 0.55)
  box(at(0, 5.5, 3), Vec3(16, 0.4, 6), 0.30, 0.33, 0.40)
  box(at(-2.75, 4.95, 3.6), Vec3(5.2, 0.3, 3.4), 0.08, 0.08, 0.09)
  box(at(2.75, 4.95, 3.6), Vec3(5.2, 0.3, 3.4), 0.08, 0.08, 0.09)

  -- A chute of a slanted floor and two rails; a tray below catches the marbles.
  local slant = vyr.AffineMatrix4x4:rotate(0.35, Vec3(0, 1, 0))
  box(slant * at(-2.5, 0, 1.5), Vec3(6, 1.6, 0.15), 0.80, 0.62, 0.35)
  box(slant * at(-2.5, -0.85, 1.65), Vec3(6, 0.12, 0.4), 0.65, 0.45, 0.22)
  box(slant * at(-2.5, 0.85, 1.65), Vec3(6, 0.12, 0.4), 0.65, 0.45, 0.22)
  box(at(-3, 0, 0.3) * slant * at(-2.5, 0, 1.5), Vec3(0.12, 1.6, 1.0), 0.65, 0.45, 0.22)
  for _, wall in ipairs({ { 5.2, 0, 0.2, 4 }, { 3.2, -2, 4, 0.2 }, { 3.2, 2, 4, 0.2 } }) do
    box(at(wall[1], wall[2], 0.25), Vec3(wall[3], wall[4], 0.5), 0.35, 0.50, 0.45)
  end
  local colors = { Vec4(0.90, 0.25, 0.20, 1), Vec4(0.20, 0.55, 0.90, 1), Vec4(0.98, 0.78, 0.15, 1), Vec4(0.25, 0.75, 0.40, 1) }
  for i = 0, 39 do
    local marble = S:createSphere("marble " .. i, at(-4.8 - 0.12 * (i % 3), -0.5 + 0.5 * (i % 3), 3.4 + 0.5 * math.floor(i / 3)),
      0.22, root, sim)
    vyrOSG.setDiffuseColor(marble:getNode(), colors[i % 4 + 1])
  end

  -- A screen is a thin box whose surface is the camera's texture, as if it were a picture from a file.
  local above = box(at(-2.75, 4.75, 3.6), Vec3(4.8, 0.12, 3.0), 1, 1, 1)
  local below = box(at(2.75, 4.75, 3.6), Vec3(4.8, 0.12, 3.0), 1, 1, 1)
  vyrOSG.setTexture(above, watch(app, Vec3(3.0, -0.1, 7.5), Vec3(3.0, 0, 0)))
  vyrOSG.setTexture(below, watch(app, Vec3(4.9, 0, 2.6), Vec3(-2, 0, 1.2)))

  app:setCameraHome(Vec3(1.5, -11.5, 5.2), Vec3(0, 1, 1.9))
  local decorator = app:getSceneDecorator()
  decorator:setEnableCalculateLightPositions(vyrOSG.SceneDecorator.LIGHT0, false)
  decorator:getLightSource(vyrOSG.SceneDecorator.LIGHT0):setPosition(Vec4(-5, -8, 12, 0)) -- from the front: the wall stays lit
  decorator:setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
