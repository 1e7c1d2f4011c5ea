-- What each texture mode does to a surface: a slab and a ball for every mode.
--
--   vyr examples/045-texture-modes.lua                      all modes
--   vyr examples/045-texture-modes.lua NORMALMAP_TEXTURE    one of them, beside the same things without it

local here = (arg[0]:match("^(.*/)") or "./") .. "data/"
local Vec3, Vec4 = vyr.Vec3, vyr.Vec4

local function put(node, picture, mode)
  vyrOSG.setTexture(node, here .. picture, true, vyrOSG[mode])
end

-- The modes in the order of their numbers. `first` is done with and without the mode, as the mode builds upon it.
local modes = {
  { name = "DIFFUSE_TEXTURE", first = function() end, picture = "bricks.png" },
  { name = "SHADOW_TEXTURE", first = function(node) put(node, "bricks.png", "DIFFUSE_TEXTURE") end, picture = "leaves.png" },
  {
    name = "SHADOW_JITTER_TEXTURE",
    first = function(node)
      put(node, "bricks.png", "DIFFUSE_TEXTURE")
      put(node, "leaves.png", "SHADOW_TEXTURE")
    end,
    picture = "noise.png",
  },
  { name = "NORMALMAP_TEXTURE", first = function(node) put(node, "bricks.png", "DIFFUSE_TEXTURE") end, picture = "bricks-normal.png" },
  { name = "HEIGHTMAP_TEXTURE", first = function(node) put(node, "bricks.png", "DIFFUSE_TEXTURE") end, picture = "bricks-height.png" },
  {
    name = "SPECULARMAP_TEXTURE",
    first = function(node)
      vyrOSG.setDiffuseColor(node, Vec4(0.22, 0.26, 0.34, 1))
      vyrOSG.setSpecularColor(node, Vec4(1, 1, 1, 1))
      vyrOSG.setShininess(node, 12)
    end,
    picture = "wet.png",
  },
  {
    name = "SPHEREMAP_TEXTURE",
    first = function(node)
      vyrOSG.setDiffuseColor(node, Vec4(0.55, 0.57, 0.60, 1))
      vyrOSG.setEnvMapReflectionCoefficient(node, 0.75)
    end,
    picture = "studio.png",
  },
}

function buildScene(sim, app, root)
  local S, STATIC = vyrOSG.SimulationObject, vyr.RigidBody.STATIC
  local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end

  -- A slab that leans back into the light, a ball and a line of text in front of it.
  local function exhibit(mode, x, y, label, isOn)
    local leaning = vyr.AffineMatrix4x4:rotate(-0.6, Vec3(1, 0, 0))
    local slab = S:createBox("slab " .. label, leaning * at(x, y + 0.4, 0.95), Vec3(2.2, 0.16, 2), root, sim, STATIC)
    local ball = S:createSphere("ball " .. label, at(x + 0.6, y - 0.75, 0.5), 0.5, root, sim, STATIC)
    for _, piece in ipairs({ slab, ball }) do
      local node = piece:getNode()
      mode.first(node)
      if isOn then
        put(node, mode.picture, mode.name)
      end
    end
    vyrOSG.addText(ball:getGeometry(), root, label, Vec3(-0.6, -0.7, -0.35), Vec4(0.1, 0.12, 0.16, 1), 0.19)
  end

  local ground = S:createBox("ground", at(0, 0, -0.25), Vec3(60, 60, 0.5), root, sim, STATIC)
  vyrOSG.setDiffuseColor(ground:getNode(), Vec4(0.68, 0.69, 0.69, 1))

  local chosen
  for _, mode in ipairs(modes) do
    chosen = mode.name == arg[1] and mode or chosen
  end
  if chosen then
    exhibit(chosen, -1.35, 0, "without", false)
    exhibit(chosen, 1.35, 0, chosen.name, true)
    app:setCameraHome(Vec3(0, -4.75, 2.9), Vec3(0, -0.3, 0.72))
  else
    for i, mode in ipairs(modes) do
      local isBehind = i <= 3
      exhibit(mode, isBehind and 3.3 * (i - 2) or 3 * (i - 5.5), isBehind and 4.7 or 0, mode.name, true)
    end
    app:setCameraHome(Vec3(0, -7, 9.4), Vec3(0, 1.75, 0))
  end
  app:getSceneDecorator():setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
