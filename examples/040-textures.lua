-- Pictures on surfaces: a tiled floor, a wall of bricks whose normals come from a second picture, and wooden pieces.
--
--   vyr examples/040-textures.lua

-- The pictures lie beside this script, wherever it is started from.
local here = (arg[0]:match("^(.*/)") or "./") .. "data/"

function buildScene(sim, app, root)
  local S, Vec3 = vyrOSG.SimulationObject, vyr.Vec3
  local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end
  local STATIC = vyr.RigidBody.STATIC

  -- The last two numbers say how often the picture is repeated along its two directions.
  local floor = S:createBox("floor", at(0, 0, -0.25), Vec3(12, 12, 0.5), root, sim, STATIC)
  vyrOSG.setTexture(floor:getNode(), here .. "tiles.png", true, vyrOSG.DIFFUSE_TEXTURE, 6, 6)

  local wall = S:createBox("wall", at(0, 2.5, 1.25), Vec3(8, 0.5, 2.5), root, sim, STATIC)
  vyrOSG.setTexture(wall:getNode(), here .. "bricks.png", true, vyrOSG.DIFFUSE_TEXTURE, 4, 2)
  vyrOSG.setTexture(wall:getNode(), here .. "bricks-normal.png", true, vyrOSG.NORMALMAP_TEXTURE, 4, 2)

  for i = 0, 4 do
    local x, z = -3 + 1.5 * i, 1.2 + 0.5 * i
    -- The functions give back the name as well, behind the object; a local takes the object alone.
    local crate = S:createBox("crate " .. i, at(x, 0.3, z), Vec3(0.9, 0.9, 0.9), root, sim)
    local lying = vyr.AffineMatrix4x4:rotate(math.pi / 2, Vec3(1, 0.3, 0))
    local log = S:createCylinder("log " .. i, lying * at(x, -1.5, z), 0.3, 1.4, root, sim)
    local ball = S:createSphere("ball " .. i, at(x + 0.6, -0.6, z + 1.5), 0.4, root, sim)
    for _, piece in ipairs({ crate, log, ball }) do
      vyrOSG.setTexture(piece:getNode(), here .. "wood.png", true)
    end
  end

  app:setCameraHome(Vec3(4, -7.5, 4), Vec3(0, 0.2, 0.8))
  app:getSceneDecorator():setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
