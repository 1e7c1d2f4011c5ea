-- Argument parsers made from tables.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

function testReadsTheTableOfTheScript()
  local parser = vyrIO.ArgumentParser({ [0] = "scene.lua", "--grid", "--speed", "2.5", "file.obj", 7 })
  check.equal(parser:getProgramName(), "scene.lua")
  check.equal(parser:getNumArguments(), 5)
  check.equal(parser:getArgument(4), "7")
  check.equal(parser:getArgument(99), "")
  check.isTrue(parser:has("--grid"))
  check.isTrue(parser:readFlag("--grid"))
  check.isFalse(parser:readFlag("--grid"))
  check.equal(parser:readNumber("--speed"), 2.5)
  check.equal(table.concat(parser:getPositional(), " "), "file.obj 7")
end

function testFallbacks()
  local parser = vyrIO.ArgumentParser({ "--name=box", "--other" })
  check.equal(parser:readString("--name", "none"), "box")
  check.equal(parser:readString("--name", "none"), "none")
  check.equal(parser:readNumber("--size", 3), 3)
  check.isNil(parser:readNumber("--size"))
  check.equal(parser:getUnknown()[1], "--other")
end

function testNoTableMeansNoArguments()
  check.equal(vyrIO.ArgumentParser():getNumArguments(), 0)
  check.equal(vyrIO.ArgumentParser(nil):getNumArguments(), 0)
  check.equal(vyrIO.ArgumentParser({}):getProgramName(), "")
end

function testTheScriptsOwnTable()
  check.equal(vyrIO.ArgumentParser(arg):getProgramName(), arg[0])
end

-- Held by the script alone: one reference, dropped by collection.
function testOwnership()
  check.equal(vyrIO.ArgumentParser({}):getReferenceCount(), 1)
  local parser = vyrIO.ArgumentParser:new({})
  check.equal(parser:getReferenceCount(), 0)
end

check.run()
