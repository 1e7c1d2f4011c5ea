-- A tower crane slews with a load on a wire; the hook swings, and the wire tells how hard it is pulled.
-- tour: 6
--
--   vyr examples/180-wire-crane.lua

local S = vyrOSG.SimulationObject
local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end

-- A box with a colour; sizes are edge lengths in metres.
local function box(name, place, size, motion, color, root, sim)
  local object = S:createBox(name, place, size, root, sim, motion)
  vyrOSG.setDiffuseColor(object:getNode(), color)
  return object:getRigidBody()
end

function buildScene(sim, app, root)
  local yellow, grey = vyr.Vec4(0.95, 0.72, 0.10, 1), vyr.Vec4(0.55, 0.57, 0.60, 1)
  local STATIC, MOVED = vyr.RigidBody.STATIC, vyr.RigidBody.KINEMATICS

  box("ground", at(0, 0, -0.25), vyr.Vec3(30, 30, 0.5), STATIC, vyr.Vec4(0.62, 0.64, 0.60, 1), root, sim)
  box("mast", at(0, 0, 5), vyr.Vec3(0.6, 0.6, 10), STATIC, yellow, root, sim)
  box("tip", at(0, 0, 11), vyr.Vec3(0.4, 0.4, 2), STATIC, yellow, root, sim)
  box("pallet", at(2.4, -6.2, 0.4), vyr.Vec3(1.4, 1.0, 0.8), STATIC, vyr.Vec4(0.60, 0.42, 0.25, 1), root, sim)

  -- The jib slews about the mast with a given velocity, whatever hangs on it.
  local jib = box("jib", at(3, 0, 10), vyr.Vec3(11, 0.5, 0.4), MOVED, yellow, root, sim)
  box("counterweight", at(-3.2, 0, 0.6), vyr.Vec3(1.0, 1.0, 1.2), STATIC, grey, root, sim)

  -- The hoist begins taut: a load that drops into its wire makes it whip.
  local load = box("load", at(8, 0, 3.3), vyr.Vec3(1.2, 1.2, 1.0), vyr.RigidBody.DYNAMICS,
                   vyr.Vec4(0.80, 0.22, 0.16, 1), root, sim)
  load:setMass(800)

  -- A wire: length, segments, mass in kg per metre, radius. It hangs on a body at a point of the body's own frame.
  local function wire(length, segments, fromBody, from, toBody, to, radius)
    local rope = vyrWire.Wire(length, segments, 1.2, radius)
    rope:attachBegin(fromBody, from)
    rope:attachEnd(toBody, to)
    rope:setDamping(3)
    sim:add(rope)
    sim:add(vyrOSG.WireRenderer(rope, root))
    return rope
  end
  local hoist = wire(6.0, 24, jib, vyr.Vec3(5, 0, -0.2), load, vyr.Vec3(0, 0, 0.5), 0.04)
  wire(8.42, 30, nil, vyr.Vec3(0, 0, 12), jib, vyr.Vec3(5.2, 0, 0.2), 0.03)

  -- A hand line that nobody holds: it hangs slack from the load.
  local line = vyrWire.Wire(2.4, 16, 0.3, 0.02)
  line:attachBegin(load, vyr.Vec3(0.6, 0.6, -0.5))
  line:setDamping(0.5)
  sim:add(line)
  local lineRenderer = vyrOSG.WireRenderer(line, root)
  lineRenderer:setColor(vyr.Vec4(0.20, 0.35, 0.65, 1))
  sim:add(lineRenderer)

  -- The middle of the jib goes round the mast; its own turning follows. It brakes for a second: a jib that stopped at
  -- once would jerk the load that leans on the wire.
  local omega, brake = -0.22, 4.5
  sim:add(vyrSDK.StepEventListener { pre = function(time)
    local braked = math.max(0, math.min(time - brake, 1))
    local angle = omega * (math.min(time, brake) + braked - braked ^ 2 / 2)
    local turning = omega * (1 - braked)
    jib:setVelocity(vyr.Vec3(-3 * math.sin(angle), 3 * math.cos(angle), 0) * turning)
    jib:setAngularVelocity(vyr.Vec3(0, 0, turning))
    app:getSceneDecorator():setText(0, string.format("wire: %.1f kN", hoist:getBeginTension() / 1000))
  end })

  local decorator = app:getSceneDecorator()
  decorator:setBackgroundColor(vyr.Vec3(0.42, 0.60, 0.80), vyr.Vec3(0.88, 0.91, 0.93))
  decorator:setEnableShadows(true)
  app:setCameraHome(vyr.Vec3(-11, -19, 7), vyr.Vec3(0.6, -1.5, 5.4))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
