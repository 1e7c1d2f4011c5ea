-- Calls one overload's wrapper in every way that its row implies and compares what happens with the model.
local border = require "border"
local lifetimes = require "lifetimes"
local model = require "model"
local results = require "results"
local samples = require "samples"

local probes = {}

local kExtremes = { -1.5, 2 ^ 31, 2 ^ 32 + 1.5, 1e300, 0 / 0 }
local kForeign = "conformance::Foreign"

local run -- what the run is about: { complete, failures, stats }
local kept = {} -- keeps the objects of all rows until the end: some know others without holding them

function probes.begin(description) run = description end

local function fail(overload, text)
  run.failures[#run.failures + 1] = ("%s [%s]: %s"):format(overload.where, overload.row[1], text)
end

local function copy(list, count)
  local result = {}
  for index = 1, count do result[index] = list[index] end
  return result
end

local function pack(...) return { ... }, select("#", ...) end

-- Whether a value is the stated one; statements are rounded.
local function same(a, b)
  if type(a) == "userdata" and type(b) == "userdata" then return native.address(a) == native.address(b) end
  if type(a) == "number" and type(b) == "number" then
    return a == b or (a ~= a and b ~= b) or math.abs(a - b) <= 1e-9 * math.max(math.abs(a), math.abs(b))
  end
  return a == b
end

-- One call of the wrapper of `top`, or of options.call. Options: title, held (operations do not run). Gives the values.
local function probe(top, case, arguments, count, options)
  local chain = top.chain
  if not options.held and top.row.before then samples.evaluate(top.row.before, case.env) end
  local expected, wantedError = model.resolve(chain, top.index + 1, arguments, count)
  for _, overload in ipairs(chain) do
    if overload.reached then border.watch(overload.reached, options.held) end
  end
  native.raised()
  native.at(top.where .. " " .. options.title)
  local self = type(arguments[1]) == "userdata" and native.address(arguments[1]) -- deleting takes it from the value
  local values, valueCount = pack(pcall(options.call or top.call, unpack(arguments, 1, count)))
  local calls = native.take()
  local text, place, wantedType = native.raised()
  run.stats.cases = run.stats.cases + 1
  local function wrong(what) fail(top, options.title .. ": " .. what) end

  if not expected then
    if values[1] then return wrong("no error where " .. wantedError.text .. " is due") end
    if text ~= wantedError.text then return wrong(("%s instead of %s"):format(tostring(text or values[2]), wantedError.text)) end
    if place ~= wantedError.index or wantedType ~= wantedError.type then
      wrong(("the record names argument %s, %s; not %s, %s"):format(tostring(place), tostring(wantedType),
        tostring(wantedError.index), tostring(wantedError.type)))
    end
    if #calls > 0 then wrong(calls[1].operation .. " ran before the error") end
    return
  end
  if not values[1] then return wrong(tostring(values[2])) end
  table.remove(values, 1)
  valueCount = valueCount - 1

  local shift = expected.self and 1 or 0
  local given, givenCount = {}, count - shift
  for index = 1, givenCount do given[index] = arguments[index + shift] end
  local call
  for _, seen in ipairs(calls) do
    local isExpected = expected.reached and ("\n" .. seen.operation .. "\n"):find("\n" .. expected.reached.full .. "\n", 1, true)
    if isExpected then
      call = call or seen
    elseif not expected.row.among then
      wrong(seen.operation .. " is reached as well")
    end
  end
  if expected.reached and not call and run.complete then return wrong(expected.reached.full .. " is not reached") end
  if call then
    run.stats.observed[expected] = true
    local difference = border.compare(expected.reached, expected, call, self, given, givenCount)
    if difference then return wrong(difference) end
  end
  if options.held then return end
  local difference = results.wrong(expected, values, valueCount, call, case, given, givenCount)
  if difference then return wrong(difference) end
  for index = 1, valueCount do
    if type(values[index]) == "userdata" then case.known[native.address(values[index])] = true end
  end
  return values, valueCount
end

local function arguments(overload, env)
  local values, count = {}, 0
  if overload.row.with then values, count = samples.evaluate(overload.row.with, env) end
  for index = count + 1, #overload.parameters do
    values[index] = samples.argument(overload.parameters[index], index)
  end
  return values
end

-- What a test refuses, by kind of parameter.
local function wrongValues(p, foreign)
  if p.kind == "number" then return { {}, "no number", true } end
  if p.kind == "boolean" then return { {}, 1, "true" } end
  if p.kind == "string" then return { {}, true } end
  return { {}, 5, foreign }
end

-- The type name that a class is registered with as its base; nil without one.
local function baseOf(typeName)
  local registry = debug.getregistry()
  local base = registry[typeName] and getmetatable(registry[typeName])
  return type(registry[base]) == "string" and registry[base] ~= "tolua_commonclass" and registry[base] or nil
end

local function with(values, count, place, value)
  local changed = copy(values, count)
  changed[place] = value
  return changed
end

-- The checks of an overload with its row.
local function checks(overload)
  local row, env = overload.row, samples.environment()
  kept[#kept + 1] = env
  local shift, values = 0, arguments(overload, env)
  local all, case = {}, { env = env, known = {} }
  if overload.self then
    shift = 1
    if overload.self == "table" then
      all[1] = overload.classTable
    elseif row.on then
      all[1] = samples.evaluate(row.on, env)[1]
    else
      all[1] = samples.object(overload.class)
    end
    rawset(env, "self", all[1])
  end
  for index = 1, #overload.parameters do all[index + shift] = values[index] end
  kept[#kept + 1] = all
  local count = #overload.parameters + shift
  for _, value in pairs(all) do
    if type(value) == "userdata" then case.known[native.address(value) or 0] = true end
  end
  local alone = row.held or false

  -- As it is meant, by the wrapper and by name.
  local got, gotCount = probe(overload, case, all, count, { title = "all arguments", held = alone })
  if got and row.gives then
    local wanted, wantedCount = samples.evaluate(row.gives, env)
    for index = 1, math.max(wantedCount, gotCount) do
      if not same(wanted[index], got[index]) then
        fail(overload, ("value %d is %s, not %s"):format(index, tostring(got[index]), tostring(wanted[index])))
      end
    end
  end
  if got and row.seen then
    local values_, n = samples.evaluate(row.seen, env)
    for index = 1, n do
      if values_[index] ~= true then fail(overload, ("%s: value %d is %s"):format(row.seen, index, tostring(values_[index]))) end
    end
  end
  if got and overload.constructor then
    lifetimes.check(fail, overload, got[1], all, count)
  end
  local last = overload.chain[#overload.chain]
  if not row.once and not (overload.constructor and overload.form ~= "new") then
    local byName = rawget(overload.owner, overload.luaName)
    probe(last, case, all, count, { title = "by name", call = byName, held = alone })
  end
  -- Each default left out.
  if not row.once then
    for index = #overload.parameters - 1, overload.signature.required, -1 do
      probe(overload, case, all, index + shift, { title = ("%d arguments"):format(index), held = alone })
    end
  end
  if overload.form == ".call" then
    lifetimes.called(fail, overload, all, count)
    return
  end

  -- Whatever else the model lets pass is only looked at: the operations themselves do not run.
  local canHold = true
  for index = 1, overload.index + 1 do
    local other = overload.chain[index]
    canHold = canHold and other.reached and border.canHold(other.reached, other) and other.seenAtBorder()
  end
  -- Constructors cannot be held: where they take whatever comes, `runs` lets them make what nobody uses.
  local function refused(title, arguments_, n, runs)
    local taken = model.resolve(overload.chain, overload.index + 1, arguments_, n)
    if not taken or canHold then
      probe(overload, case, arguments_, n, { title = title, held = true })
    elseif runs then
      probe(overload, case, arguments_, n, { title = title })
    end
  end
  for index = 0, overload.signature.required - 1 do
    refused(("%d arguments are too few"):format(index), all, index + shift)
  end
  if shift == 1 then refused("no self", {}, 0) end
  refused("an argument too many", with(all, count, count + 1, {}), count + 1)
  local foreign = native.ghost(kForeign)
  for index, p in ipairs(overload.parameters) do
    local place = index + shift
    for _, value in ipairs(wrongValues(p, foreign)) do
      refused(("argument %d is a %s"):format(index, type(value)), with(all, count, place, value), count)
    end
    local guarded = row.guarded and (" " .. row.guarded .. " "):find(" " .. index .. " ", 1, true)
    if not (guarded and (p.kind == "object" or p.kind == "string")) then
      local title = ("argument %d is nil"):format(index)
      refused(title, with(all, count, place, nil), count, overload.constructor and p.pointer)
    end
    if p.kind == "object" and type(all[place]) == "userdata" then
      local readOnly = native.as(all[place], "const " .. p.base)
      refused(("argument %d is read-only"):format(index), with(all, count, place, readOnly), count, true)
      local base = baseOf(p.base)
      if base then
        refused(("argument %d is a %s"):format(index, base), with(all, count, place, native.as(all[place], base)), count)
      end
    end
    if p.kind == "string" then refused(("argument %d is 12.5"):format(index), with(all, count, place, 12.5), count) end
    if p.kind == "number" and not guarded then
      local runs = overload.constructor and row.takesAll
      refused(("argument %d is a text of digits"):format(index), with(all, count, place, "7.75"), count, runs)
      for _, number in ipairs(kExtremes) do
        if p.travels ~= "l" or number < 2 ^ 53 and number >= 0 then
          refused(("argument %d is %g"):format(index, number), with(all, count, place, number), count, runs)
        end
      end
    end
  end
  if overload.self then
    refused("self is a table", with(all, count, 1, {}), count)
    refused("self is foreign", with(all, count, 1, foreign), count)
    refused("self is a number", with(all, count, 1, 5), count)
  end
  if overload.self and overload.self ~= "table" then
    refused("self is nil", with(all, count, 1, nil), count)
    refused("self has no object", with(all, count, 1, native.ghost(overload.class)), count)
    refused("self is read-only", with(all, count, 1, native.as(all[1], "const " .. overload.class)), count)
  end
end

-- Checks an overload; errors of the row itself become failures.
function probes.check(overload)
  native.at(overload.where .. ": samples")
  local ok, problem = xpcall(function() checks(overload) end, function(text) return debug.traceback(tostring(text), 2) end)
  if not ok then
    native.take()
    fail(overload, "the row cannot be run: " .. tostring(problem))
  end
end

return probes
