-- Which function of the libraries a row reaches, how its arguments travel, and whether a recorded call is the promised one.
local signature = require "signature"
local model = require "model"

local border = {}

-- Names of the interface that are other names in the libraries' symbol tables.
local kAliases = {
  ["vyr::Vec2"] = "vyr::Vec2T<double>", ["vyr::Vec2d"] = "vyr::Vec2T<double>", ["vyr::Vec2f"] = "vyr::Vec2T<float>",
  ["vyr::Vec3"] = "vyr::Vec3T<double>", ["vyr::Vec3d"] = "vyr::Vec3T<double>", ["vyr::Vec3f"] = "vyr::Vec3T<float>",
  ["vyr::Vec4"] = "vyr::Vec4T<double>", ["vyr::Vec4d"] = "vyr::Vec4T<double>", ["vyr::Vec4f"] = "vyr::Vec4T<float>",
  ["vyr::String"] = "vyr::VyrString<std::string>",
  ["osg::Vec2"] = "osg::Vec2f", ["osg::Vec3"] = "osg::Vec3f", ["osg::Vec4"] = "osg::Vec4f",
  ["osg::Matrix"] = "osg::Matrixd", ["osg::Matrix2"] = "osg::Matrix2Template<float>",
  ["osg::Matrix3"] = "osg::Matrix3Template<float>", ["osg::Uniform::Callback"] = "osg::UniformCallback",
  ["osg::BoundingSphere"] = "osg::BoundingSphereImpl<osg::Vec3f>",
  ["osg::BoundingBox"] = "osg::BoundingBoxImpl<osg::Vec3f>",
  ["vyrOSG::Constraint1DOFObserverVector"] = "vyr::Vector<vyr::observer_ptr<vyr::Constraint1DOF>, vyr::ByteAllocator>",
  ["vyr::RealVector"] = "vyr::VectorPOD<double, vyr::ByteAllocator>", ["vyr::RangeReal"] = "vyr::Range<double>",
  ["vyrRender::ColorVector"] = "vyr::Vector<vyrRender::Color, vyr::ByteAllocator>",
  ["size_t"] = "unsigned long", ["unsigned"] = "unsigned int", ["GLenum"] = "unsigned int",
  ["GLbitfield"] = "unsigned int",
}

-- The numbers that value types consist of.
local kNumbersOf = {
  ["vyr::Vec2"] = "d2", ["vyr::Vec2d"] = "d2", ["vyr::Vec3"] = "d3", ["vyr::Vec3d"] = "d3", ["vyr::Vec4"] = "d4",
  ["vyr::Vec4d"] = "d4", ["vyr::Vec2f"] = "f2", ["vyr::Vec3f"] = "f3", ["vyr::Vec4f"] = "f4", ["vyr::Quat"] = "d4",
  ["vyr::SPDMatrix3x3"] = "d6", ["vyr::AffineMatrix4x4"] = "d16", ["vyrRender::Color"] = "d4",
  ["osg::Vec2"] = "f2", ["osg::Vec2f"] = "f2", ["osg::Vec3"] = "f3", ["osg::Vec3f"] = "f3", ["osg::Vec4"] = "f4",
  ["osg::Vec4f"] = "f4", ["osg::Vec2d"] = "d2", ["osg::Vec3d"] = "d3", ["osg::Vec4d"] = "d4", ["osg::Matrix"] = "d16",
  ["osg::Matrixd"] = "d16", ["osg::Matrixf"] = "f16", ["osg::Matrix2"] = "f4", ["osg::Matrix3"] = "f9",
  ["osg::Quat"] = "d4", ["vyr::RangeReal"] = "d2", ["vyr::Vec2u"] = "u2", ["GLenum"] = "u1", ["GLbitfield"] = "u1",
}

-- Values that travel in registers when they are passed, by the recorder's letters for them.
local kPassed = { ["vyr::RangeReal"] = "x2", ["vyr::Vec2u"] = "w2", ["GLenum"] = "u", ["GLbitfield"] = "u" }

-- The sizes of values that are well made of zeros: functions that give them back can be held.
local kEmpty = { ["vyrOSG::SimulationObject"] = 24 }

-- Values of at most two registers come back in them.
local kInRegisters = {
  ["vyr::Vec2"] = true, ["vyr::Vec2d"] = true, ["vyr::Vec2f"] = true, ["vyr::Vec3f"] = true, ["vyr::Vec4f"] = true,
  ["osg::Vec2"] = true, ["osg::Vec2f"] = true, ["osg::Vec3"] = true, ["osg::Vec3f"] = true, ["osg::Vec4"] = true,
  ["osg::Vec4f"] = true, ["osg::Vec2d"] = true,
}

function border.numbersOf(base) return kNumbersOf[base] end

local function plain(text)
  return (text:gsub("%s+>", ">"):gsub("%s+([%*&,])", "%1"):gsub(",%s*", ", "))
end

local function canonical(t)
  local base = plain(t.base)
  base = kAliases[base] or base
  if t.handle then base = t.text:gsub("[%*&]$", "") end
  if (t.pointer or t.reference) and t.const then base = base .. " const" end
  return base .. (t.pointer and "*" or t.reference and "&" or "")
end

local function arguments(parameters)
  local list = {}
  for index, p in ipairs(parameters) do list[index] = canonical(p) end
  return "(" .. table.concat(list, ", ") .. ")"
end

local function find(name, operation)
  local wanted = arguments(operation.parameters) .. (operation.const and " const" or "")
  local seen = {}
  name = plain(name)
  for _, full in ipairs(native.operations(name)) do
    if plain(full:sub(#name + 1)) == wanted then return full end
    seen[#seen + 1] = full
  end
  return nil, seen
end

local function qualified(class, name)
  local owner = kAliases[class] or class
  return owner .. "::" .. name
end

-- How an argument of a type travels, in the recorder's letters.
local function travels(t)
  if t.kind == "number" then return t.reference and t.travels:upper() or t.travels end
  if t.kind == "boolean" then return t.reference and "B" or "b" end
  if t.kind == "string" then return t.pointer and "c" or "s" end
  local numbers = kNumbersOf[t.base]
  if t.value and kPassed[t.base] then return kPassed[t.base] end
  -- Values that two registers do not hold.
  if t.value and numbers and numbers:sub(1, 1) == "d" and numbers ~= "d2" then return "m" .. numbers:sub(2) end
  return "p" .. (numbers or "")
end

local function comesBack(t)
  if not t or t.kind == "void" then return "n", false end
  if t.kind == "string" then return t.pointer and "c" or "s", not t.pointer and not t.reference end
  if t.handle then return t.reference and "h" or t.handle, not t.reference end
  if t.kind == "object" and t.value then
    local numbers = kNumbersOf[t.base]
    if numbers and numbers:sub(1, 1) == "u" then return kPassed[t.base], false end
    if kInRegisters[t.base] then return "r" .. numbers, false end
    return "p" .. (numbers or ""), true
  end
  if t.kind == "object" then return "p" .. (kNumbersOf[t.base] or ""), false end
  return t.kind == "number" and (t.reference and t.travels:upper() or t.travels) or (t.reference and "B" or "b"), false
end

-- Finds the operation of an overload. Gives { full, operation, kinds, result, inMemory, held }; nil and the names that
-- came close when no library names such a function.
function border.operation(overload)
  local text = overload.row.reaches
  local operation = text and signature.parse(text) or overload.signature
  local names = {}
  if text and operation.name:find("::") then
    names = { operation.name }
    local owner, last = operation.name:match("^(.*)::([^:]+)$")
    if kAliases[owner] then names[2] = kAliases[owner] .. "::" .. last end
  elseif overload.class then
    for _, class in ipairs(overload.lineage) do
      local name = operation.name
      if overload.constructor then name = (kAliases[class] or class):gsub("<.*", ""):match("[^:]+$") end
      names[#names + 1] = qualified(class, name)
    end
  else
    names = { overload.namespace .. "::" .. operation.name }
  end
  local close = {}
  for _, name in ipairs(names) do
    local full, seen = find(name, operation)
    if full then
      local result = operation.result or overload.signature.result
      local kinds, own = {}, overload.self and not overload.signature.static
      local method = overload.constructor or overload.row.ofAnother or (own and not operation.static) or false
      if method then kinds[1] = "p" end
      for _, p in ipairs(operation.parameters) do kinds[#kinds + 1] = travels(p) end
      local kind, inMemory = comesBack(not overload.constructor and result or nil)
      return { full = full, operation = operation, kinds = kinds, result = kind, inMemory = inMemory, method = method,
        empty = inMemory and kEmpty[result.base] or nil }
    end
    for _, other in ipairs(seen) do close[#close + 1] = other end
  end
  return nil, close
end

function border.watch(reached, held)
  native.watch(reached.full, reached.kinds, reached.result, reached.inMemory, held, reached.empty)
end

-- Whether the operation may be held back: the caller can do with 0 as a result.
function border.canHold(reached, overload)
  if reached.empty then return true end
  if overload.constructor or reached.inMemory then return false end
  local result = reached.operation.result or overload.signature.result
  return not result or not result.reference and (result.kind ~= "object" or result.pointer) and
    not (result.kind == "string")
end

local function same(a, b) return a == b or (a ~= a and b ~= b) end

local function differing(expected, actual)
  if #expected ~= #actual then return true end
  for index, number in ipairs(expected) do
    if not same(number, actual[index]) then return true end
  end
end

local function show(value)
  if type(value) ~= "table" then return tostring(value) end
  local parts = { tostring(value.address) }
  for index, number in ipairs(value) do parts[index + 1] = tostring(number) end
  return "{" .. table.concat(parts, " ") .. "}"
end

-- Compares what an operation received with what was given: the address of self, `given` values after it, `count` of them.
-- Nil if all is well.
function border.compare(reached, overload, call, self, given, count)
  local shift = reached.method and 1 or 0
  if shift == 1 and not overload.constructor and not overload.row.ofAnother and call.arguments[1].address ~= self then
    return "another object"
  end
  for index, p in ipairs(reached.operation.parameters) do
    local own = overload.parameters[index]
    local actual = call.arguments[index + shift]
    local expected, wrong
    local stated = overload.row.reaches and p.default
    if stated and stated.any then
      wrong = false
    elseif overload.row.receives and overload.row.receives[index] then
      expected = overload.row.receives[index]
      wrong = differing(expected, actual)
    elseif stated or not own or (index > count and (own.default or {}).numbers) then
      local default = stated or own and own.default
      assert(default, "an operation with more parameters than its row needs their values: " .. overload.where)
      expected = default.numbers or default.value
      if p.kind == "object" and not default.numbers then
        wrong = actual.address ~= native.nothing
      elseif default.numbers then
        local narrow = (kNumbersOf[p.base] or ""):sub(1, 1) == "f"
        local numbers = {}
        for i, number in ipairs(default.numbers) do numbers[i] = narrow and native.narrow(number) or number end
        wrong = differing(numbers, actual)
      else
        expected = model.received(p, default.value, true)
        wrong = not same(expected, actual)
      end
    elseif p.kind == "object" and own.kind == "object" then
      expected = given[index]
      local address = expected ~= nil and native.address(expected) or native.nothing
      if p.value or p.base ~= own.base and kNumbersOf[p.base] and kNumbersOf[own.base] then
        local kind, size = kNumbersOf[own.base]:match("(.)(%d+)")
        local numbers = native.numbers(expected, kind, tonumber(size))
        if kNumbersOf[p.base]:sub(1, 1) == "f" then
          for i, number in ipairs(numbers) do numbers[i] = native.narrow(number) end
        end
        expected, wrong = numbers, differing(numbers, type(actual) == "table" and actual or { actual })
      else
        wrong = actual.address ~= address
      end
    else
      local text = model.received(own, given[index], index <= count)
      expected = p.kind == "number" and own.kind == "number" and model.number(p.travels, text) or text
      wrong = not same(expected, actual)
    end
    if wrong then
      return ("argument %d is %s, not %s"):format(index, show(actual), show(expected))
    end
  end
end

border.show = show

return border
