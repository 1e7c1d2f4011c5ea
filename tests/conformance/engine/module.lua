-- What a table says about a module, row by row in the order of registration: its types, tables, classes and members.
local signature = require "signature"

local samples = require "samples"

local module = {}

local kOperators = { ["operator<"] = ".lt", ["operator=="] = ".eq", ["operator[]"] = ".geti", ["operator&[]"] = ".seti" }

-- Loads a table. Gives { name, entries (what the module registers), sequence (all calls of the runtime for that),
-- wrappers (by their places in the sequence, the names that the registered functions have), overloads, chains by path,
-- variables, constants }.
function module.load(name, path)
  local m = {
    name = name, entries = {}, sequence = {}, wrappers = {}, overloads = {}, chains = {}, variables = {}, classes = {},
    constants = 0,
  }
  local tables, class, open = {}, nil, {}
  local env = setmetatable({}, { __index = _G })

  local function call(kind, text)
    m.sequence[#m.sequence + 1] = table.concat(open, ".", 2) .. ": " .. kind .. " " .. text
  end

  local function entry(kind, text, ...)
    m.entries[#m.entries + 1] = table.concat(tables, ".") .. ": " .. kind .. " " .. text
    m.sequence[#m.sequence + 1] = m.entries[#m.entries]
    m.wrappers[#m.sequence] = { ... }
  end

  local function enter(name_)
    call("begin", name_)
    open[#open + 1] = name_
  end

  -- Closes what is open inside of `path`; the first that is open is the global table.
  local function leave(path_)
    while #open > #path_ + 1 do
      open[#open] = nil
      call("end", "")
    end
  end

  -- A wrapper's name: of the function `method` here, or of an accessor.
  local function wrapper(method) return ("tolua_vyrOSG_%s_%s_%s"):format(name, table.concat(tables, "_"), method) end
  local function accessor(verb, what) return ("tolua_%s_%s_%s"):format(verb, table.concat(tables, "__"), what) end

  local function place(luaName) return table.concat(tables, ".") .. "." .. luaName end

  local function add(overload, row, luaName)
    local path_ = place(luaName)
    local chain = m.chains[path_] or {}
    m.chains[path_] = chain
    overload.row, overload.chain, overload.path, overload.luaName = row, chain, path_, luaName
    overload.table = table.concat(tables, ".")
    overload.index = #chain
    overload.where = ("%s %s %02d"):format(name, path_, #chain)
    chain[#chain + 1] = overload
    m.overloads[#m.overloads + 1] = overload
    local form = overload.form and "new" or luaName:gsub("^%.", "_")
    entry("function", luaName, wrapper(("%s%02d%s"):format(form, overload.index, overload.form and overload.form ~= "new" and "_local" or "")))
    return overload
  end

  local function describe(row, isConstructor)
    local s = signature.parse(row[1])
    local native = s.name:match("operator.*$") or s.name:match("[^:]+$")
    local overload = {
      signature = s, parameters = s.parameters, result = s.result, native = row.native or native, errorName = native,
      namespace = tables[1], constructor = isConstructor,
    }
    if class then
      overload.class, overload.lineage, overload.classInfo = class.type, class.lineage, class
      overload.self = (isConstructor or s.static) and "table" or s.const and "const" or "plain"
    end
    return overload
  end

  local function asRow(row) return type(row) == "table" and row or { row } end

  -- Further sample objects: makers by name, and which of them a type gets.
  env.samples = samples.add

  -- The declared type names, in order.
  function env.types(list)
    call("open", "")
    for _, type in ipairs(list) do entry("usertype", type) end
    entry("module", "")
    enter("")
  end

  -- A namespace's table; the next one or class ends it.
  function env.namespace(text)
    tables, class = {}, nil
    leave(tables)
    entry("module", text)
    enter(text)
    tables = { text }
  end

  -- The global table itself, outside of all namespaces.
  function env.global()
    tables, class = {}, nil
    leave(tables)
  end

  -- class("StateSet", { type =, base = "", collector = nil | "drops" | "deletes", lineage = { further native bases } })
  function env.class(luaName, info)
    info = info or {}
    local outer = {}
    for part in luaName:gmatch("[^.]+") do outer[#outer + 1] = part end
    local last = table.remove(outer)
    tables = { tables[1] }
    for _, part in ipairs(outer) do tables[#tables + 1] = part end
    leave(tables)
    local typeName = info.type or tables[1] .. "::" .. luaName:gsub("%.", "::")
    entry("class", ("%s type=%s base=%s%s"):format(last, typeName, info.base or "", info.collector and " collector" or ""),
      info.collector and "tolua_collect_" .. typeName:gsub("::", "__"))
    enter(last)
    tables[#tables + 1] = last
    class = { type = typeName, collector = info.collector, lineage = { typeName }, path = table.concat(tables, ".") }
    if info.base and info.base ~= "" then class.lineage[2] = info.base:gsub("^virtual ", "") end
    for _, base in ipairs(info.lineage or {}) do class.lineage[#class.lineage + 1] = base end
    m.classes[#m.classes + 1] = class
  end

  -- Back from a class to its namespace or, with a name, to a class that was left for one inside of it.
  function env.back(luaName)
    tables = { tables[1] }
    class = nil
    for part in (luaName or ""):gmatch("[^.]+") do tables[#tables + 1] = part end
    leave(tables)
    for _, known in ipairs(m.classes) do
      if known.path == table.concat(tables, ".") then class = known end
    end
  end

  -- constants { "OFF", 0, "ON", 1 }
  function env.constants(list)
    for index = 1, #list, 2 do
      entry("constant", ("%s %.17g"):format(list[index], list[index + 1]))
      m.constants = m.constants + 1
    end
  end

  -- A constructor's three names. The row is a declaration, or a table with it and columns.
  function env.constructor(row)
    row = asRow(row)
    for _, form in ipairs { "new", "new_local", ".call" } do
      local overload = describe(row, true)
      overload.form, overload.errorName = form, "new"
      add(overload, row, form)
    end
  end

  -- A function of the class, or of the namespace outside of one.
  function env.row(row)
    row = asRow(row)
    local overload = describe(row, false)
    local luaName = row.name or kOperators[overload.native] or overload.native
    overload.errorName = luaName
    if overload.native == "operator&[]" then overload.native = "operator&[]" end
    add(overload, row, luaName)
  end

  -- variable("double distance", { readOnly =, static =, is = })
  function env.variable(declaration, info)
    info = info or {}
    local p = signature.parse("void f(" .. declaration .. ")").parameters[1]
    local field = (info.static and p.text:gsub(" ", "_") .. "_" or "") .. p.name .. (p.pointer and "_ptr" or "")
    entry("variable", p.name .. (info.readOnly and " read-only" or ""), accessor("get", field),
      not info.readOnly and accessor("set", field) or nil)
    m.variables[#m.variables + 1] = {
      name = p.name, type = p, info = info, class = class, path = place(p.name), where = name .. " " .. place(p.name),
    }
  end

  -- array("double _v", 3)
  function env.array(declaration, size)
    local p = signature.parse("void f(" .. declaration .. ")").parameters[1]
    entry("array", p.name, (wrapper(p.name):gsub("^tolua", "tolua_get")), (wrapper(p.name):gsub("^tolua", "tolua_set")))
    m.variables[#m.variables + 1] = {
      name = p.name, type = p, size = size, class = class, path = place(p.name), where = name .. " " .. place(p.name), info = {},
    }
  end

  -- The helper functions and enumerations that modules share.
  function env.shared()
    local chunk = assert(loadfile(path .. "SharedMath.lua"))
    setfenv(chunk, env)()
  end

  local chunk = assert(loadfile(path .. name .. ".lua"))
  setfenv(chunk, env)()
  leave({})
  open = {}
  call("end", "")
  return m
end

-- An entry as the runtime saw it, in the words of `entries`.
function module.describe(e)
  local text = e.name
  if e.kind == "class" then text = ("%s type=%s base=%s%s"):format(e.name, e.type, e.base, e.call and " collector" or "") end
  if e.kind == "constant" then text = ("%s %.17g"):format(e.name, e.value) end
  if (e.kind == "variable" or e.kind == "array") and not e.set then text = text .. " read-only" end
  return e.table .. ": " .. e.kind .. " " .. text
end

return module
