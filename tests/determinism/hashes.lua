-- Prints a hash of the simulation's state after every step: equal runs print equal lines, whatever draws them.
--
--   vyr --gl=KIND --steps N hashes.lua SOLVER FILE      (SOLVER: ITERATIVE or MULTI)
--
-- A pile, joints, a motor, a wire, a car on a hilly ground, a tree in the wind, and a script that pushes.
local solver, file = arg[1], arg[2]
local kFirstSeed = 7

local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end

local function addHills(simulation, root)
  local heights = vyr.RealVector()
  for row = 0, 32 do
    for column = 0, 32 do heights:push_back(0.2 * math.sin(0.7 * column) * math.cos(0.5 * row)) end
  end
  vyrOSG.SimulationObject:createHeightField("hills", vyr.AffineMatrix4x4(), heights, 33, 33, 40, 40, 1, root, simulation)
end

local function addPile(simulation, root)
  for row = 1, 4 do
    for column = 1, 3 do
      local place = at(0.9 * column + 0.2 * (row % 2), 5, 0.5 + 0.7 * row)
      if (row + column) % 3 == 0 then
        vyrOSG.SimulationObject:createSphere("ball", place, 0.35, root, simulation)
      else
        vyrOSG.SimulationObject:createBox("box", place, vyr.Vec3(0.7, 0.6, 0.6), root, simulation)
      end
    end
  end
end

local function addJoints(simulation, root)
  local before
  for link = 1, 4 do
    local object = vyrOSG.SimulationObject:createCapsule("link", at(-5, 0.8 * link, 4), 0.15, 0.4, root, simulation)
    local body = object:getRigidBody()
    local frame = before and vyr.Frame(before) or vyr.Frame()
    simulation:add(link % 2 == 0 and vyr.Hinge(vyr.Frame(body), frame) or vyr.Ball(vyr.Frame(body), frame))
    before = body
  end
end

function buildScene(simulation, app, root)
  simulation:setSolver(vyrSDK.Simulation[solver])
  addHills(simulation, root)
  addPile(simulation, root)
  addJoints(simulation, root)
  local car = vyrOSG.createSimpleBoxCar(vyr.Vec3(3.6, 1.6, 0.7), 900, simulation, root)
  car:transform(at(-6, -5, 1.5))
  local tree = vyrModel.Tree()
  tree:grow(vyrModel.TreeParameters(), kFirstSeed)
  tree:setTransform(at(8, -8, 0))
  tree:addTo(simulation)
  tree:setWind(vyr.Vec3(6, 2, 0))

  local output, step = assert(io.open(file, "w")), 0
  simulation:add(vyrSDK.StepEventListener({
    pre = function(time)
      local body = simulation:findRigidBody("ball")
      if body then body:addForce(vyr.Vec3(40 * math.sin(step), 0, 0)) end
    end,
    last = function()
      step = step + 1
      output:write(step, " ", simulation:stateHash(), "\n")
      output:flush()
    end,
  }))
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
