-- What a material does: friction on a slope, bounces, and how surfaces shine.
--
--   vyr examples/030-materials.lua

local function body(sim, name, shape, material, position, motion)
  local geometry = vyrCollide.Geometry(shape, name)
  geometry:setMaterial(material)
  local made = vyr.RigidBody(name)
  made:add(geometry)
  made:setPosition(position)
  made:setMotionControl(motion or vyr.RigidBody.DYNAMICS)
  sim:add(made)
  return made
end

function buildScene(sim, app, root)
  local Vec3, Vec4 = vyr.Vec3, vyr.Vec4
  -- Density in kg/m^3, friction coefficient, restitution. A contact's friction is the geometric mean of the two
  -- materials' coefficients; its restitution is the larger of the two.
  local stone = vyr.Material("stone", 2600, 1.0, 0.0)

  local ground = body(sim, "ground", vyrCollide.Box(Vec3(7, 5, 0.25)), stone, Vec3(0, 0, -0.25), vyr.RigidBody.STATIC)
  vyrOSG.setDiffuseColor(vyrOSG.createVisual(ground, root), Vec4(0.50, 0.53, 0.56, 1))

  -- Back: a slope of 25 degrees. A block stays where its friction exceeds tan(25 deg) = 0.47, else it slides.
  local slope = body(sim, "slope", vyrCollide.Box(Vec3(5, 2, 0.1)), stone, Vec3(0, 2.2, 1.2), vyr.RigidBody.STATIC)
  slope:setRotation(vyr.Quat(math.rad(25), Vec3(1, 0, 0)))
  vyrOSG.setDiffuseColor(vyrOSG.createVisual(slope, root), Vec4(0.62, 0.52, 0.40, 1))
  for i = 0, 6 do
    local friction = 0.1 + 0.1 * i -- with stone: sqrt(friction)
    local block = body(sim, "block " .. i, vyrCollide.Box(Vec3(0.3, 0.3, 0.2)),
      vyr.Material("block", 1000, friction * friction, 0), Vec3(-3.6 + 1.2 * i, 3.0, 1.95))
    block:setRotation(vyr.Quat(math.rad(25), Vec3(1, 0, 0)))
    local node = vyrOSG.createVisual(block, root)
    vyrOSG.setDiffuseColor(node, Vec4(vyr.lerp(0.15, 0.85, i / 6), 0.35, vyr.lerp(0.85, 0.15, i / 6), 1))
    vyrOSG.addText(block:getGeometries()[1], root, string.format("%.1f", friction), Vec3(-0.2, 0, 0.45), Vec4(1, 1, 1, 1), 0.3)
  end

  -- Front: balls of rising restitution, from lead to superball, with surfaces from dull to polished.
  for i = 0, 6 do
    local ball = body(sim, "ball " .. i, vyrCollide.Sphere(0.35), vyr.Material("ball", 800, 0.4, i * 0.15),
      Vec3(-3.6 + 1.2 * i, -2.2, 3.2))
    local node = vyrOSG.createVisual(ball, root, 1.0)
    vyrOSG.setDiffuseColor(node, Vec4(0.85, 0.55 - 0.05 * i, 0.10, 1))
    vyrOSG.setSpecularColor(node, Vec4(i / 6, i / 6, i / 6, 1))
    vyrOSG.setShininess(node, 8 + 18 * i)
  end

  -- A pane of glass between the two: drawn translucent, solid all the same.
  local glass = body(sim, "glass", vyrCollide.Box(Vec3(5, 0.05, 0.5)), vyr.Material("glass", 2500, 0.2, 0.1), Vec3(0, -0.9, 0.5),
    vyr.RigidBody.STATIC)
  local pane = vyrOSG.createVisual(glass, root)
  vyrOSG.setDiffuseColor(pane, Vec4(0.55, 0.80, 0.90, 1))
  vyrOSG.setAlpha(pane, 0.35)

  app:setCameraHome(Vec3(0, -10, 5.5), Vec3(0, 0.4, 0.7))
  app:getSceneDecorator():setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
