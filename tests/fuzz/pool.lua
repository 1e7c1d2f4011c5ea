-- The objects that a fuzz run has made so far, by class.
local random = require "random"

local pool = {}
local kLimit = 24 -- objects of a class; a new one takes a random place

local byType, all, bases

function pool.clear(classBases)
  byType, all, bases = {}, {}, classBases or bases
end

local function put(type, object)
  local list = byType[type]
  if not list then
    list = {}
    byType[type] = list
  end
  list[#list < kLimit and #list + 1 or random.integer(1, kLimit)] = object
end

-- Keeps an object; other values are passed over.
function pool.add(object)
  if type(object) ~= "userdata" then return end
  local name = tolua.type(object):gsub("^const ", "")
  if #all < 10 * kLimit then all[#all + 1] = object else all[random.integer(1, #all)] = object end
  local steps = 0
  while name and steps < 20 do
    put(name, object)
    name = bases[name]
    steps = steps + 1
  end
end

-- An object of a class or of one derived from it, dead ones included; nil where there is none.
function pool.get(type)
  local list = byType[type]
  return list and random.pick(list)
end

-- Any object; nil where there is none.
function pool.any()
  return random.pick(all)
end

return pool
