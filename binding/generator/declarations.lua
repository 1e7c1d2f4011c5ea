-- How one value travels: its test, its conversion from Lua, and the way back.
vyr.S = "tolua_S"

local function words(text)
  local result = {}
  for word in string.gmatch(text or "", "%S+") do
    if word ~= "const" and word ~= "static" and word ~= "virtual" and not string.find(word, "^tolua_") then
      table.insert(result, word)
    end
  end
  return result
end

-- The C++ type of a declaration without const, pointer and reference: "unsigned int", "vyr::Vec3".
function vyr.plainType(declaration)
  local list = words(declaration.mod)
  table.insert(list, (string.gsub(declaration.type, "^const%s+", "")))
  return table.concat(list, " ")
end

function vyr.isConst(declaration)
  return string.find(declaration.type, "^const%s") ~= nil
end

-- The type name as the runtime knows it: with "const " for read-only views.
function vyr.typeName(declaration)
  return (vyr.isConst(declaration) and "const " or "") .. vyr.plainType(declaration)
end

-- One of "void", "number", "boolean", "string", "cstring", "value" (any Lua value, by its stack position), "state", "object", "pointer".
function vyr.kindOf(declaration)
  if declaration.type == "void" or declaration.type == "" then
    return "void"
  end
  local basic = isbasic(declaration.type)
  if basic == "number" or basic == "boolean" or basic == "value" or basic == "state" then
    return basic
  elseif basic == "cppstring" then
    return "string"
  elseif basic == "string" then
    return "cstring"
  elseif basic then
    vyr.fail("'" .. declaration.type .. "' cannot be bound")
  end
  return declaration.ptr == "*" and "pointer" or "object"
end

function vyr.checkDeclared(declaration)
  local kind = vyr.kindOf(declaration)
  local name = vyr.plainType(declaration)
  if (kind == "object" or kind == "pointer") and not vyr.isDeclared[name] then
    vyr.fail("the type name '" .. name .. "' is used but not listed under types { }")
  end
end

-- Numbers and strings by reference come back as extra results.
function vyr.isInOut(declaration)
  return declaration.ret ~= nil and declaration.ret ~= ""
end

local function quoted(text)
  return '"' .. text .. '"'
end
vyr.quoted = quoted

-- The interpreter's state is an argument of the C++ function that the script does not pass.
function vyr.isPassed(declaration)
  return vyr.kindOf(declaration) ~= "state"
end

-- The expression that tests the value at a stack position; nil for values that are not tested.
function vyr.test(declaration, position)
  vyr.checkDeclared(declaration)
  local default = declaration.def ~= "" and 1 or 0
  local kind = vyr.kindOf(declaration)
  if kind == "value" then
    return nil
  end
  if kind == "object" then
    return string.format("vyrBinding::isReference(%s, %d, %s, %d, &tolua_err)", vyr.S, position,
      quoted(vyr.typeName(declaration)), default)
  elseif kind == "pointer" then
    return string.format("tolua_isusertype(%s, %d, %s, %d, &tolua_err)", vyr.S, position,
      quoted(vyr.typeName(declaration)), default)
  end
  local test = { number = "tolua_isnumber", boolean = "tolua_isboolean", string = "tolua_isstring", cstring = "tolua_isstring" }
  return string.format("%s(%s, %d, %d, &tolua_err)", test[kind], vyr.S, position, default)
end

-- The expression that converts the value at a stack position.
function vyr.convert(declaration, position)
  local kind = vyr.kindOf(declaration)
  local plain = vyr.plainType(declaration)
  local default = declaration.def
  if kind == "number" then
    return string.format("vyrBinding::toNumber<%s>(%s, %d, static_cast<lua_Number>(%s))", plain, vyr.S, position,
      default ~= "" and default or "0")
  elseif kind == "boolean" then
    return string.format("tolua_toboolean(%s, %d, %s) != 0", vyr.S, position, default ~= "" and default or "false")
  elseif kind == "string" then
    return string.format("%s(vyrBinding::toText(%s, %d, %s))", plain, vyr.S, position, default ~= "" and default or '""')
  elseif kind == "cstring" then
    return string.format("vyrBinding::toText(%s, %d, %s)", vyr.S, position, default ~= "" and default or '""')
  elseif kind == "value" then
    return tostring(position)
  elseif kind == "state" then
    return vyr.S
  end
  return string.format("static_cast<%s*>(tolua_tousertype(%s, %d, nullptr))", vyr.typeName(declaration), vyr.S, position)
end

-- The type of the local that holds a converted argument.
function vyr.localType(declaration)
  local kind = vyr.kindOf(declaration)
  if kind == "object" or kind == "pointer" then
    return vyr.typeName(declaration) .. "*"
  elseif kind == "cstring" then
    return "const char*"
  elseif kind == "boolean" then
    return "bool"
  elseif kind == "value" then
    return "const lua_Object"
  elseif kind == "state" then
    return "lua_State*"
  end
  return vyr.plainType(declaration)
end

-- The statement that pushes a basic value.
function vyr.pushBasic(kind, expression)
  if kind == "number" then
    return string.format("tolua_pushnumber(%s, static_cast<lua_Number>(%s));", vyr.S, expression)
  elseif kind == "boolean" then
    return string.format("tolua_pushboolean(%s, static_cast<int>(%s));", vyr.S, expression)
  elseif kind == "string" then
    return string.format("tolua_pushstring(%s, %s.c_str());", vyr.S, expression)
  elseif kind == "value" then
    return string.format("lua_pushvalue(%s, %s);", vyr.S, expression)
  end
  return string.format("tolua_pushstring(%s, %s);", vyr.S, expression)
end

-- Writes one line of the generated file.
function vyr.line(text)
  write(text .. "\n")
end
