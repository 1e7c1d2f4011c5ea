-- A long simulation with a script in its loop: memory and handles stay the same.
--
--   vyr --gl=none simulation.lua [--duration S] [--csv FILE]
--
-- Simulates S seconds. Every step a listener reads contacts and pushes a body; every second bodies, constraints and their
-- pictures come and go. FILE receives the resident memory, the script's own, and the bodies, every hundredth of the run.
local here = debug.getinfo(1, "S").source:match("^@(.*/)") or "./"
package.path = here .. "?.lua;" .. package.path
local process = require "process"

local kSamples = 100
local kAllocatorKiB = 4096
local kBodies = 30

local options = process.options { duration = 600, csv = "/dev/null" }
local simulation = vyrSDK.Simulation()
local owner, root = osg.Camera(), vyrOSG.Group:new()
owner:addChild(root)

vyrOSG.SimulationObject:createPlane("ground", vyr.AffineMatrix4x4(), root, simulation)
local cable = vyrWire.Wire(1, 8, 1)
local picture = vyrOSG.WireRenderer(cable, root)

local steps, contacts = 0, 0
local listener = vyrSDK.StepEventListener {
  pre = function(time)
    local body = simulation:findRigidBody("pushed")
    if body then body:addForce(vyr.Vec3(20 * math.sin(time), 20 * math.cos(time), 0)) end
  end,
  post = function()
    steps = steps + 1
    for _, contact in ipairs(simulation:getContacts()) do
      if contact.point.z < 1 and contact.normalForce >= 0 then contacts = contacts + 1 end
    end
  end,
}
simulation:add(listener)

local objects = {}
local function replaceOne(second)
  local slot = second % kBodies + 1
  local old = objects[slot]
  if old then
    if old.constraint then simulation:remove(old.constraint) end
    simulation:remove(old.object:getRigidBody())
    root:removeChild(old.object:getNode())
  end
  local place = vyr.AffineMatrix4x4:translate((slot % 6) - 3, math.floor(slot / 6) - 2, 1 + second % 3)
  local object
  if slot % 3 == 0 then
    object = vyrOSG.SimulationObject:createSphere(slot == 3 and "pushed" or "ball " .. slot, place, 0.3, root, simulation)
  else
    object = vyrOSG.SimulationObject:createBox("box " .. slot, place, vyr.Vec3(0.3, 0.3, 0.3), root, simulation)
  end
  local constraint
  if slot % 5 == 0 then
    constraint = vyr.Ball(vyr.Frame(object:getRigidBody()), vyr.Frame())
    simulation:add(constraint)
  end
  vyrOSG.setDiffuseColor(object:getNode(), vyr.Vec4(second % 7 / 7, 0.5, 0.5, 1))
  objects[slot] = { object = object, constraint = constraint }
end

local handles = process.handles()
local csv = assert(io.open(options.csv, "w"))
csv:write("time_s,resident_kib,lua_kib,bodies,contacts\n")
local samples, second = {}, 0
for sample = 1, kSamples do
  local target = options.duration * sample / kSamples
  while simulation:getTime() < target do
    simulation:step()
    if simulation:getTime() >= second then
      replaceOne(second)
      second = second + 1
    end
  end
  collectgarbage()
  samples[sample] = process.residentKiB()
  csv:write(string.format("%.1f,%d,%d,%d,%d\n", simulation:getTime(), samples[sample], collectgarbage("count"),
    #simulation:getRigidBodies(), contacts))
end
csv:close()

local growth, keptHandles = process.growth(samples), process.handles() - handles
print(string.format("%d steps, %d contacts read; resident %d KiB after a quarter, %d KiB at the end, growth %d KiB; %d handles stayed",
  steps, contacts, samples[kSamples / 4], samples[kSamples], growth, keptHandles))
os.exit(steps > 0 and contacts > 0 and growth <= kAllocatorKiB and keptHandles <= 0 and 0 or 1)
