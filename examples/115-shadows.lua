-- One scene under each of the six ways to draw shadows; the way's name is the script's argument.
--
--   vyr examples/115-shadows.lua                          soft shadows, the default
--   vyr examples/115-shadows.lua PARALLELLSPLIT_SHADOWMAP
--   vyr examples/115-shadows.lua NO_SHADOWS
--
-- Keys s: the next way.

local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end
local names = { "SOFT_SHADOWMAP", "SHADOWMAP", "SHADOWVOLUME", "PARALLELLSPLIT_SHADOWMAP", "SHADOWTEXTURE", "NO_SHADOWS" }

local chosen = 1
for i, name in ipairs(names) do
  if name == arg[1] then chosen = i end
end
if arg[1] and names[chosen] ~= arg[1] then
  error("there is no shadow method '" .. arg[1] .. "'; there are " .. table.concat(names, ", "), 0)
end

function buildScene(sim, app, root)
  local floor = S:createBox("floor", at(0, 0, -0.25), Vec3(16, 12, 0.5), root, sim, vyr.RigidBody.STATIC)
  vyrOSG.setDiffuseColor(floor:getNode(), Vec4(0.72, 0.70, 0.66, 1))

  -- Things high and low, thin and round, near and far: a gate, a fence, a stair, and balls that float.
  local function box(x, y, z, sx, sy, sz, r, g, b)
    local part = S:createBox("part", at(x, y, z), Vec3(sx, sy, sz), root, sim, vyr.RigidBody.STATIC)
    vyrOSG.setDiffuseColor(part:getNode(), Vec4(r, g, b, 1))
  end
  box(-3.5, 1, 1.25, 0.4, 0.4, 2.5, 0.75, 0.30, 0.24)
  box(-0.9, 1, 1.25, 0.4, 0.4, 2.5, 0.75, 0.30, 0.24)
  box(-2.2, 1, 2.7, 3.4, 0.5, 0.4, 0.85, 0.38, 0.28)
  for i = 0, 9 do box(-6.5 + 0.55 * i, 3.8, 0.5, 0.1, 0.1, 1.0, 0.90, 0.88, 0.80) end
  box(-4.0, 3.8, 0.8, 5.6, 0.08, 0.12, 0.90, 0.88, 0.80)
  for i = 1, 5 do box(2.0 + 0.6 * i, 1.5, 0.2 * i, 0.6, 2.0, 0.4 * i, 0.42, 0.55, 0.68) end
  for i = 0, 3 do
    local ball = S:createSphere("ball", at(-1.5 + 1.7 * i, -2.2, 0.5 + 0.5 * i), 0.5, root, sim, vyr.RigidBody.STATIC)
    vyrOSG.setDiffuseColor(ball:getNode(), Vec4(0.95, 0.72, 0.15, 1))
  end

  local decorator = app:getSceneDecorator()
  local function show()
    decorator:setShadowMethod(vyrOSG.SceneDecorator[names[chosen]])
    decorator:setText(0, names[chosen])
  end
  decorator:setEnableShadows(true)
  show()
  sim:add(vyrSDK.GuiEventListener({ keyboard = function(key, _, _, _, down)
    if not down or key ~= string.byte("s") then return false end
    chosen = chosen % #names + 1
    show()
    return true
  end }))
  app:setCameraHome(Vec3(4, -12, 7.5), Vec3(-0.4, 0.4, 0.5))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
