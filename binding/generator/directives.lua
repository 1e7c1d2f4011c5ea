-- The statements that a description may hold besides C++ declarations.
--
--   types { a b c }        the type names to declare, in this order; once a module, at the top
--   collected;             in a class: the module registers the class with a collector
--   guard f, g;            calls of f and g ask vyrBinding::guards::f and ::g first (see support/vyrBinding/Guards.h)
--   enumeration ns::E;     ns::E is an enumeration whose constants stand further down or in another module
--   constant NAME = 1;     a number of the scripts alone, without a C++ name

-- The strings and sizes of the toolkit, beside those that the generator knows.
for _, name in ipairs({ "vyr::VyrString<std::string>", "vyr::String" }) do
  _basic[name] = "cppstring"
end
for _, name in ipairs({ "size_t", "std::size_t" }) do
  _basic[name] = "number"
end

vyr.types = {}
vyr.isDeclared = {}

local function declareTypes(body)
  local names = split_c_tokens(string.sub(body, 2, -2), "[,\n]")
  for i = 1, names.n do
    local name = names[i]
    if name ~= "" then
      if vyr.isDeclared[name] then
        vyr.fail("the type name '" .. name .. "' is listed twice")
      end
      vyr.isDeclared[name] = true
      table.insert(vyr.types, name)
    end
  end
end

local function declareEnumeration(name)
  append_global_type(name)
  global_enums[name] = true
  global_typedefs[name] = { mod = "", type = "int", ftype = "int", utype = name }
end

local function declareGuards(names)
  local container = classContainer.curr
  container.vyrGuards = container.vyrGuards or {}
  for name in string.gmatch(names, "[%w_]+") do
    container.vyrGuards[name] = true
  end
end

-- The parser offers every statement here first; what is taken is cut off, nil means "not mine".
function parser_hook(code)
  local _, last, body = string.find(code, "^%s*types%s*(%b{})")
  if last then
    declareTypes(body)
    return string.sub(code, last + 1)
  end
  _, last = string.find(code, "^%s*collected%s*;")
  if last then
    if classContainer.curr.classtype ~= "class" then
      vyr.fail("'collected;' stands outside a class")
    end
    classContainer.curr.vyrCollected = true
    return string.sub(code, last + 1)
  end
  local names
  _, last, names = string.find(code, "^%s*guard%s+([%w_,%s]+);")
  if last then
    declareGuards(names)
    return string.sub(code, last + 1)
  end
  _, last, names = string.find(code, "^%s*enumeration%s+([%w_:]+)%s*;")
  if last then
    declareEnumeration(names)
    return string.sub(code, last + 1)
  end
  local value
  _, last, names, value = string.find(code, "^%s*constant%s+([%w_]+)%s*=%s*([^;]-)%s*;")
  if last then
    append(setmetatable({ lname = names, name = value, vyrValue = value }, classDefine))
    return string.sub(code, last + 1)
  end
  -- The generator would register a class of that name.
  if string.find(code, "^%s*class%s+[%w_:]+%s*;") or string.find(code, "^%s*struct%s+[%w_:]+%s*;") then
    _curr_code = code
    vyr.fail("a forward declaration; list the type name under types { } instead\n  near: "
      .. string.match(code, "^%s*([^\n]*)"))
  end
  return nil
end

-- The generator drops the values of enumerators; the manifest shows them and the code asserts them.
local stockEnumerate = Enumerate
function Enumerate(name, body, variable)
  local values = {}
  for _, item in ipairs(split(string.sub(string.gsub(body, ",[%s\n]*}", "}"), 2, -2), ",")) do
    local left, value = string.match(item, "^%s*([^=%s]+)%s*=%s*(.-)%s*$")
    if left then
      values[string.gsub(left, "@.*$", "")] = value
    end
  end
  local enumeration = stockEnumerate(name, body, variable)
  enumeration.vyrValues = values
  return enumeration
end

-- As for enumerators: "#define NAME 1" shows and asserts its value.
local stockDoparse = classContainer.doparse
function classContainer:doparse(code)
  local value = string.match(code, "^%s*#define%s+%S+[ \t]+([^\n]-)[ \t]*\n")
  local before = self.n
  local rest = stockDoparse(self, code)
  if value and self.n == before + 1 and getmetatable(self[self.n]) == classDefine then
    self[self.n].vyrValue = value
  end
  return rest
end

-- Namespaces that are opened again start their overload counts anew; a name in both would clash as a C++ function.
local opened = {}
local stockNamespace = Namespace
function Namespace(name, body)
  local path = getnamespace(classContainer.curr) .. name
  opened[path] = opened[path] or {}
  local stockContainer = _Container
  _Container = function(self)
    local container = stockContainer(self)
    container.lnames = opened[path]
    return container
  end
  local open = _Namespace
  _Namespace = function(t)
    _Container, _Namespace = stockContainer, open
    return open(t)
  end
  stockNamespace(name, body)
end
