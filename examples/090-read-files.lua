-- Things from files: a bowl that stays where it is, and cut stones that fall into it.
--
--   vyr examples/090-read-files.lua

local here = (arg[0]:match("^(.*/)") or "./") .. "data/"

function buildScene(sim, app, root)
  local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
  local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end

  local ground = S:createBox("ground", at(0, 0, -0.3), Vec3(14, 14, 0.5), root, sim, vyr.RigidBody.STATIC)
  vyrOSG.setDiffuseColor(ground:getNode(), Vec4(0.42, 0.44, 0.48, 1))

  -- A mesh that does not move collides with its exact triangles, so that things fall into a bowl. Its colours come from
  -- the file.
  S:createTrimesh("bowl", at(0, 0, 0), here .. "bowl.obj", root, sim, vyr.RigidBody.STATIC)

  -- One mesh, read once and shared by all the stones; a mesh that moves collides as its convex hull.
  local gem = vyrCollide.Trimesh:create(here .. "gem.obj", 1.2)
  local colors = { Vec4(0.80, 0.15, 0.25, 1), Vec4(0.15, 0.60, 0.40, 1), Vec4(0.20, 0.40, 0.85, 1), Vec4(0.85, 0.75, 0.25, 1) }
  for i = 1, 24 do
    local place = vyr.AffineMatrix4x4:rotate(i, Vec3(1, 0.5, 0.2)) * at(1.1 * math.cos(2.4 * i), 1.1 * math.sin(2.4 * i), 2.5 + 0.5 * i)
    local stone = S:createTrimesh("stone " .. i, place, gem, root, sim)
    vyrOSG.setDiffuseColor(stone:getNode(), colors[i % #colors + 1])
    vyrOSG.setSpecularColor(stone:getNode(), Vec4(0.9, 0.9, 0.9, 1))
    vyrOSG.setShininess(stone:getNode(), 60)
  end

  app:setCameraHome(Vec3(4.5, -7, 6), Vec3(0, 0, 1.1))
  app:getSceneDecorator():setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
