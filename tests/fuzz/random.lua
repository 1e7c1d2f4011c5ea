-- Random numbers that are the same on every machine: the runtime's own depend on the C library.
local random = {}

local kModulus = 2147483647
local state = 1

-- Starts the sequence of a seed; equal seeds give equal sequences.
function random.seed(seed)
  state = math.floor(seed) % (kModulus - 1) + 1
  for _ = 1, 10 do random.unit() end
end

-- A number in [0, 1). Source: Park and Miller, Random number generators: good ones are hard to find, CACM 31 (1988),
-- with the multiplier 48271 of their 1993 answer; every product is below 2^53 and so exact.
function random.unit()
  state = state * 48271 % kModulus
  return (state - 1) / (kModulus - 1)
end

-- A whole number in first..last.
function random.integer(first, last)
  return first + math.floor(random.unit() * (last - first + 1))
end

-- True with a probability.
function random.chance(probability)
  return random.unit() < probability
end

-- One element of a list; nil where it is empty.
function random.pick(list)
  return list[random.integer(1, #list)]
end

return random
