-- Writes the accessors of variables and arrays.
local S = vyr.S
local line = vyr.line
local quoted = vyr.quoted

local function isStatic(v)
  return string.find(v.mod, "static") ~= nil
end

local function isReadOnly(v)
  return vyr.isConst(v) or string.find(v.mod, "tolua_readonly") ~= nil
end
vyr.isReadOnlyVariable = isReadOnly
vyr.isStaticVariable = isStatic

-- A constant carries its type in the accessor's name: tolua_get_osg__Camera_unsigned_FACE.
function classVariable:vyrAccessor(prefix)
  local owner = self.parent.classtype == "class" and self.parent.type or string.gsub(getnamespace(self.parent), "::$", "")
  local name = prefix
  if owner ~= "" then
    name = name .. "_" .. owner
  end
  if isStatic(self) and vyr.isConst(self) then
    name = name .. "_" .. vyr.plainType(self)
  end
  name = name .. "_" .. string.gsub(self.lname, ".*::", "")
  if self.ptr == "*" then
    name = name .. "_ptr"
  end
  return (string.gsub(name, "[<>:, %*]", "_"))
end

local function writeSelf(v)
  line(string.format("  %s* const self = static_cast<%s*>(tolua_tousertype(%s, 1, nullptr));", v.parent.type, v.parent.type, S))
  line("  if (self == nullptr)")
  line(string.format("    return vyrBinding::raise(%s, \"invalid 'self' in accessing variable '%s'\");", S, v.lname))
end

local function memberOf(v)
  if not v:inclass() then
    return v.name
  elseif isStatic(v) then
    return v.parent.type .. "::" .. v.name
  end
  -- A component that the class offers through a member function of its name, which returns a reference.
  return "self->" .. v.name .. (string.find(v.mod, "tolua_property__ref") and "()" or "")
end

local function writeGetter(v)
  vyr.checkDeclared(v)
  v.cgetname = v:vyrAccessor("tolua_get")
  line(string.format("// %s%s", v:inclass() and v.parent.type .. ", " or "", v.lname))
  line(string.format("static int %s(lua_State* %s)", v.cgetname, S))
  line("{")
  local owned = v:inclass() and not isStatic(v)
  if owned then
    writeSelf(v)
  end
  local kind = vyr.kindOf(v)
  local name = vyr.typeName(v)
  if kind == "object" then
    line(string.format("  vyrBinding::%s<%s>(%s, &%s, %s);", owned and "pushView" or "pushPointer", name, S, memberOf(v), quoted(name)))
  elseif kind == "pointer" then
    line(string.format("  vyrBinding::pushPointer<%s>(%s, vyrBinding::raw(%s), %s);", name, S, memberOf(v), quoted(name)))
  else
    line("  " .. vyr.pushBasic(kind, memberOf(v)))
  end
  line("  return 1;")
  line("}")
  line("")
end

local function writeSetter(v)
  v.csetname = v:vyrAccessor("tolua_set")
  line(string.format("static int %s(lua_State* %s)", v.csetname, S))
  line("{")
  if v:inclass() and not isStatic(v) then
    writeSelf(v)
  end
  line("  tolua_Error tolua_err;")
  line(string.format("  if (!%s)", vyr.test(v, 2)))
  line(string.format('    return vyrBinding::raise(%s, "#vinvalid type in variable assignment.", &tolua_err);', S))
  local dereference = vyr.kindOf(v) == "object" and "*" or ""
  line(string.format("  %s = %s%s;", memberOf(v), dereference, vyr.convert(v, 2)))
  line("  return 0;")
  line("}")
  line("")
end

function classVariable:supcode()
  writeGetter(self)
  if not isReadOnly(self) then
    writeSetter(self)
  end
end

function classVariable:register(indent)
  line(string.format('%stolua_variable(%s, "%s", %s, %s);', indent, S, self.lname, self.cgetname, self.csetname or "nullptr"))
end

local function writeArrayAccess(a, name)
  line(string.format("static int %s(lua_State* %s)", name, S))
  line("{")
  line("  int index;")
  line(string.format("  %s* const self = vyrBinding::arrayOwner<%s>(%s, \"%s\", %s, &index);", a.parent.type, a.parent.type,
    S, a.parent.type, a.dim))
end

function classArray:supcode()
  if not self:inclass() or vyr.kindOf(self) ~= "number" then
    vyr.fail("'" .. self.name .. "': only arrays of numbers in classes can be bound")
  end
  self.cgetname = self:cfuncname("tolua_get")
  line(string.format("// %s, %s", self.parent.type, self.lname))
  writeArrayAccess(self, self.cgetname)
  line("  " .. vyr.pushBasic("number", "self->" .. self.name .. "[index]"))
  line("  return 1;")
  line("}")
  line("")
  if vyr.isConst(self) then
    return
  end
  self.csetname = self:cfuncname("tolua_set")
  writeArrayAccess(self, self.csetname)
  line(string.format("  self->%s[index] = vyrBinding::toNumber<%s>(%s, 3, 0);", self.name, vyr.plainType(self), S))
  line("  return 0;")
  line("}")
  line("")
end

function classArray:register(indent)
  line(string.format('%stolua_array(%s, "%s", %s, %s);', indent, S, self.lname, self.cgetname, self.csetname or "nullptr"))
end
