-- Runs the table of one module against what the module has registered, or only lists what has no case.
local border = require "border"
local module = require "module"
local probes = require "probes"
local variables = require "variables"

local run = {}

local function find(path)
  local value = _G
  for part in path:gmatch("[^.]+") do value = value and rawget(value, part) end
  return value
end

-- The registered functions by path, in order.
local function byPath(entries)
  local lists = {}
  for _, e in ipairs(entries) do
    if e.kind == "function" or e.kind == "variable" or e.kind == "array" then
      local path = e.table .. "." .. e.name
      lists[path] = lists[path] or {}
      table.insert(lists[path], e)
    end
  end
  return lists
end

-- Compares the calls of the runtime, one by one up to the first other one; with `names`, those of the wrappers as well.
local function compareRegistration(m, entries, failures, names)
  for index = 1, math.max(#m.sequence, #entries) do
    local e = entries[index]
    local actual = e and module.describe(e)
    if actual ~= m.sequence[index] then
      failures[#failures + 1] = ("%s: registration %d is %s, not %s"):format(m.name, index, tostring(actual),
        tostring(m.sequence[index]))
      return
    end
    if e.kind == "module" and e.value ~= 0 then
      failures[#failures + 1] = ("%s: %s has variables"):format(m.name, actual)
    end
    local wrappers = names and m.wrappers[index] or {}
    for place, f in ipairs { e.call or false, e.set or false } do
      local name = f and native.nameOf(f)
      if wrappers[place] and name ~= wrappers[place] .. "(lua_State*)" then
        failures[#failures + 1] = ("%s: %s is %s, not %s"):format(m.name, actual, tostring(name), wrappers[place])
      end
    end
  end
end

-- The first difference between a module's table and what the module has registered, in a list that is empty without one.
function run.registration(name, path, entries)
  local failures = {}
  compareRegistration(module.load(name, path), entries, failures)
  return failures
end

-- Checks a module. `entries` is what its open function has registered; with `complete`, every operation has to be seen.
-- Gives the failures and the numbers: overloads, constructors, constants, variables, cases, observed.
function run.module(name, path, entries, complete)
  local m = module.load(name, path)
  local description = { complete = complete, failures = {}, stats = { cases = 0, observed = {} } }
  local stats, registered = description.stats, byPath(entries)
  probes.begin(description)
  compareRegistration(m, entries, description.failures, complete)
  stats.overloads, stats.constructors, stats.constants, stats.variables = 0, 0, m.constants, #m.variables
  for _, overload in ipairs(m.overloads) do
    local known = registered[overload.path]
    local e = known and known[overload.index + 1]
    overload.call = e and e.call
    overload.owner = find(overload.table)
    overload.classTable = overload.class and find(overload.table)
    if overload.row.reaches ~= false then
      local reached, close = border.operation(overload)
      overload.reached = reached
      if not reached and complete then
        table.insert(description.failures, ("%s [%s]: no library has that operation; there are %s"):format(overload.where,
          overload.row[1], table.concat(close, " | ")))
      end
    elseif not overload.row.gives and not overload.row.seen then
      table.insert(description.failures, overload.where .. ": a row without operation needs `gives` or `seen`")
    end
    overload.seenAtBorder = function() return complete or stats.observed[overload] end
    if overload.constructor then
      stats.constructors = stats.constructors + (overload.form == "new" and 1 or 0)
    else
      stats.overloads = stats.overloads + 1
    end
  end
  for _, overload in ipairs(m.overloads) do
    if overload.call then probes.check(overload) end
  end
  for _, v in ipairs(m.variables) do
    local known = registered[v.path]
    if known then
      variables.check(v, known[1], function(text) table.insert(description.failures, text) end)
      stats.cases = stats.cases + 1
    end
  end
  local seen = 0
  for _ in pairs(stats.observed) do seen = seen + 1 end
  stats.observed = seen
  return description.failures, stats
end

-- How much the tables of some modules name, in words; the shared block, which many modules carry, is counted once.
function run.totals(names, path)
  local functions, constructors, constants, variables_, seen = 0, 0, 0, 0, {}
  local function isNew(key)
    local known = key:find("^vyr%.") and seen[key]
    seen[key] = true
    return not known
  end
  for _, name in ipairs(names) do
    local m = module.load(name, path)
    for _, overload in ipairs(m.overloads) do
      if overload.constructor then
        constructors = constructors + (overload.form == "new" and 1 or 0)
      elseif isNew(overload.path .. overload.index) then
        functions = functions + 1
      end
    end
    for _, text in ipairs(m.entries) do
      local where, constant = text:match("^(.-): constant (%S+)")
      if constant and isNew(where .. "." .. constant) then constants = constants + 1 end
    end
    variables_ = variables_ + #m.variables
  end
  return ("%d functions, %d constructors in three forms, %d constants, %d variables and arrays"):format(functions, constructors,
    constants, variables_)
end

-- Lists what a module has registered and its table does not name; everything if there is no table.
function run.missing(name, path, entries)
  local m
  local file = io.open(path .. name .. ".lua")
  if file then
    file:close()
    m = module.load(name, path)
  end
  local named, list = {}, {}
  for _, text in ipairs(m and m.entries or {}) do named[text] = (named[text] or 0) + 1 end
  for _, e in ipairs(entries) do
    local text = module.describe(e)
    if e.kind == "function" or e.kind == "variable" or e.kind == "array" or e.kind == "constant" then
      if (named[text] or 0) > 0 then named[text] = named[text] - 1 else list[#list + 1] = name .. " " .. text end
    end
  end
  return list
end

return run
