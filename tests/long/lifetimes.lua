-- Objects of every class with a constructor that come and go: memory and handles stay the same.
--
--   vyr --gl=none lifetimes.lua [--count N] [--seconds S] [--only PATTERN] [--csv FILE]
--
-- Makes N objects of each class, or as many as S seconds of processor time allow. FILE receives the resident memory at 20
-- points of each class's life.
local here = debug.getinfo(1, "S").source:match("^@(.*/)") or "./"
package.path = here .. "?.lua;" .. package.path
local process = require "process"
local make = dofile(here .. "../binding/constructors.lua")

local kPoints = 20
-- Fewer bytes than the smallest object has; growth below this many KiB is the allocator's.
local kBytesAnObject = 8
local kAllocatorKiB = 2048

local options = process.options { count = 1000, seconds = 1e9, only = "", csv = "/dev/null" }
local names = {}
for name in pairs(make) do
  if name:find(options.only) then names[#names + 1] = name end
end
table.sort(names)

local handles = process.handles()
local csv = assert(io.open(options.csv, "w"))
csv:write("class,objects,resident_kib\n")
local failures, total, complete = 0, 0, 0

for _, name in ipairs(names) do
  local create, made, samples = make[name], 0, {}
  for index = 1, math.min(options.count / 10, 2000) do
    create()
    if index % 200 == 0 then collectgarbage() end
  end
  collectgarbage()
  collectgarbage()
  local started = os.clock()
  for point = 1, kPoints do
    local target = options.count * point / kPoints
    while made < target and os.clock() - started < options.seconds * point / kPoints do
      create()
      made = made + 1
      if made % 200 == 0 then collectgarbage() end
    end
    collectgarbage()
    collectgarbage()
    samples[point] = process.residentKiB()
    csv:write(name, ",", made, ",", samples[point], "\n")
  end
  local growth = process.growth(samples)
  local isFlat = growth <= math.max(kAllocatorKiB, kBytesAnObject * made / 1024)
  print(string.format("%-45s %8d objects, %7d KiB, growth %5d KiB%s", name, made, samples[kPoints], growth,
    isFlat and "" or "  NOT FLAT"))
  io.stdout:flush()
  failures = failures + (isFlat and 0 or 1)
  complete = complete + (made >= options.count and 1 or 0)
  total = total + made
end
csv:close()

local keptHandles = process.handles() - handles
print(string.format("%d objects of %d classes, %d of them in full; %d grew; %d handles stayed", total, #names, complete,
  failures, keptHandles))
os.exit(failures == 0 and keptHandles <= 0 and 0 or 1)
