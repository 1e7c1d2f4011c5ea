-- Writes a module's manifest: its whole interface as plain text, one line an entry, in registration order.
local lines

local function add(kind, text)
  table.insert(lines, string.format("%-9s %s", kind, text))
end

local kindWord = { number = "number", boolean = "boolean", string = "string", cstring = "string", value = "value" }

local function describeArgument(argument)
  local kind = vyr.kindOf(argument)
  local text
  if kind == "value" then
    return "value " .. argument.name
  end
  if kind == "object" then
    text = vyr.typeName(argument) .. (argument.ptr == "&" and "&" or "")
  elseif kind == "pointer" then
    text = vyr.typeName(argument) .. "*"
  else
    local native = (vyr.isConst(argument) and "const " or "") .. vyr.plainType(argument) .. (vyr.isInOut(argument) and "&" or "")
    text = kindWord[kind] .. " " .. native
  end
  if argument.name and argument.name ~= "" and not string.find(argument.name, "^tolua_var_") then
    text = text .. " " .. argument.name
  end
  if argument.def and argument.def ~= "" then
    text = text .. " = " .. argument.def
  end
  return text
end

local function describeResult(f, ownership)
  local kind = vyr.kindOf(f)
  if vyr.isConstructor(f) then
    return f.parent.type .. " (" .. ownership .. ")"
  elseif kind == "void" or f.kind == "&[]" then
    return nil
  elseif kind == "object" then
    return vyr.typeName(f) .. (f.ptr == "&" and "& (view)" or " (owned)")
  elseif kind == "pointer" then
    return vyr.typeName(f) .. (f.vyrOwned and "* (owned)" or "* (borrowed)")
  end
  return kindWord[kind]
end

local function describeFunction(f, path, luaName, ownership)
  local arguments, results = {}, {}
  if vyr.hasSelf(f) then
    table.insert(arguments, (f.const ~= "" and "const " or "") .. "self")
  elseif f:inclass() then
    table.insert(arguments, "class")
  end
  if f.name ~= "delete" then
    table.insert(results, describeResult(f, ownership))
  end
  for _, argument in ipairs(vyr.arguments(f)) do
    if vyr.isPassed(argument) then
      table.insert(arguments, describeArgument(argument))
    end
    if vyr.isInOut(argument) then
      table.insert(results, kindWord[vyr.kindOf(argument)] .. (argument.name and " " .. argument.name or ""))
    end
  end
  local guarded = f.parent.vyrGuards and f.parent.vyrGuards[f.lname] and " guarded" or ""
  add("function", string.format("%s%s %s (%s) -> %s%s", path, luaName, string.sub(f.cname, -2), table.concat(arguments, ", "),
    #results > 0 and table.concat(results, ", ") or "nothing", guarded))
end

local visit

local function describeClass(class, path)
  local constructed = vyr.hasConstructor(class)
  local collector = class.vyrCollected and "yes" or (constructed and "explicit-mode" or "no")
  add("class", string.format('%s%s type "%s" base "%s" collector %s', path, class.lname, class.type, class.btype, collector))
  for i = 1, class.n do
    visit(class[i], path .. class.lname .. ".", class)
  end
end

function visit(member, path, container)
  local meta = getmetatable(member)
  if member.classtype == "namespace" then
    add("table", path .. member.name)
    for i = 1, member.n do
      visit(member[i], path .. member.name .. ".", member)
    end
  elseif member.classtype == "class" then
    describeClass(member, path)
  elseif meta == classFunction or meta == classOperator then
    if vyr.isConstructor(member) then
      describeFunction(member, path, "new", "not owned")
      describeFunction(member, path, "new_local", "owned")
      describeFunction(member, path, ".call", "owned")
    else
      describeFunction(member, path, member.lname, "")
    end
  elseif meta == classEnumerate then
    for i = 1, member.n do
      add("constant", string.format("%s%s = %s", path, member.lnames[i], member.vyrValues[member[i]] or "?"))
    end
  elseif meta == classDefine then
    add("constant", path .. member.lname .. " = " .. (member.vyrValue or member.name))
  elseif meta == classArray then
    add("array", string.format("%s%s %s[%s]", path, member.lname, vyr.plainType(member), member.dim))
  elseif meta == classVariable then
    local access = vyr.isReadOnlyVariable(member) and "read-only" or "read-write"
    local kind = vyr.kindOf(member)
    local text = (kind == "pointer" and vyr.typeName(member) .. "*") or (kind == "object" and vyr.typeName(member))
      or (kindWord[kind] .. " " .. vyr.plainType(member))
    add("variable", string.format("%s%s %s %s%s", path, member.lname, text, access, vyr.isStaticVariable(member) and " static" or ""))
  end
end

function vyr.writeManifest(package)
  if not vyr.manifestFile then
    return
  end
  lines = {}
  add("module", package.name)
  for _, name in ipairs(vyr.types) do
    add("type", name)
  end
  for i = 1, package.n do
    visit(package[i], "", package)
  end
  local file, message = io.open(vyr.manifestFile, "w")
  if not file then
    vyr.fail(message)
  end
  file:write(table.concat(lines, "\n"), "\n")
  file:close()
end
