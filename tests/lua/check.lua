-- The assertions of the Lua tests, and the runner that calls every function of a test file whose name starts with "test".
local check = {}

local function fail(level, text, message)
  error((message and (message .. ": ") or "") .. text, level + 1)
end

-- A value as it should appear in a message.
local function show(value)
  return type(value) == "string" and string.format("%q", value) or tostring(value)
end

function check.isTrue(value, message)
  if value ~= true then fail(2, "expected true, got " .. show(value), message) end
end

function check.isFalse(value, message)
  if value ~= false then fail(2, "expected false, got " .. show(value), message) end
end

function check.isNil(value, message)
  if value ~= nil then fail(2, "expected nil, got " .. show(value), message) end
end

function check.notNil(value, message)
  if value == nil then fail(2, "expected a value, got nil", message) end
end

function check.equal(actual, expected, message)
  if not (actual == expected) then fail(2, "expected " .. show(expected) .. ", got " .. show(actual), message) end
end

function check.notEqual(actual, other, message)
  if actual == other then fail(2, "expected anything but " .. show(other), message) end
end

-- Numbers that may differ by rounding; the tolerance is absolute and has to be given.
function check.near(actual, expected, tolerance, message)
  if type(actual) ~= "number" or not (math.abs(actual - expected) <= tolerance) then
    fail(2, "expected " .. show(expected) .. " within " .. show(tolerance) .. ", got " .. show(actual), message)
  end
end

-- A vector, component by component: check.vector(v, {1, 2, 3}, 1e-12).
function check.vector(actual, expected, tolerance, message)
  for index, name in ipairs({ "x", "y", "z", "w" }) do
    if expected[index] == nil then break end
    if not (math.abs(actual[name] - expected[index]) <= (tolerance or 0)) then
      fail(2, name .. ": expected " .. show(expected[index]) .. ", got " .. show(actual[name]), message)
    end
  end
end

-- Calls a function that must raise an error whose text holds the given plain text; returns the text.
function check.raises(text, fn, ...)
  local ok, message = pcall(fn, ...)
  if ok then fail(2, "expected an error holding " .. show(text)) end
  if not string.find(tostring(message), text, 1, true) then
    fail(2, "expected an error holding " .. show(text) .. ", got " .. show(tostring(message)))
  end
  return message
end

-- Runs every global function whose name starts with "test", in the order of the names, and ends the program with
-- status 1 when one failed or when there was none.
function check.run()
  local names = {}
  for name, value in pairs(_G) do
    if type(name) == "string" and name:find("^test") and type(value) == "function" then names[#names + 1] = name end
  end
  table.sort(names)
  local failed = 0
  for _, name in ipairs(names) do
    local ok, message = xpcall(_G[name], debug.traceback)
    collectgarbage()
    print((ok and "ok      " or "FAILED  ") .. name)
    if not ok then
      failed = failed + 1
      print(message)
    end
  end
  print(string.format("%d of %d passed", #names - failed, #names))
  if failed > 0 or #names == 0 then os.exit(1) end
end

return check
