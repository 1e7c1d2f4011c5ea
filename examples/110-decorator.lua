-- The dress of a scene: a background of four colours, three lights, soft shadows, lines of text, and a logo.
--
--   vyr examples/110-decorator.lua

local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end
-- The pictures lie beside this script, wherever it is started from.
local here = (arg[0]:match("^(.*/)") or "./") .. "data/"

-- A stage with white things on it: all colour comes from the lights.
local function buildStage(sim, root)
  local stage = S:createCylinder("stage", at(0, 0, -0.25), 6, 0.5, root, sim, vyr.RigidBody.STATIC)
  local function whiten(object) vyrOSG.setDiffuseColor(object:getNode(), Vec4(0.8, 0.8, 0.8, 1)) end
  whiten(stage)
  for i = 0, 6 do
    local angle = i * math.pi / 3.5
    local x, y = 2.6 * math.cos(angle), 2.6 * math.sin(angle)
    whiten(S:createBox("pedestal " .. i, at(x, y, 0.5), Vec3(0.8, 0.8, 1.0), root, sim, vyr.RigidBody.STATIC))
    whiten(S:createSphere("ball " .. i, at(x, y, 1.5 + 0.25 * i), 0.45, root, sim))
  end
  whiten(S:createCapsule("post", at(0, 0, 1.2), 0.5, 1.4, root, sim, vyr.RigidBody.STATIC))
end

function buildScene(sim, app, root)
  buildStage(sim, root)
  local decorator = app:getSceneDecorator()
  local D = vyrOSG.SceneDecorator

  -- One colour fills the background, two make a gradient (upper, lower), four stand in the corners:
  -- lower left, lower right, upper right, upper left.
  decorator:setBackgroundColor(Vec3(0.35, 0.20, 0.30), Vec3(0.20, 0.20, 0.35), Vec3(0.02, 0.03, 0.10), Vec3(0.08, 0.03, 0.12))

  -- The decorator places its three lights around the scene; one that has a place of its own is left alone.
  decorator:setEnableCalculateLightPositions(D.ALL, false)
  local key, left, right = decorator:getLightSource(D.LIGHT0), decorator:getLightSource(D.LIGHT1),
    decorator:getLightSource(D.LIGHT2)
  key:setPosition(Vec4(5, -8, 9, 1)) -- a fourth component of 1: a lamp at a place; 0: sunlight from a direction
  key:setDiffuse(Vec4(0.55, 0.50, 0.42, 1))
  left:setPosition(Vec4(-9, -3, 4, 1))
  left:setDiffuse(Vec4(0.04, 0.12, 0.36, 1))
  right:setPosition(Vec4(9, 2, 4, 1))
  right:setDiffuse(Vec4(0.36, 0.09, 0.04, 1))

  -- The first light casts the shadows; see 115-shadows.lua for the six ways to draw them.
  decorator:setShadowMethod(D.SOFT_SHADOWMAP)
  decorator:setEnableShadows(true)

  decorator:setFontName("DejaVuSans")
  decorator:setFontSize(22)
  decorator:setText(0, "White bodies under three lights")
  decorator:setText(1, "warm light from above, with shadows", Vec4(1.0, 0.92, 0.75, 1))
  decorator:setText(2, "blue light from the left", Vec4(0.55, 0.75, 1.0, 1))
  decorator:setText(3, "red light from the right", Vec4(1.0, 0.60, 0.45, 1))

  -- The logo shrinks to the size it is given, in pixels.
  decorator:setMaximumLogoDimension(160, 160)
  decorator:setLogoFile(here .. "logo.png")
  decorator:setLogoLocation(D.LOWER_RIGHT)

  app:setCameraHome(Vec3(4, -10, 6.5), Vec3(0, 0, 0.6))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
