-- What a state holds after the modules of some tables were opened, whatever their order.
local module = require "module"

local union = {}

local function find(path)
  local value = _G
  for part in path:gmatch("[^.]+") do value = type(value) == "table" and rawget(value, part) end
  return value
end

-- Names that the runtime keeps in its tables for itself.
local function internal(key) return type(key) ~= "string" or key:find("^%.") or key:find("^__") or key:find("^tolua_") end

-- The first difference between the state and the union of the tables, as text; nil if there is none.
function union.compare(names, path)
  local kinds, values, collectors, bases, tables = {}, {}, {}, {}, {}
  for _, name in ipairs(names) do
    for _, text in ipairs(module.load(name, path).entries) do
      local where, kind, rest = text:match("^(.-): (%a+) ?(.*)$")
      local entry = rest:match("^%S+")
      local full = where == "" and entry or where .. "." .. tostring(entry)
      if kind == "function" or kind == "constant" or kind == "class" or kind == "module" and entry then
        kinds[full] = kind
        tables[where] = true
        if kind == "constant" then values[full] = tonumber(rest:match("%S+$")) end
        if kind == "class" or kind == "module" then tables[full] = true end
        if kind == "class" then
          collectors[full] = collectors[full] or rest:find(" collector$") ~= nil
          local base = rest:match(" base=(.-) collector$") or rest:match(" base=(.*)$")
          if base ~= "" then bases[full] = base end
        end
      end
    end
  end
  for full, kind in pairs(kinds) do
    local where, name = full:match("^(.*)%.(%.?[^.]+)$")
    local owner = where and find(where) or _G
    -- ".call" and the operators begin with a point of their own.
    if where and where:sub(-1) == "." then owner, name = find(where:sub(1, -2)), "." .. name end
    local value = owner and rawget(owner, name or full)
    if kind == "function" and type(value) ~= "function" then return full .. " is no function" end
    if kind == "constant" and union.constant(owner, name or full) ~= values[full] then
      return ("%s is %s, not %s"):format(full, tostring(union.constant(owner, name or full)), tostring(values[full]))
    end
    if kind == "class" then
      if type(value) ~= "table" then return full .. " is no class" end
      if (rawget(value, ".collector") ~= nil) ~= collectors[full] then return full .. ": the collector is wrong" end
      local base = bases[full] and debug.getregistry()[bases[full]]
      if bases[full] and (not base or getmetatable(value) ~= base) then return full .. " has another base than " .. bases[full] end
    end
  end
  for where in pairs(tables) do
    local owner = where ~= "" and find(where)
    for key in pairs(owner or {}) do
      if not internal(key) and not kinds[where .. "." .. key] then return where .. "." .. key .. " is in no table" end
    end
  end
  for _, space in ipairs { "vyr", "vyrOSG", "vyrSDK", "vyrModel", "osg" } do
    if _G[space] ~= nil and not kinds[space] then return "the table " .. space .. " is there" end
  end
end

-- A constant's value: the runtime may keep it as a field or behind the class's own access.
function union.constant(owner, name) return owner and (rawget(owner, name) or owner[name]) end

return union
