-- What the process takes from the machine: memory and handles. Linux only.
local process = {}

local function firstLine(file)
  local stream = assert(io.open(file))
  local line = stream:read("*l")
  stream:close()
  return line
end

-- Resident memory in KiB; pages have 4 KiB.
function process.residentKiB()
  return 4 * tonumber(firstLine("/proc/self/statm"):match("^%d+ (%d+)"))
end

-- Open files, sockets and devices: the least of three counts, for garbage that is a handle goes when it is collected.
function process.handles()
  local id = firstLine("/proc/self/stat"):match("^%d+")
  local least = math.huge
  for _ = 1, 3 do
    collectgarbage()
    local listing = assert(io.popen("ls /proc/" .. id .. "/fd | wc -l"))
    least = math.min(least, listing:read("*n"))
    listing:close()
  end
  return least
end

-- The growth of a list of samples: the median of its last quarter less that of its second one. What a run builds up once
-- at its start, such as caches, is in neither.
function process.growth(samples)
  local function median(first, last)
    local part = {}
    for index = first, last do part[#part + 1] = samples[index] end
    table.sort(part)
    return part[math.ceil(#part / 2)]
  end
  local quarter = math.floor(#samples / 4)
  return median(#samples - quarter + 1, #samples) - median(quarter + 1, 2 * quarter)
end

-- Reads "--name value" options into a table of defaults; values that look like numbers become numbers.
function process.options(defaults)
  for index = 1, #arg - 1, 2 do
    local name = arg[index]:match("^%-%-(%a+)$")
    if defaults[name] == nil then error("unknown option " .. arg[index]) end
    defaults[name] = tonumber(arg[index + 1]) or arg[index + 1]
  end
  return defaults
end

return process
