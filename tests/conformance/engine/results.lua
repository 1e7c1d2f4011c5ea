-- What a wrapper pushed against what the operation gave back and what its declaration promises.
local border = require "border"
local model = require "model"

local results = {}

local function same(a, b) return a == b or (a ~= a and b ~= b) end

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

-- The text of what is wrong with all values that came back; nil if they are right.
function results.wrong(overload, values, count, call, case, given, givenCount)
  local index = 0
  if overload.constructor or (overload.result and overload.result.kind ~= "void") then
    index = 1
    if count >= 1 then
      local wrong = wrongResult(overload, values[1], call, case)
      if wrong then return wrong end
    end
  end
  for place, p in ipairs(overload.parameters) do
    if p.inout then
      index = index + 1
      local wanted = model.received(p, given[place], place <= givenCount)
      if not overload.row.changes and not same(wanted, values[index]) then
        return ("result %d is %s, not the given %s"):format(index, tostring(values[index]), tostring(wanted))
      end
    end
  end
  if count ~= index then return ("%d results, not %d"):format(count, index) end
end

return results
