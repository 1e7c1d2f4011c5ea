-- Reads and writes the bound fields and arrays of a table and compares with the objects' memory.
local samples = require "samples"
local model = require "model"

local variables = {}

local function same(a, b) return a == b or (a ~= a and b ~= b) end

local function checkRaised(fail, title, wanted, index, wantedType, f, ...)
  native.raised()
  local ok = pcall(f, ...)
  local text, place, typeName = native.raised()
  if ok or text ~= wanted or place ~= index or typeName ~= wantedType then
    fail(("%s raised %s, %s, %s; not %s"):format(title, tostring(text), tostring(place), tostring(typeName), wanted))
  end
end

local function objectOf(v) return v.info.on and samples.evaluate(v.info.on, samples.environment())[1] or samples.object(v.class.type) end

local function checkStatic(v, fail)
  local owner = _G
  for part in v.path:gmatch("[^.]+") do owner = owner[part] end
  if owner ~= v.info.is then fail(("is %s, not %s"):format(tostring(owner), tostring(v.info.is))) end
end

local function checkArray(v, fail)
  local object, other = objectOf(v), v.type.travels
  for index = 0, v.size - 1 do
    object[v.name][index] = index + 0.1
    local wanted = model.number(other, index + 0.1)
    local memory = native.numbers(object, other, v.size)[index + 1]
    if memory ~= wanted then fail(("element %d is stored as %s"):format(index, tostring(memory))) end
    if object[v.name][index] ~= wanted then fail(("element %d reads as %s"):format(index, tostring(object[v.name][index]))) end
  end
  for _, index in ipairs { -1, v.size, 1e9 } do
    checkRaised(fail, "index " .. index, "array indexing out of range.", nil, nil, function() return object[v.name][index] end)
    checkRaised(fail, "index " .. index, "array indexing out of range.", nil, nil, function() object[v.name][index] = 1 end)
  end
  checkRaised(fail, "no number as an index", "#vinvalid type in array indexing.", 2, "number",
    function() return object[v.name].x end)
  checkRaised(fail, "no number as an index", "#vinvalid type in array indexing.", 2, "number",
    function() object[v.name].x = 1 end)
end

local function checkWriting(v, object, fail)
  local t, place = v.type, v.path
  local function store(value) object[v.name] = value end
  local function refused(value, index, wanted)
    checkRaised(fail, "storing a " .. type(value), "#vinvalid type in variable assignment.", index, wanted, store, value)
  end
  if t.kind == "number" then
    for _, value in ipairs { 0.1, -7.75, "3.5" } do
      store(value)
      if native.field(place, object) ~= model.number(t.travels, tonumber(value)) then fail("stores another number") end
    end
    refused({}, 2, "number")
    refused(nil, 2, "number")
  elseif t.kind == "boolean" then
    for _, value in ipairs { true, false } do
      store(value)
      if native.field(place, object) ~= value then fail("stores another boolean") end
    end
    refused(5, 2, "boolean")
  elseif t.pointer then
    local target = samples.object(t.base)
    store(target)
    if native.field(place, object) ~= native.address(target) then fail("stores another object") end
    if native.address(object[v.name]) ~= native.address(target) then fail("reads another object") end
    store(nil)
    if native.field(place, object) ~= nil or object[v.name] ~= nil then fail("keeps the object") end
    refused({}, 2, t.test)
  else
    local target = samples.object(t.base)
    local before = native.field(place, object)
    store(target)
    if native.field(place, object) ~= before then fail("the field has moved") end
    local wanted, actual = native.numbers(target, "d", 3), native.numbers(object[v.name], "d", 3)
    for index, number in ipairs(wanted) do
      if not same(number, actual[index]) then fail("stores other numbers") end
    end
    refused(nil, 2, "value")
    refused({}, 2, t.test)
  end
end

-- Checks a variable or array. Failures go to `report(text)`; `accessors` are the registered functions.
function variables.check(v, accessors, report)
  local function fail(text) report(v.where .. ": " .. text) end
  native.at(v.where)
  if v.info.static then return checkStatic(v, fail) end
  if v.size then return checkArray(v, fail) end
  local object = objectOf(v)
  local read, memory = object[v.name], native.field(v.path, object)
  if v.type.kind == "object" then
    if memory ~= (read ~= nil and native.address(read) or nil) then fail("reads another object") end
    if read ~= nil and (native.owned(read) or tolua.type(read) ~= v.type.base) then fail("reads as " .. tolua.type(read)) end
  elseif not same(read, memory) then
    fail(("reads %s where %s stands"):format(tostring(read), tostring(memory)))
  end
  if not v.info.readOnly then checkWriting(v, object, fail) end
  local ghost = native.ghost(v.class.type)
  local lost = "invalid 'self' in accessing variable '" .. v.name .. "'"
  checkRaised(fail, "a lost self", lost, nil, nil, accessors.call, ghost, v.name)
  if accessors.set then checkRaised(fail, "a lost self", lost, nil, nil, accessors.set, ghost, 1) end
end

return variables
