-- A scene in a file: a junk yard is built, dressed, and run for a second; then it is written, and what is shown is what was read.
-- tour: 1
--
--   vyr examples/095-scene-files.lua [scene.json]

local S, Vec3, Vec4 = vyrOSG.SimulationObject, vyr.Vec3, vyr.Vec4
local here = (arg[0]:match("^(.*/)") or "./") .. "data/"
local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end

local function build(sim, root)
  local ground = S:createBox("ground", at(0, 0, -0.25), Vec3(18, 14, 0.5), root, sim, vyr.RigidBody.STATIC)
  vyrOSG.setDiffuseColor(ground:getNode(), Vec4(0.46, 0.48, 0.45, 1))

  for i = 1, 9 do
    local drum = S:createCylinder("drum " .. i, at(-3.5 + 0.02 * i, 1.6 * (i % 3 - 1), 0.6 + 1.1 * math.floor((i - 1) / 3)), 0.4, 1,
      root, sim)
    vyrOSG.setDiffuseColor(drum:getNode(), i % 2 == 0 and Vec4(0.70, 0.30, 0.16, 1) or Vec4(0.20, 0.42, 0.55, 1))
    vyrOSG.setShininess(drum:getNode(), 80)
  end

  local glass = S:createBox("glass", at(-0.4, -2.2, 0.8), Vec3(1.2, 1.2, 1.2), root, sim)
  vyrOSG.setDiffuseColor(glass:getNode(), Vec4(0.45, 0.80, 0.90, 0.45))
  local cage = S:createBox("cage", at(0.9, -2.5, 0.8), Vec3(1, 1, 1), root, sim)
  vyrOSG.setDiffuseColor(cage:getNode(), Vec4(0.95, 0.75, 0.20, 1))
  vyrOSG.forceWireFrameModeOn(cage:getNode())
  S:createTrimesh("bowl", at(-0.5, 2.6, 0), here .. "bowl.obj", root, sim, vyr.RigidBody.STATIC)

  local sign = S:createBox("sign", at(4.4, 2.8, 0.7), Vec3(3, 0.15, 1.2), root, sim, vyr.RigidBody.STATIC)
  vyrOSG.setDiffuseColor(sign:getNode(), Vec4(0.92, 0.92, 0.88, 1))
  vyrOSG.addText(sign:getGeometry(), root, "scene.json", Vec3(0, -0.6, 0.1), Vec4(0.15, 0.2, 0.3, 1), 0.5)

  -- A wrecking ball on a rope.
  local ball = S:createSphere("ball", at(-0.4, 0, 3.4), 0.45, root, sim)
  vyrOSG.setDiffuseColor(ball:getNode(), Vec4(0.22, 0.24, 0.28, 1))
  local rope = vyrWire.Wire(3.6, 24, 1.5, 0.04)
  rope:attachBegin(nil, Vec3(-3.2, 0, 5.6))
  rope:attachEnd(ball:getRigidBody(), Vec3(0, 0, 0.45))
  sim:add(rope)
  sim:add(vyrOSG.WireRenderer(rope, root))

  local car = vyrOSG.createSimpleBoxCar(Vec3(2.4, 1.1, 0.4), 900, sim, root)
  car:transform(at(2.8, -1, 0.7))
  car:setThrottle(0.25)
  car:setSteering(0.6)
end

-- Nobody looks at this one.
local first, unseen = vyrSDK.Simulation(), vyrOSG.Group()
build(first, unseen)
for _ = 1, 60 do first:step() end
local unnamed = os.tmpname()
local file = arg[1] or unnamed .. ".json"
assert(first:write(file))

function buildScene(sim, app, root)
  -- 15: bodies, settings, constraints and visuals. An empty simulation goes on as the one that was written.
  assert(vyrOSG.readFile(file, sim, root, nil, nil, 0.35, false, -1, 15))
  print("the state is the same: " .. tostring(sim:stateHash() == first:stateHash()))
  app:setCameraHome(Vec3(3.5, -10, 6.5), Vec3(0, 0, 0.9))
  app:getSceneDecorator():setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
os.remove(unnamed)
os.remove(unnamed .. ".json")
