-- What the wrappers' conventions promise for any arguments: which overload takes them, or which error is raised.
local model = {}

local function isNumber(value) return type(value) == "number" or (type(value) == "string" and tonumber(value) ~= nil) end

-- Whether an argument passes the test of a parameter; if not, the type that the error record names.
local function passes(p, value, given)
  if not given then return p.default ~= nil, p.kind == "object" and p.test or p.kind end
  if p.kind == "number" then return isNumber(value), "number" end
  if p.kind == "boolean" then return value == nil or type(value) == "boolean", "boolean" end
  if p.kind == "string" then return value == nil or type(value) == "string" or type(value) == "number", "string" end
  if value == nil then return p.pointer or false, "value" end
  return type(value) == "userdata" and native.isa(value, p.test), p.test
end

-- Tests `count` arguments, self or class table first. Gives true, or false with argument number and type of the record.
function model.test(overload, arguments, count)
  local shift = 0
  if overload.self == "table" then
    shift = 1
    if arguments[1] ~= overload.classTable then return false, 1, overload.class end
  elseif overload.self then
    shift = 1
    local wanted = (overload.self == "const" and "const " or "") .. overload.class
    local own = arguments[1]
    local fits = count >= 1 and (own == nil or (type(own) == "userdata" and native.isa(own, wanted)))
    if not fits then return false, 1, wanted end
  end
  for index, p in ipairs(overload.parameters) do
    local place = index + shift
    local fits, wanted = passes(p, arguments[place], place <= count)
    if not fits then return false, place, wanted end
  end
  local last = #overload.parameters + shift
  if count > last then return false, last + 1, "[no object]" end
  return true
end

-- Walks down a chain of overloads from number `top` (counted from 1). Gives the overload that takes the arguments and
-- whether self has no object, or nil with the expected error: { text, index, type }.
function model.resolve(chain, top, arguments, count)
  local place, wanted
  for index = top, 1, -1 do
    local overload = chain[index]
    local fits
    fits, place, wanted = model.test(overload, arguments, count)
    if fits then
      local lost = overload.self and overload.self ~= "table" and native.address(arguments[1]) == nil
      if lost then return nil, { text = "invalid 'self' in function '" .. overload.native .. "'" } end
      return overload
    end
  end
  return nil, { text = "#ferror in function '" .. chain[1].errorName .. "'.", index = place, type = wanted }
end

local function truncated(number) return number < 0 and math.ceil(number) or math.floor(number) end

-- A number as a parameter of that kind receives it, for every input.
function model.number(travels, number)
  if travels == "d" then return number end
  if travels == "f" then return native.narrow(number) end
  local huge = number ~= number or number >= 2 ^ 63 or number < -2 ^ 63
  if travels == "i" then
    if number ~= number or truncated(number) >= 2 ^ 31 or truncated(number) < -2 ^ 31 then return -2 ^ 31 end
    return truncated(number)
  end
  if travels == "u" then return huge and 0 or truncated(number) % 2 ^ 32 end
  return truncated(number)
end

-- The plain value that an operation receives for an argument, or for the default of one that is left out.
function model.received(p, value, given)
  if not given and p.default then value = p.default.value end
  if p.kind == "number" then return model.number(p.travels, tonumber(value)) end
  if p.kind == "boolean" then return value and true or false end
  if p.kind == "string" then return value == nil and "" or tostring(value) end
  return value
end

return model
