-- Calls everything that the open plugins offer with random values: whatever comes, it is a result or a Lua error.
--
--   vyr --gl=none fuzz.lua [--seed N] [--calls N] [--collect N] [--trace FILE] [--only PATTERN]
--
-- The run writes into its working directory only. Equal seeds make equal calls; FILE receives the last calls, each
-- before it is made, so that its last line names the one that ended the process. `--only` keeps the functions whose
-- names match; `--collect` collects all garbage every N calls.
local here = debug.getinfo(1, "S").source:match("^@(.*/)") or "./"
package.path = here .. "?.lua;" .. package.path

local random = require "random"
local interface = require "interface"
local pool = require "pool"
local values = require "values"

-- What is left out, and why.
local kExcluded = {
  ["vyrOSG.ExampleApplication.run"] = "returns when the application is told to stop",
}
-- The runtime frees what these classes' calls make without asking who else holds it: the ownership page names the
-- classes and tells scripts to make them by `new`, which is what the fuzzer does. A build with explicit collectors has
-- no such classes, but the same calls.
local hasCollectors = rawget(osg.Group, ".collector") ~= nil
local kMadeByNewOnly = hasCollectors and {} or {
  ["osg::Group"] = true, ["osg::MatrixTransform"] = true, ["osg::Transform"] = true, ["osg::Geode"] = true,
  ["osg::HeightField"] = true, ["osg::StateSet"] = true, ["osg::Uniform"] = true, ["osg::Uniform::Callback"] = true,
  ["vyrOSG::Node"] = true, ["vyrOSG::Group"] = true, ["vyrOSG::Transform"] = true,
}
-- Calls that take as long as a number tells them to: seconds to simulate, stones to shape.
local kTakesItsTime = { ["vyrSDK.Simulation.stepTo"] = true, ["vyrOSG.RockGenerator.generateRocks"] = true }
local kCallsBetweenCleanups = 2000

local options = { seed = 1, calls = 20000, collect = 0, only = "" }
for index = 1, #arg - 1, 2 do
  local name = arg[index]:match("^%-%-(%a+)$")
  options[name] = name ~= "trace" and name ~= "only" and tonumber(arg[index + 1]) or arg[index + 1]
end

local api = interface.read(here .. "../../binding/manifests")
local trace = options.trace and assert(io.open(options.trace, "w"))
if trace then trace:setvbuf("no") end

local count, results = 0, { ok = 0, errors = 0 }
local keptArrays = {} -- some outlive their owners

-- Makes one call under protection, keeps the objects that come back, and remembers what it was.
local function attempt(name, call, count_, ...)
  count = count + 1
  if trace then
    local shown = {}
    for index = 1, count_ do shown[index] = values.show((select(index, ...))) end
    if count % 10000 == 0 then
      trace:close()
      trace = assert(io.open(options.trace, "w"))
      trace:setvbuf("no")
    end
    trace:write(count, " ", name, "(", table.concat(shown, ", "), ")\n")
  end
  local function collect(ok, ...)
    results[ok and "ok" or "errors"] = results[ok and "ok" or "errors"] + 1
    if ok then
      for index = 1, select("#", ...) do
        local value = select(index, ...)
        pool.add(value)
        if type(value) == "table" then pool.add(value[1]) end
      end
    elseif type((...)) ~= "string" then
      error("an error without a text from " .. name)
    end
    return ok, ...
  end
  if random.chance(0.01) then return collect(coroutine.resume(coroutine.create(function(...) return call(...) end), ...)) end
  return collect(pcall(call, ...))
end

local constructors = {}
for _, entry in ipairs(api.functions) do
  local type = api.types[entry.path]
  local isConstructor = entry.key == "new" or entry.key == "new_local" or entry.key == ".call"
  if type and isConstructor and not (kMadeByNewOnly[type] and entry.key ~= "new") then
    constructors[type] = constructors[type] or {}
    table.insert(constructors[type], entry)
  end
end
local derived = {}
for type in pairs(constructors) do
  local base, steps = type, 0
  while base and steps < 20 do
    derived[base] = derived[base] or {}
    table.insert(derived[base], type)
    base = api.bases[base]
    steps = steps + 1
  end
end
for _, list in pairs(derived) do table.sort(list) end

local depth = 0
local callFunction

-- An object of a class: one that is there or, where none is and sometimes anyway, a new one. Nullable.
local function make(type)
  local object = pool.get(type)
  if (object == nil or random.chance(0.15)) and depth < 3 and derived[type] then
    depth = depth + 1
    callFunction(random.pick(constructors[random.pick(derived[type])]))
    depth = depth - 1
    object = pool.get(type)
  end
  return object
end

-- A call from within a callback of another one.
local functions = {}
local isInCallback = false
local function callAnything()
  if isInCallback then return end
  isInCallback = true
  for _ = 1, random.integer(1, 4) do callFunction(random.pick(functions)) end
  isInCallback = false
end
values.init(api, make, callAnything)

local function receiver(entry, signature)
  if random.chance(0.04) then return values.anything() end
  if signature and signature.receiver == "class" then return entry.owner end
  local type = api.types[entry.path]
  return type and make(type)
end

function callFunction(entry)
  local signatures = api.signatures[entry.name]
  local signature = signatures and random.pick(signatures)
  local arguments, length = {}, 0
  local function give(value)
    length = length + 1
    arguments[length] = value
  end
  if (signature and signature.receiver or not signature and api.types[entry.path]) and not random.chance(0.01) then
    give(receiver(entry, signature))
  end
  if signature then
    for _, parameter in ipairs(signature.arguments) do give(values.argument(parameter)) end
  else
    for _ = 1, random.integer(0, 4) do give(values.anything()) end
  end
  for index = 1, kTakesItsTime[entry.name] and length or 0 do
    local value = arguments[index]
    if type(value) == "number" and value > 10 and value < 1 / 0 then arguments[index] = 1 end
  end
  if entry.name == "vyrSDK.Simulation.setTimeStep" and type(arguments[2]) == "number" and arguments[2] > 0 then
    arguments[2] = math.max(arguments[2], 1e-3)
  end
  if random.chance(0.02) then give(values.anything()) end
  if random.chance(0.02) and length > 0 then length = length - 1 end
  attempt(entry.name, entry.call, length, unpack(arguments, 1, length))
end

local kOperations = {
  { "<", function(a, b) return a < b end }, { "<=", function(a, b) return a <= b end },
  { "==", function(a, b) return a == b end }, { "+", function(a, b) return a + b end },
  { "-", function(a, b) return a - b end }, { "*", function(a, b) return a * b end },
  { "/", function(a, b) return a / b end }, { "%", function(a, b) return a % b end },
  { "^", function(a, b) return a ^ b end }, { "..", function(a, b) return a .. b end },
  { "unary -", function(a) return -a end }, { "#", function(a) return #a end },
  { "tostring", function(a) return tostring(a) end }, { "call", function(a, ...) return a(...) end },
  { "read", function(a, b) return a[b] end }, { "write", function(a, b, c) a[b] = c end },
}

-- Called on tables: `Class(...)` is covered as ".call"; on a class that must be made by new it would be the same call.
local function operate()
  local operation = random.pick(kOperations)
  local left = pool.any()
  if random.chance(0.1) then left = values.anything() end
  if operation[1] == "call" and type(left) == "table" then return end
  -- Lua's own tables and functions are not what is tried here, and a changed class table would change all calls to come.
  if operation[1] == "write" and type(left) == "table" then return end
  local right = random.chance(0.5) and pool.any() or values.anything()
  attempt("operator " .. operation[1], operation[2], 3, left, right, values.anything())
end

local function useField()
  local field = random.pick(api.fields)
  local object = make(api.types[field.class])
  if random.chance(0.03) then object = values.anything() end
  if random.chance(0.5) then
    attempt("read " .. field.class .. "." .. field.name, function() return object[field.name] end, 1, object)
  elseif type(object) ~= "table" then
    local value = values.argument(field.argument)
    attempt("write " .. field.class .. "." .. field.name, function() object[field.name] = value end, 2, object, value)
  end
end

local function useArray()
  local array = random.pick(api.arrays)
  local object = make(api.types[array.class])
  local index = random.chance(0.8) and values.number(true) or values.anything()
  local value = random.chance(0.8) and values.number() or values.anything()
  if random.chance(0.3) then
    local kept = random.integer(1, 8)
    if type(object) == "userdata" and random.chance(0.3) then keptArrays[kept] = object[array.name] end
    attempt("read a kept array", function() return keptArrays[kept][index] end, 1, index)
    attempt("write a kept array", function() keptArrays[kept][index] = value end, 2, index, value)
  elseif random.chance(0.5) then
    attempt("read " .. array.class .. "." .. array.name, function() return object[array.name][index] end, 2, object, index)
  else
    attempt("write " .. array.class .. "." .. array.name, function() object[array.name][index] = value end, 3, object, index,
      value)
  end
end

for _, entry in ipairs(api.functions) do
  local type = api.types[entry.path]
  local isLocalConstructor = entry.key == "new_local" or entry.key == ".call"
  if not kExcluded[entry.name] and not (type and kMadeByNewOnly[type] and isLocalConstructor) and
      entry.name:find(options.only) then
    functions[#functions + 1] = entry
  end
end

-- Strings must not become objects' methods' victims: files that the names in `values` can meet.
local function prepareFiles()
  local files = {
    ["mesh.obj"] = "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 3 2\nf 1 2 4\nf 2 3 4\nf 3 1 4\n",
    ["mesh.stl"] = "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\nvertex 0 1 0\nendloop\nendfacet\nendsolid a\n",
    ["heights.txt"] = "3 3\n0 1 2\n0 1 2\n0 1 2\n",
    ["scene.vyrOSG"] = "{}",
    ["look.cfg"] = "RenderState { name \"a\" }\n",
  }
  for name, text in pairs(files) do
    local file = assert(io.open(name, "w"))
    file:write(text)
    file:close()
  end
end

prepareFiles()
pool.clear(api.bases)
random.seed(options.seed)
while count < options.calls do
  local kind = random.unit()
  if kind < 0.8 or options.only ~= "" then callFunction(random.pick(functions))
  elseif kind < 0.88 then operate()
  elseif kind < 0.98 then useField()
  elseif kind < 0.985 then useArray()
  elseif kind < 0.986 then collectgarbage()
  else collectgarbage("step", 10) end
  if options.collect > 0 and count % options.collect == 0 then collectgarbage() end
  if count % kCallsBetweenCleanups == 0 then
    pool.clear()
    collectgarbage()
  end
end
if trace then trace:close() end
pool.clear()
collectgarbage()
print(string.format("seed %d: %d calls of %d functions, %d variables: %d results, %d errors", options.seed, count,
  #functions, #api.fields + #api.arrays, results.ok, results.errors))
