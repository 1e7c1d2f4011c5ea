-- A small wood in the wind: trees of rigid bodies and elastic joints. A boulder rolls in and breaks a tree.
-- tour: 3
--
-- In a window:           vyr examples/210-forest.lua       (key "w": more wind, "e": less)
-- As a picture instead:  vyr --gl=egl --duration 4 --shot t=3:forest.png examples/210-forest.lua

local Vec3, Vec4 = vyr.Vec3, vyr.Vec4

-- Height of the trunk (m), radius at the ground (m), seed, place, colour of the leaves.
local TREES = {
  { 6.5, 0.16, 3, -4.5, 3.0, Vec4(0.25, 0.42, 0.13, 1) }, { 5.2, 0.12, 8, 0.6, 4.6, Vec4(0.34, 0.48, 0.15, 1) },
  { 7.2, 0.19, 21, 5.2, 3.6, Vec4(0.22, 0.38, 0.14, 1) }, { 4.4, 0.10, 5, -1.9, -0.4, Vec4(0.40, 0.50, 0.14, 1) },
  { 5.6, 0.13, 13, 3.0, -0.6, Vec4(0.62, 0.42, 0.10, 1) }, { 4.8, 0.11, 34, -6.6, -1.2, Vec4(0.30, 0.46, 0.18, 1) },
}

function buildScene(sim, app, root)
  local ground = vyr.RigidBody("meadow")
  ground:add(vyrCollide.Geometry(vyrCollide.Box(Vec3(40, 40, 0.5))))
  ground:setPosition(Vec3(0, 0, -0.5))
  ground:setMotionControl(vyr.RigidBody.STATIC)
  sim:add(ground)
  vyrOSG.setDiffuseColor(vyrOSG.createVisual(ground, root), Vec4(0.36, 0.45, 0.22, 1))

  local wind = 9
  local trees = {}
  for i, t in ipairs(TREES) do
    local form = vyrModel.TreeParameters()
    form.height, form.trunkRadius = t[1], t[2]
    -- A vyrOSG.Tree draws itself; a vyrModel.Tree is the same without a picture.
    local tree = vyrOSG.Tree(root)
    tree:setColor(t[6])
    tree:grow(form, t[3])
    tree:setTransform(vyr.AffineMatrix4x4:translate(t[4], t[5], 0))
    tree:addTo(sim)
    tree:setWind(Vec3(wind, 0.3 * wind, 0))
    trees[i] = tree
  end

  -- 2 t of granite on its way to the tree on the left.
  local boulder = vyr.RigidBody("boulder")
  boulder:add(vyrCollide.Geometry(vyrCollide.Sphere(0.57)))
  boulder:setMass(2000)
  boulder:setPosition(Vec3(-13, -1.3, 0.57))
  boulder:setVelocity(Vec3(8, 0, 0))
  boulder:setAngularVelocity(Vec3(0, 14, 0))
  sim:add(boulder)
  vyrOSG.setDiffuseColor(vyrOSG.createVisual(boulder, root, 1.0), Vec4(0.50, 0.48, 0.46, 1))

  sim:add(vyrSDK.GuiEventListener{ keyboard = function(key, modifiers, x, y, down)
    if not down or (key ~= string.byte("w") and key ~= string.byte("e")) then return false end
    wind = math.max(0, wind + (key == string.byte("w") and 3 or -3))
    for _, tree in ipairs(trees) do tree:setWind(Vec3(wind, 0.3 * wind, 0)) end
    return true
  end })

  local decorator = app:getSceneDecorator()
  decorator:setBackgroundColor(Vec3(0.42, 0.60, 0.80), Vec3(0.86, 0.91, 0.94))
  decorator:setEnableShadows(true)
  app:setCameraHome(Vec3(1, -17, 4.2), Vec3(0, 1, 3.2))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
