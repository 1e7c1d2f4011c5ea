-- The live interface of all open plugins: its functions and classes as the interpreter has them, with the argument
-- kinds that the manifests know.
local interface = {}

-- Tables of the interpreter itself, and the runtime's own: casting an object to another class by its name is a promise
-- of the script that nothing can check.
local kNotOurs = {
  _G = true, package = true, coroutine = true, table = true, string = true, math = true, io = true, os = true,
  debug = true, tolua = true, arg = true, jit = true, bit = true,
}

-- "const vyr::Vec3& eye" -> what a caller has to give.
local function parseArgument(text)
  local isOptional = text:find(" = ", 1, true) ~= nil
  text = text:gsub(" = .*", "")
  local basic = text:match("^(number) ") or text:match("^(string) ") or text:match("^(boolean) ") or text:match("^(value) ")
  if basic then
    return { kind = basic, optional = isOptional, integer = text:find("int") ~= nil or text:find("size_t") ~= nil
        or text:find("unsigned") ~= nil }
  end
  local class = text:gsub("^const ", ""):match("^([%w_:<>]+)")
  return { kind = "object", class = class, nullable = text:find("%*") ~= nil, optional = isOptional }
end

-- Commas inside of default values, such as "vyr::Vec3(0, 0, 1)", separate nothing.
local function splitArguments(text)
  local parts, depth, part = {}, 0, ""
  for character in text:gmatch(".") do
    if character == "(" or character == "<" then depth = depth + 1 end
    if character == ")" or character == ">" then depth = depth - 1 end
    if character == "," and depth == 0 then
      parts[#parts + 1] = part
      part = ""
    elseif not (part == "" and character == " ") then
      part = part .. character
    end
  end
  if part ~= "" then parts[#parts + 1] = part end
  return parts
end

local function readManifest(file, found)
  local stream = assert(io.open(file))
  for line in stream:lines() do
    local name, arguments = line:match("^function%s+(%S+) %d+ (%b())")
    if name then
      local signature = { arguments = {} }
      for _, part in ipairs(splitArguments(arguments:sub(2, -2))) do
        if part == "self" or part == "const self" or part == "class" then
          signature.receiver = part == "class" and "class" or "self"
        else
          signature.arguments[#signature.arguments + 1] = parseArgument(part)
        end
      end
      found.signatures[name] = found.signatures[name] or {}
      table.insert(found.signatures[name], signature)
    end
    local path, type, base = line:match('^class%s+(%S+) type "([^"]*)" base "([^"]*)"')
    if path then
      found.types[path] = type
      found.paths[type] = path
      if base ~= "" then found.bases[type] = base end
    end
    local field, kind = line:match("^variable%s+(%S+) (%S+)")
    if field then
      found.fields[#found.fields + 1] = { class = field:match("^(.*)%.[^.]*$"), name = field:match("([^.]*)$"),
                                          argument = parseArgument(line:match("^variable%s+%S+ (.*) read")) }
    end
    local array = line:match("^array%s+(%S+)")
    if array then found.arrays[#found.arrays + 1] = { class = array:match("^(.*)%.[^.]*$"), name = array:match("([^.]*)$") } end
  end
  stream:close()
end

local function sortedKeys(from)
  local keys = {}
  for key in pairs(from) do
    if type(key) == "string" then keys[#keys + 1] = key end
  end
  table.sort(keys)
  return keys
end

local function walk(path, from, found, seen)
  if seen[from] then return end
  seen[from] = true
  for _, key in ipairs(sortedKeys(from)) do
    local value = rawget(from, key)
    local name = path .. "." .. key
    if type(value) == "function" then
      -- Accessors (".get", ".set" and the events of metatables) are reached as a script reaches them, by using objects.
      if not key:find("^%.") and not key:find("^__") or key == ".call" or key == "__tostring" then
        found.functions[#found.functions + 1] = { name = name, key = key, owner = from, path = path, call = value }
      end
    elseif type(value) == "table" and not key:find("^%.") and not key:find("^__") and not key:find("^tolua") then
      found.tables[#found.tables + 1] = { path = name, value = value }
      walk(name, value, found, seen)
    end
  end
end

-- Reads the manifests in a directory and walks the tables that are there now.
-- Returns functions, tables, fields and arrays (lists), signatures (by name), types and paths (of classes), and bases.
function interface.read(directory)
  local found = { functions = {}, tables = {}, fields = {}, arrays = {}, signatures = {}, types = {}, paths = {}, bases = {} }
  local listing = assert(io.popen("find '" .. directory .. "' -name '*.txt' | sort"))
  for file in listing:lines() do readManifest(file, found) end
  listing:close()
  local seen = {}
  for _, key in ipairs(sortedKeys(_G)) do
    local value = rawget(_G, key)
    if type(value) == "table" and not kNotOurs[key] then
      found.tables[#found.tables + 1] = { path = key, value = value }
      walk(key, value, found, seen)
    end
  end
  for _, entry in ipairs(found.tables) do entry.type = found.types[entry.path] end
  return found
end

return interface
