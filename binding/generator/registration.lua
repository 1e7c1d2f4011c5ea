-- Writes the collectors, the order of registration and the exported open functions.
local S = vyr.S
local line = vyr.line
local quoted = vyr.quoted

local function hasConstructor(class)
  return class._new and not (class.flags and class.flags.pure_virtual)
end
vyr.hasConstructor = hasConstructor

local function collectorName(class)
  return "tolua_collect_" .. (string.gsub(class.type, "[<>:, %*]", "_"))
end

local function eachClass(container, visit)
  for i = 1, container.n do
    local member = container[i]
    if member.classtype then
      if member.classtype == "class" then
        visit(member)
      end
      eachClass(member, visit)
    end
  end
end

local function writeCollector(class)
  local explicit = not class.vyrCollected
  if explicit then
    line("#ifdef VYROSG_EXPLICIT_COLLECTORS")
  end
  line(string.format("static int %s(lua_State* %s)", collectorName(class), S))
  line("{")
  line(string.format("  vyrBinding::release(static_cast<%s*>(tolua_tousertype(%s, 1, nullptr)));", class.type, S))
  line("  return 0;")
  line("}")
  if explicit then
    line("#endif")
  end
  line("")
end

function classPackage:preamble()
  line("// Lua binding " .. self.name .. ", generated from " .. vyr.source .. "; edit that file.")
  line("#include <vyrBinding/Support.h>")
  line("")
  for i = 1, self.n do
    self[i]:preamble()
  end
  line("")
  line("VYR_BINDING_EXPORT int tolua_" .. self.name .. "_open(lua_State* " .. S .. ");")
  line("VYR_BINDING_EXPORT int luaopen_" .. self.name .. "(lua_State* " .. S .. ");")
  line("")
  eachClass(self, function(class)
    if class.vyrCollected or hasConstructor(class) then
      writeCollector(class)
    end
  end)
  line("static void tolua_reg_types(lua_State* " .. S .. ")")
  line("{")
  for _, name in ipairs(vyr.types) do
    line(string.format("  vyrBinding::declareType(%s, %s);", S, quoted(name)))
  end
  line("}")
  line("")
end

function classPackage:register()
  push(self)
  line("int tolua_" .. self.name .. "_open(lua_State* " .. S .. ")")
  line("{")
  line("  tolua_open(" .. S .. ");")
  line("  tolua_reg_types(" .. S .. ");")
  line("  tolua_module(" .. S .. ", nullptr, 0);")
  line("  tolua_beginmodule(" .. S .. ", nullptr);")
  for i = 1, self.n do
    self[i]:register("  ")
  end
  line("  tolua_endmodule(" .. S .. ");")
  line("  return 1;")
  line("}")
  line("")
  line("int luaopen_" .. self.name .. "(lua_State* " .. S .. ")")
  line("{")
  line("  return tolua_" .. self.name .. "_open(" .. S .. ");")
  line("}")
  pop()
end

function classNamespace:register(indent)
  push(self)
  line(string.format("%stolua_module(%s, %s, 0);", indent, S, quoted(self.name)))
  line(string.format("%stolua_beginmodule(%s, %s);", indent, S, quoted(self.name)))
  for i = 1, self.n do
    self[i]:register(indent .. "  ")
  end
  line(string.format("%stolua_endmodule(%s);", indent, S))
  pop()
end

function classClass:register(indent)
  if not vyr.isDeclared[self.type] then
    vyr.fail("the class '" .. self.type .. "' is not listed under types { }")
  end
  -- The runtime would leave such a class table without a metatable: no calls, no members.
  if self.btype ~= "" and not vyr.isDeclared[self.btype] then
    vyr.fail("the base '" .. self.btype .. "' of '" .. self.type .. "' is not listed under types { }")
  end
  push(self)
  local arguments = string.format("%s, %s, %s, %s", S, quoted(self.lname), quoted(self.type), quoted(self.btype))
  if self.vyrCollected then
    line(string.format("%stolua_cclass(%s, %s);", indent, arguments, collectorName(self)))
  elseif hasConstructor(self) then
    line("#ifdef VYROSG_EXPLICIT_COLLECTORS")
    line(string.format("%stolua_cclass(%s, %s);", indent, arguments, collectorName(self)))
    line("#else")
    line(string.format("%stolua_cclass(%s, nullptr);", indent, arguments))
    line("#endif")
  else
    line(string.format("%stolua_cclass(%s, nullptr);", indent, arguments))
  end
  line(string.format("%stolua_beginmodule(%s, %s);", indent, S, quoted(self.lname)))
  for i = 1, self.n do
    self[i]:register(indent .. "  ")
  end
  line(string.format("%stolua_endmodule(%s);", indent, S))
  pop()
end

function classEnumerate:register(indent)
  local namespace = getnamespace(classContainer.curr)
  for i = 1, self.n do
    local name = namespace .. self[i]
    local value = self.vyrValues and self.vyrValues[self[i]]
    if value then
      line(string.format('%sstatic_assert(static_cast<lua_Number>(%s) == (%s), "%s has another value");', indent, name, value, name))
    end
    line(string.format('%stolua_constant(%s, "%s", static_cast<lua_Number>(%s));', indent, S, self.lnames[i], name))
  end
end

function classDefine:register(indent)
  if self.vyrValue and self.vyrValue ~= self.name then
    line(string.format('%sstatic_assert(%s == (%s), "%s has another value");', indent, self.name, self.vyrValue, self.name))
  end
  line(string.format('%stolua_constant(%s, "%s", static_cast<lua_Number>(%s));', indent, S, self.lname, self.name))
end

-- Runs once everything is written.
function post_output_hook(package)
  vyr.writeManifest(package)
end
