-- Makes `count` objects of each class, three times, and calls report(name, growth) with the least growth of the memory in
-- use; tables that change their sizes now and then must not count.
local inUse, count, report = ...
local make = dofile(debug.getinfo(1, "S").source:match("^@(.*/)") .. "constructors.lua")
for name, create in pairs(make) do
  local least
  for round = 0, 3 do
    local before = inUse()
    for index = 1, round == 0 and count / 10 or count do
      create()
      if index % 500 == 0 then collectgarbage() end
    end
    collectgarbage()
    collectgarbage()
    local growth = inUse() - before
    if round > 0 and not (least and least < growth) then least = growth end
  end
  report(name, least)
end
