-- Random arguments: mostly what a parameter asks for, sometimes what it should never be given.
local random = require "random"
local pool = require "pool"

local values = {}

local kHostileNumbers = {
  0 / 0, 1 / 0, -1 / 0, -0.0, 1e308, -1e308, 5e-324, 1e-9, 2 ^ 31, 2 ^ 31 - 1, -2 ^ 31, 2 ^ 32, 2 ^ 32 - 1, 2 ^ 53,
  2 ^ 63, 2 ^ 64, -2 ^ 63, 1e18, 65536, 100000, -1, 1e6, 1e38, 3.5e38,
}
-- No name leads out of the working directory.
local kStrings = {
  "", "a", "name", "fuzz", "diffuse", "scene.vyrOSG", "mesh.obj", "mesh.stl", "heights.txt", "picture.png", "run.journal",
  "look.cfg", "missing.obj", "%s%n%d", "a\0b", "\255\254\1", "1e999", "{}", "[1,2", "0.5 1 2", "ÄÖ√", "Lucida", "arial.ttf",
  "void main() {}", "vyrOSG::Node", string.rep("x", 300), string.rep("long ", 20000),
}

local interface, make, callAnything

-- Gives the module the interface, a function that makes an object of a class, and one that makes any call.
function values.init(from, maker, caller)
  interface, make, callAnything = from, maker, caller
end

function values.number(isInteger)
  if random.chance(0.1) then return random.pick(kHostileNumbers) end
  if isInteger or random.chance(0.4) then return random.integer(-1, 8) end
  if random.chance(0.3) then return random.unit() end
  return (random.unit() - 0.5) * 20
end

local function callback()
  local kind = random.integer(1, 4)
  if kind == 1 then return function() end end
  if kind == 2 then return function(...) return ... end end
  if kind == 3 then return function() callAnything() end end
  return function() error("from a callback") end
end

local function list(depth)
  local result = {}
  for index = 1, random.integer(0, 6) do
    result[index] = random.chance(0.8) and values.number() or values.anything(depth + 1)
  end
  if random.chance(0.2) then
    for _, key in ipairs { "pre", "post", "last", "keyboard", "mouse", "mouseMotion", "update", "x", "n" } do
      result[key] = random.chance(0.8) and callback() or values.anything(depth + 1)
    end
  end
  return result
end

local function listOfObjects()
  local result = {}
  local class = random.pick { "vyr::Vec3", "vyr::Vec2", "vyr::Vec4", "vyr::RigidBody" }
  for index = 1, random.integer(0, 9) do result[index] = make(class) or values.number() end
  return result
end

-- Any value at all.
function values.anything(depth)
  depth = depth or 0
  local kind = random.integer(1, 12)
  if kind <= 2 then return values.number() end
  if kind == 3 then return random.pick(kStrings) end
  if kind == 4 then return random.chance(0.5) end
  if kind == 5 then return nil end
  if kind == 6 then return random.pick(interface.tables).value end
  if kind == 7 and depth < 2 then return list(depth) end
  if kind == 8 then return callback() end
  if kind == 9 then return coroutine.create(callback()) end
  if kind == 10 then return listOfObjects() end
  return pool.any()
end

-- A value for a parameter.
function values.argument(parameter)
  if random.chance(0.06) then return values.anything() end
  if parameter.optional and random.chance(0.1) then return nil end
  if parameter.kind == "number" then return values.number(parameter.integer) end
  if parameter.kind == "string" then return random.pick(kStrings) end
  if parameter.kind == "boolean" then return random.chance(0.5) end
  if parameter.kind == "value" then
    if random.chance(0.3) then return values.anything() end
    return random.chance(0.5) and list(0) or listOfObjects()
  end
  if parameter.nullable and random.chance(0.1) then return nil end
  return make(parameter.class)
end

-- A value as the record of a call shows it.
function values.show(value)
  if type(value) == "string" then return #value > 40 and ("string of " .. #value) or string.format("%q", value) end
  if type(value) == "userdata" then return tolua.type(value) end
  if type(value) == "number" then return string.format("%.17g", value) end
  return (type(value) == "boolean" or value == nil) and tostring(value) or type(value)
end

return values
