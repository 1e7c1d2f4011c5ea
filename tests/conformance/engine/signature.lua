-- Reads native declarations as the interface's pages write them: "bool setMode(unsigned int mode, bool on = true) const".
local signature = {}

local kNumbers = {
  ["int"] = "i", ["short"] = "i", ["unsigned"] = "u", ["unsigned int"] = "u", ["size_t"] = "l", ["unsigned long"] = "l",
  ["long"] = "l", ["float"] = "f", ["double"] = "d",
}
local kStrings = { ["std::string"] = true, ["vyr::String"] = true, ["vyr::VyrString<std::string>"] = true }
local kHandles = { ["osg::ref_ptr"] = "h", ["vyr::ref_ptr"] = "h", ["vyr::observer_ptr"] = "n", ["osg::observer_ptr"] = "n" }

local function trim(text) return (text:gsub("^%s+", ""):gsub("%s+$", "")) end

-- Splits at a character that stands outside of all brackets.
local function split(text, separator)
  local parts, depth, start = {}, 0, 1
  for at = 1, #text do
    local c = text:sub(at, at)
    if c == "(" or c == "<" or c == "{" then depth = depth + 1 end
    if c == ")" or c == ">" or c == "}" then depth = depth - 1 end
    if c == separator and depth == 0 then
      parts[#parts + 1] = trim(text:sub(start, at - 1))
      start = at + 1
    end
  end
  local rest = trim(text:sub(start))
  if rest ~= "" or #parts > 0 then parts[#parts + 1] = rest end
  return parts
end

-- A type: kind (void, number, boolean, string, object), base, const, pointer, reference; of numbers how they travel; of
-- objects the type name that a test or a push uses.
function signature.type(text)
  local t = { text = trim(text) }
  local rest = t.text
  t.reference = rest:sub(-1) == "&"
  t.pointer = rest:sub(-1) == "*"
  if t.reference or t.pointer then rest = trim(rest:sub(1, -2)) end
  if rest:find("^const ") then t.const, rest = true, trim(rest:sub(7)) end
  local enumeration = rest:match("^enum%s+(.+)$")
  t.base = enumeration or rest
  local handle, target = rest:match("^([%w:_]+)%s*<%s*(.-)%s*>$")
  if rest == "void" and not t.pointer then
    t.kind = "void"
  elseif (enumeration or kNumbers[rest]) and not t.pointer then
    t.kind, t.travels = "number", enumeration and "i" or kNumbers[rest]
  elseif rest == "bool" then
    t.kind = "boolean"
  elseif kStrings[rest] and not t.pointer or (rest == "char" and t.pointer) then
    t.kind = "string"
  elseif handle and kHandles[handle] then
    t.kind, t.handle, t.base = "object", kHandles[handle], target
    t.test = target
  else
    t.kind = "object"
    t.test = (t.const and "const " or "") .. t.base
    t.value = not t.pointer and not t.reference
  end
  -- Numbers, booleans and strings by reference come back as extra results.
  t.inout = t.reference and (t.kind == "number" or t.kind == "string" or t.kind == "boolean")
  return t
end

-- What a default is: a plain value, no object (nil), or the numbers that a value type is made of.
local function default(text)
  if text == "true" or text == "false" then return { value = text == "true" } end
  if text == "any" then return { any = true } end
  if text == "nullptr" or text == "NULL" then return {} end
  if text:find('^"') then return { value = text:sub(2, -2) } end
  if tonumber(text) then return { value = tonumber(text) } end
  local list = assert(text:match("^[%w:_]+%((.*)%)$"), "no value as a default: " .. text)
  local numbers = {}
  for index, part in ipairs(split(list, ",")) do numbers[index] = assert(tonumber(part), text) end
  return { numbers = numbers }
end

local function parameter(text)
  local parts = split(text, "=")
  local declared = parts[1]
  -- The last word is a name unless it ends the type.
  local before, name = declared:match("^(.*[%s%*&>])([%a_][%w_]*)$")
  if name and before and kNumbers[declared] == nil and trim(before) ~= "enum" and trim(before) ~= "const" then
    declared = trim(before)
  else
    name = nil
  end
  local p = signature.type(declared)
  p.name = name
  if parts[2] then p.default = default(parts[2]) end
  return p
end

-- A declaration: name as it is written ("operator<", or qualified), parameters, result, static, const.
function signature.parse(text)
  local s = { text = text }
  local rest = trim(text)
  if rest:find("%)%s*const$") then s.const, rest = true, trim(rest:gsub("const$", "")) end
  if rest:find("^static ") then s.static, rest = true, trim(rest:sub(8)) end
  local head, list = rest:match("^(.-)%((.*)%)$")
  assert(head, "not a declaration: " .. text)
  head = trim(head)
  local operator = head:find("[%w_:]*operator[^%w_]")
  local nameStart = operator or head:find("[%w_:~<>]+$")
  -- Template arguments belong to the name only where it has no blank inside.
  if not operator then nameStart = head:find("[^%s%*&]+$") end
  s.name = head:sub(nameStart)
  local result = trim(head:sub(1, nameStart - 1))
  if result ~= "" then s.result = signature.type(result) end
  s.parameters = {}
  for index, part in ipairs(split(list, ",")) do
    if part ~= "void" then s.parameters[index] = parameter(part) end
  end
  s.required = 0
  for index, p in ipairs(s.parameters) do
    if not p.default then s.required = index end
  end
  return s
end

return signature
