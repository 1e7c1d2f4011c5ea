-- References and ends of the objects that a constructor makes. `fail(overload, text)` takes what is wrong.
local lifetimes = {}

local function pack(...) return { ... }, select("#", ...) end

-- Counts and ends of objects that a constructor made.
function lifetimes.check(fail, overload, object, all, count)
  local class = overload.classInfo
  local references = native.count(class.type, object)
  local local_ = overload.form ~= "new"
  if not references then
    if local_ and class.collector == "deletes" then lifetimes.deleted(fail, overload, all, count, 1) end
    return
  end
  local wanted = local_ and class.collector == "drops" and 1 or 0
  if overload.row.references then wanted = wanted + overload.row.references end
  if references ~= wanted then
    fail(overload, ("%d references, not %d"):format(references, wanted))
  end
  if not local_ and references == 0 and not overload.row.keep then
    -- Made by "new": somebody has to let go of it.
    local watch, address = native.observe(class.type, object), native.address(object)
    native.hold(class.type, object)
    native.letGo(class.type, address)
    if not native.gone(watch) then fail(overload, "the last reference went and the object stayed") end
  end
  if local_ and class.collector == "drops" then
    if overload.row.references then
      lifetimes.collectedAndHeld(fail, overload, all, count)
    else
      lifetimes.collected(fail, overload, all, count)
    end
  end
  -- Without a collector the runtime releases memory and destroys nothing.
  if local_ and not class.collector and references == 0 then lifetimes.deleted(fail, overload, all, count, 0) end
end

-- An object that others hold from its construction on outlives its collection and loses one reference.
function lifetimes.collectedAndHeld(fail, overload, all, count)
  local class = overload.classInfo
  local object = overload.call(unpack(all, 1, count))
  local address, watch = native.address(object), native.observe(class.type, object)
  object = nil
  collectgarbage()
  collectgarbage()
  if native.gone(watch) then return fail(overload, "collected under somebody who holds it") end
  if native.countAt(class.type, address) ~= overload.row.references then
    fail(overload, "the collector did not drop one reference")
  end
end

-- A class table that is called gives one value, the object, whatever the constructor pushes back.
function lifetimes.called(fail, overload, all, count)
  local arguments_ = {}
  for index = 2, count do arguments_[index - 1] = all[index] end
  local results, resultCount = pack(pcall(overload.classTable, unpack(arguments_, 1, count - 1)))
  if not results[1] or resultCount ~= 2 or type(results[2]) ~= "userdata" then
    return fail(overload, "calling the class gives " .. tostring(results[2]) .. " and " .. (resultCount - 2) .. " more")
  end
  if tolua.type(results[2]) ~= overload.class or not native.owned(results[2]) then
    fail(overload, "calling the class gives a " .. tolua.type(results[2]))
  end
end

-- A collector that deletes frees the object, once.
function lifetimes.deleted(fail, overload, all, count, wanted)
  local object = overload.call(unpack(all, 1, count))
  native.countFrees(object)
  object = nil
  collectgarbage()
  collectgarbage()
  local frees = native.frees()
  if frees ~= wanted then fail(overload, ("collected, and freed %d times"):format(frees)) end
end

-- The three ways in which a collector may find an object.
function lifetimes.collected(fail, overload, all, count)
  local class = overload.classInfo
  local function make()
    local object = overload.call(unpack(all, 1, count))
    return object, native.address(object), native.observe(class.type, object)
  end
  local function collect()
    collectgarbage()
    collectgarbage()
  end
  local object, address, watch = make()
  object = nil
  collect()
  if not native.gone(watch) then fail(overload, "collected, and the object stayed") end
  object, address, watch = make()
  native.hold(class.type, object)
  object = nil
  collect()
  if native.gone(watch) then return fail(overload, "collected under somebody who holds it") end
  if native.countAt(class.type, address) ~= 1 then fail(overload, "the collector did not drop one reference") end
  native.letGo(class.type, address)
  if not native.gone(watch) then fail(overload, "let go, and the object stayed") end
  object, address, watch = make()
  native.forget(class.type, address)
  object = nil
  collect()
  if native.gone(watch) then return fail(overload, "a collector deleted an object without references") end
  if native.countAt(class.type, address) ~= 0 then fail(overload, "a collector touched the count of an object without references") end
end

return lifetimes
