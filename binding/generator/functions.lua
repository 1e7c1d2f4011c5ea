-- Writes the wrappers of functions, constructors and operators.
local S = vyr.S
local line = vyr.line
local quoted = vyr.quoted

local function isStatic(f)
  return f.vyrStatic
end

-- A free function that is bound as a member: self, where there is one, is its first argument.
local function isOutside(f)
  return f.vyrOutside
end

local function isConstructor(f)
  return f:inclass() ~= nil and f.name == "new"
end

local function hasSelf(f)
  return f:inclass() ~= nil and not isConstructor(f) and not isStatic(f)
end
vyr.hasSelf = hasSelf
vyr.isConstructor = isConstructor

-- The arguments without the lone "void" of an empty list.
function vyr.arguments(f)
  local list = {}
  for i = 1, f.args.n do
    if f.args[i].type ~= "void" or f.args[i].ptr == "*" then
      table.insert(list, f.args[i])
    end
  end
  return list
end

local stockDecltype = classFunction.decltype
function classFunction:decltype()
  self.vyrStatic = string.find(self.mod, "static") ~= nil
  self.vyrOutside = string.find(self.mod, "tolua_outside") ~= nil
  self.vyrOwned = string.find(self.mod, "tolua_owned") ~= nil
  stockDecltype(self)
end

-- The static of an operator's base class, so that both kinds are written alike.
classOperator.decltype = classFunction.decltype

local function writeTests(f, arguments)
  local tests = {}
  local position = 1
  if f:inclass() then
    position = 2
    if hasSelf(f) then
      local const = f.const ~= "" and "const " or ""
      table.insert(tests, string.format("tolua_isusertype(%s, 1, %s, 0, &tolua_err)", S, quoted(const .. f.parent.type)))
    else
      table.insert(tests, string.format("tolua_isusertable(%s, 1, %s, 0, &tolua_err)", S, quoted(f.parent.type)))
    end
  end
  for _, argument in ipairs(arguments) do
    if vyr.isPassed(argument) then
      table.insert(tests, vyr.test(argument, position))
      position = position + 1
    end
  end
  table.insert(tests, string.format("tolua_isnoobj(%s, %d, &tolua_err)", S, position))
  line("  if (" .. table.concat(tests, "\n      && ") .. ")")
end

local function writeConversions(f, arguments)
  local position = 1
  if f:inclass() then
    position = 2
  end
  if hasSelf(f) then
    local const = f.const ~= "" and "const " or ""
    line(string.format("    %s%s* const self = static_cast<%s%s*>(tolua_tousertype(%s, 1, nullptr));", const, f.parent.type,
      const, f.parent.type, S))
    -- Before any local with a destructor exists: raising an error may jump over destructors.
    line("    if (self == nullptr)")
    line(string.format("      return vyrBinding::raise(%s, \"invalid 'self' in function '%s'\");", S,
      isOutside(f) and f.lname or f.name))
  end
  local names = {}
  for i, argument in ipairs(arguments) do
    local name = "arg" .. i
    line(string.format("    %s %s = %s;", vyr.localType(argument), name, vyr.convert(argument, position)))
    if vyr.isPassed(argument) then
      position = position + 1
    end
    table.insert(names, name)
  end
  return names
end

-- How each argument is passed on.
local function passed(arguments, names)
  local list = {}
  for i, argument in ipairs(arguments) do
    local text = names[i]
    if vyr.kindOf(argument) == "object" then
      text = argument.ptr == "" and "vyrBinding::byValue(*" .. names[i] .. ")" or "*" .. names[i]
    end
    table.insert(list, text)
  end
  return list
end

local function callExpression(f, list)
  local text = table.concat(list, ", ")
  if isConstructor(f) then
    return string.format("new %s(%s)", f.parent.type, text)
  elseif not f:inclass() or (isOutside(f) and isStatic(f)) then
    return string.format("%s(%s)", f.name, text)
  elseif isOutside(f) then
    return string.format("%s(self%s%s)", f.name, #list > 0 and ", " or "", text)
  elseif isStatic(f) then
    return string.format("%s::%s(%s)", f.parent.type, f.name, text)
  elseif f.kind == "[]" then
    return string.format("vyrBinding::element(*self, %s)", text)
  elseif f.kind == "&[]" then
    return string.format("vyrBinding::setElement(*self, %s)", text)
  elseif f.cast_operator then
    return string.format("self->operator %s()", vyr.typeName(f))
  end
  return string.format("self->%s(%s)", f.name, text)
end

-- A null, zero or false in place of the result, for calls that a guard stopped.
local function writeEmptyResult(f)
  local kind = vyr.kindOf(f)
  if kind == "number" then
    line(string.format("      tolua_pushnumber(%s, 0);", S))
  elseif kind == "boolean" then
    line(string.format("      tolua_pushboolean(%s, 0);", S))
  elseif kind == "pointer" then
    line(string.format("      lua_pushnil(%s);", S))
  elseif kind ~= "void" then
    vyr.fail("the result of the guarded function '" .. f.name .. "' has no empty value")
  end
end

local function writeResult(f, call, localConstructor)
  local kind = vyr.kindOf(f)
  if isConstructor(f) then
    line(string.format("      %s* const tolua_ret = %s;", f.parent.type, call))
    local retained = "false"
    if localConstructor then
      retained = f.parent.vyrCollected and "true" or "vyrBinding::kHasExplicitCollectors"
      line("      vyrBinding::" .. (f.parent.vyrCollected and "retain" or "retainIfExplicit") .. "(tolua_ret);")
    end
    line(string.format("      vyrBinding::Pending<%s> tolua_pending(%s, tolua_ret, %s);", f.parent.type, S, retained))
    line(string.format("      vyrBinding::pushPointer<%s>(%s, tolua_ret, %s);", f.parent.type, S, quoted(f.parent.type)))
    if localConstructor then
      line(string.format("      tolua_register_gc(%s, lua_gettop(%s));", S, S))
    end
    line("      tolua_pending.done();")
    return 1
  elseif f.kind == "&[]" or kind == "void" then
    line("      " .. call .. ";")
    return 0
  end
  vyr.checkDeclared(f)
  if kind == "object" then
    local name = quoted(vyr.typeName(f))
    if f.ptr == "&" then
      line(string.format("      auto& tolua_ret = %s;", call))
      if hasSelf(f) then
        line(string.format("      vyrBinding::pushView<%s>(%s, &tolua_ret, %s);", vyr.typeName(f), S, name))
      else
        line(string.format("      vyrBinding::pushPointer<%s>(%s, &tolua_ret, %s);", vyr.typeName(f), S, name))
      end
    else
      line(string.format("      vyrBinding::pushCopy<%s>(%s, %s, %s);", vyr.plainType(f), S, call, name))
    end
  elseif kind == "pointer" then
    line(string.format("      auto&& tolua_ret = %s;", call))
    local push = string.format("      vyrBinding::pushPointer<%s>(%s, vyrBinding::raw(tolua_ret), %s);", vyr.typeName(f), S,
      quoted(vyr.typeName(f)))
    if f.vyrOwned then
      line("      if (tolua_ret != nullptr)")
      line("        vyrBinding::retain(vyrBinding::raw(tolua_ret));")
      line(string.format("      vyrBinding::Pending<%s> tolua_pending(%s, vyrBinding::raw(tolua_ret), true);", vyr.typeName(f), S))
      line(push)
      line("      if (tolua_ret != nullptr)")
      line(string.format("        tolua_register_gc(%s, lua_gettop(%s));", S, S))
      line("      tolua_pending.done();")
    else
      line(push)
    end
  else
    line(string.format("      const auto& tolua_ret = %s;", call))
    line("      " .. vyr.pushBasic(kind, "tolua_ret"))
  end
  return 1
end

local function writeInOut(arguments, names)
  local count = 0
  for i, argument in ipairs(arguments) do
    if vyr.isInOut(argument) then
      line("    " .. vyr.pushBasic(vyr.kindOf(argument), names[i]))
      count = count + 1
    end
  end
  return count
end

local function isGuarded(f)
  return f.parent.vyrGuards ~= nil and f.parent.vyrGuards[f.lname] == true
end

local function writeBody(f, localConstructor)
  local arguments = vyr.arguments(f)
  writeTests(f, arguments)
  line("  {")
  local names = writeConversions(f, arguments)
  if f.name == "delete" and f:inclass() then
    line(string.format("    vyrBinding::destroy(%s, self);", S))
    line("    return 0;")
    line("  }")
    return
  end
  local list = passed(arguments, names)
  local results
  if isGuarded(f) then
    local operands = hasSelf(f) and { "*self" } or {}
    for _, name in ipairs(names) do
      table.insert(operands, name)
    end
    line(string.format("    if (!vyrBinding::guards::%s(%s))", f.lname, table.concat(operands, ", ")))
    line("    {")
    writeEmptyResult(f)
    line("    }")
    line("    else")
  end
  line("    {")
  results = writeResult(f, callExpression(f, list), localConstructor)
  line("    }")
  results = results + writeInOut(arguments, names)
  line(string.format("    return %d;", results))
  line("  }")
end

local function writeWrapper(f, localConstructor)
  local suffix = localConstructor and "_local" or ""
  local class = f:inclass()
  line(string.format("// %s%s", class and f.parent.type .. ", " or "", f.lname))
  line(string.format("static int %s%s(lua_State* %s)", f.cname, suffix, S))
  line("{")
  line(string.format("  const int tolua_top = lua_gettop(%s);", S))
  line("  tolua_Error tolua_err;")
  writeBody(f, localConstructor)
  -- A test that fails may leave values behind, which the previous overload would take for arguments.
  line(string.format("  lua_settop(%s, tolua_top);", S))
  local index = tonumber(string.sub(f.cname, -2))
  if index == 0 then
    line(string.format("  return vyrBinding::raise(%s, \"#ferror in function '%s'.\", &tolua_err);", S, f.lname))
  else
    line(string.format("  return %s%02d%s(%s);", string.sub(f.cname, 1, -3), index - 1, suffix, S))
  end
  line("}")
  line("")
end

function classFunction:supcode()
  if self.name == "new" and self.parent.flags and self.parent.flags.pure_virtual then
    return
  end
  -- Without "static" the words before a type are all qualifiers of it.
  self.mod = string.gsub(self.mod, "static%s*", "")
  writeWrapper(self, false)
  if isConstructor(self) then
    writeWrapper(self, true)
  end
end
classOperator.supcode = classFunction.supcode

function classFunction:register(indent)
  if self.name == "new" and self.parent.flags and self.parent.flags.pure_virtual then
    return
  end
  line(string.format('%stolua_function(%s, "%s", %s);', indent, S, self.lname, self.cname))
  if isConstructor(self) then
    line(string.format('%stolua_function(%s, "new_local", %s_local);', indent, S, self.cname))
    line(string.format('%stolua_function(%s, ".call", %s_local);', indent, S, self.cname))
  end
end
classOperator.register = classFunction.register
