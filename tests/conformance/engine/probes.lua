-- Calls one overload's wrapper in every way that its row implies and compares what happens with the model.
local border = require "border"
local model = require "model"
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

local function same(a, b)
  if type(a) == "userdata" and type(b) == "userdata" then return native.address(a) == native.address(b) end
  if type(a) == "number" and type(b) == "number" then
    return a == b or (a ~= a and b ~= b) or math.abs(a - b) <= 1e-9 * math.max(math.abs(a), math.abs(b))
  end
  return a == b
end

-- Whether the row made the object itself: the runtime goes on using the value that the script has, with its type.
local function isKnown(case, value)
  if case.known[native.address(value)] then return true end
  for _, other in pairs(case.env) do
    if type(other) == "userdata" and native.address(other) == native.address(value) then return true end
  end
end

-- The text of a result that is wrong; nil if it is right. `call` is what the border saw, if anything.
local function wrongResult(overload, value, call, case)
  local t = overload.result
  local known = call and call.returned and overload.reached.result ~= "n" and not overload.row.computed
  local operationResult = known and overload.reached.operation.result
  if operationResult and t and operationResult.kind ~= t.kind then known = false end
  local raw = known and call.result
  if overload.constructor then
    if type(value) ~= "userdata" or tolua.type(value) ~= overload.class then return "no " .. overload.class end
    if call and call.arguments[1].address ~= native.address(value) then return "another object than the constructed one" end
    local owns = overload.form ~= "new"
    if native.owned(value) ~= owns then return owns and "not collected" or "collected" end
    return nil
  end
  if t.kind == "number" or t.kind == "boolean" or t.kind == "string" then
    if type(value) ~= t.kind and not (value == nil and t.kind == "string" and t.pointer) then
      return "the result is a " .. type(value) .. ", not a " .. t.kind
    end
    if known and not same(raw, value) then return ("the result is %s, not %s"):format(tostring(value), tostring(raw)) end
    return nil
  end
  if value == nil then
    if known and raw.address ~= native.nothing or t.value or t.reference then return "no object came back" end
    return nil
  end
  local wanted = overload.row.pushed or t.test
  if type(value) ~= "userdata" then return "the result is a " .. type(value) end
  if tolua.type(value) ~= wanted and not (isKnown(case, value) or overload.row.derived) then
    return ("the result is a %s, not a %s"):format(tolua.type(value), wanted)
  end
  if not native.isa(value, t.const and wanted or "const " .. wanted) then return "the result is no " .. wanted end
  if t.value then
    if not native.owned(value) then return "the value is not collected" end
    local numbers = border.numbersOf(t.base)
    if known and numbers then
      local actual = native.numbers(value, numbers:sub(1, 1), tonumber(numbers:sub(2)))
      local returned = type(raw) == "table" and raw or { raw }
      for index, number in ipairs(actual) do
        if not same(number, returned[index]) then return "the value is another one" end
      end
    end
    return nil
  end
  if native.owned(value) and not isKnown(case, value) and not overload.row.derived then return "the object is collected" end
  if known and raw.address ~= native.address(value) then return "the result is another object" end
end

local function checkResults(overload, results, count, call, case, given, givenCount)
  local index = 0
  if overload.constructor or (overload.result and overload.result.kind ~= "void") then
    index = 1
    if count >= 1 then
      local wrong = wrongResult(overload, results[1], call, case)
      if wrong then return wrong end
    end
  end
  for place, p in ipairs(overload.parameters) do
    if p.inout then
      index = index + 1
      local wanted = model.received(p, given[place], place <= givenCount)
      if not overload.row.changes and not same(wanted, results[index]) then
        return ("result %d is %s, not the given %s"):format(index, tostring(results[index]), tostring(wanted))
      end
    end
  end
  if count ~= index then return ("%d results, not %d"):format(count, index) end
end

-- One call of the wrapper of chain[top]. Options: held (operations do not run), unwatched results, gives, title.
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
  local results, resultCount = pack(pcall(options.call or top.call, unpack(arguments, 1, count)))
  local calls = native.take()
  local text, place, wantedType = native.raised()
  run.stats.cases = run.stats.cases + 1
  local function wrong(what) fail(top, options.title .. ": " .. what) end

  if not expected then
    if results[1] then return wrong("no error where " .. wantedError.text .. " is due") end
    if text ~= wantedError.text then return wrong(("%s instead of %s"):format(tostring(text or results[2]), wantedError.text)) end
    if place ~= wantedError.index or wantedType ~= wantedError.type then
      wrong(("the record names argument %s, %s; not %s, %s"):format(tostring(place), tostring(wantedType),
        tostring(wantedError.index), tostring(wantedError.type)))
    end
    if #calls > 0 then wrong(calls[1].operation .. " ran before the error") end
    return
  end
  if not results[1] then return wrong(tostring(results[2])) end
  table.remove(results, 1)
  resultCount = resultCount - 1

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
  local difference = checkResults(expected, results, resultCount, call, case, given, givenCount)
  if difference then return wrong(difference) end
  for index = 1, resultCount do
    if type(results[index]) == "userdata" then case.known[native.address(results[index])] = true end
  end
  return results, resultCount
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
  local results, resultCount = probe(overload, case, all, count, { title = "all arguments", held = alone })
  if results and row.gives then
    local wanted, wantedCount = samples.evaluate(row.gives, env)
    for index = 1, math.max(wantedCount, resultCount) do
      if not same(wanted[index], results[index]) then
        fail(overload, ("value %d is %s, not %s"):format(index, tostring(results[index]), tostring(wanted[index])))
      end
    end
  end
  if results and row.seen then
    local values_, n = samples.evaluate(row.seen, env)
    for index = 1, n do
      if values_[index] ~= true then fail(overload, ("%s: value %d is %s"):format(row.seen, index, tostring(values_[index]))) end
    end
  end
  if results and overload.constructor then
    probes.lifetime(overload, results[1], all, count)
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
    probes.called(overload, all, count)
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

-- Counts and ends of objects that a constructor made.
function probes.lifetime(overload, object, all, count)
  local class = overload.classInfo
  local references = native.count(class.type, object)
  local local_ = overload.form ~= "new"
  if not references then
    if local_ and class.collector == "deletes" then probes.deleted(overload, all, count, 1) end
    return
  end
  local wanted = local_ and class.collector == "drops" and 1 or 0
  if overload.row.references then wanted = wanted + overload.row.references end
  if references ~= wanted then
    fail(overload, ("%d references, not %d"):format(references, wanted))
  end
  if not local_ and references == 0 and not overload.row.keep then
    -- Made by "new": somebody has to let go of it.
    local watch, address = native.observe(class.type, object), native.address(object)
    native.hold(class.type, object)
    native.letGo(class.type, address)
    if not native.gone(watch) then fail(overload, "the last reference went and the object stayed") end
  end
  if local_ and class.collector == "drops" then
    if overload.row.references then
      probes.collectedAndHeld(overload, all, count)
    else
      probes.collected(overload, all, count)
    end
  end
  -- Without a collector the runtime releases memory and destroys nothing.
  if local_ and not class.collector and references == 0 then probes.deleted(overload, all, count, 0) end
end

-- An object that others hold from its construction on outlives its collection and loses one reference.
function probes.collectedAndHeld(overload, all, count)
  local class = overload.classInfo
  local object = overload.call(unpack(all, 1, count))
  local address, watch = native.address(object), native.observe(class.type, object)
  object = nil
  collectgarbage()
  collectgarbage()
  if native.gone(watch) then return fail(overload, "collected under somebody who holds it") end
  if native.countAt(class.type, address) ~= overload.row.references then
    fail(overload, "the collector did not drop one reference")
  end
end

-- A class table that is called gives one value, the object, whatever the constructor pushes back.
function probes.called(overload, all, count)
  local arguments_ = {}
  for index = 2, count do arguments_[index - 1] = all[index] end
  local results, resultCount = pack(pcall(overload.classTable, unpack(arguments_, 1, count - 1)))
  if not results[1] or resultCount ~= 2 or type(results[2]) ~= "userdata" then
    return fail(overload, "calling the class gives " .. tostring(results[2]) .. " and " .. (resultCount - 2) .. " more")
  end
  if tolua.type(results[2]) ~= overload.class or not native.owned(results[2]) then
    fail(overload, "calling the class gives a " .. tolua.type(results[2]))
  end
end

-- A collector that deletes frees the object, once.
function probes.deleted(overload, all, count, wanted)
  local object = overload.call(unpack(all, 1, count))
  native.countFrees(object)
  object = nil
  collectgarbage()
  collectgarbage()
  local frees = native.frees()
  if frees ~= wanted then fail(overload, ("collected, and freed %d times"):format(frees)) end
end

-- The three ways in which a collector may find an object.
function probes.collected(overload, all, count)
  local class = overload.classInfo
  local function make()
    local object = overload.call(unpack(all, 1, count))
    return object, native.address(object), native.observe(class.type, object)
  end
  local function collect()
    collectgarbage()
    collectgarbage()
  end
  local object, address, watch = make()
  object = nil
  collect()
  if not native.gone(watch) then fail(overload, "collected, and the object stayed") end
  object, address, watch = make()
  native.hold(class.type, object)
  object = nil
  collect()
  if native.gone(watch) then return fail(overload, "collected under somebody who holds it") end
  if native.countAt(class.type, address) ~= 1 then fail(overload, "the collector did not drop one reference") end
  native.letGo(class.type, address)
  if not native.gone(watch) then fail(overload, "let go, and the object stayed") end
  object, address, watch = make()
  native.forget(class.type, address)
  object = nil
  collect()
  if native.gone(watch) then return fail(overload, "a collector deleted an object without references") end
  if native.countAt(class.type, address) ~= 0 then fail(overload, "a collector touched the count of an object without references") end
end

return probes
