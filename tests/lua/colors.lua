-- Colours by component and by name, and arrays of them.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

function testComponents()
  check.vector(vyrRender.Color(0.1, 0.2, 0.3), { 0.1, 0.2, 0.3, 1 })
  check.vector(vyrRender.Color(0.1, 0.2, 0.3, 0.4), { 0.1, 0.2, 0.3, 0.4 })
  check.equal(vyrRender.Color(0.1, 0.2, 0.3).b, 0.3)
end

function testNames()
  check.vector(vyrRender.Color:Red(), { 1, 0, 0, 1 })
  check.vector(vyrRender.Color:named("Blue"), { 0, 0, 1, 1 })
  check.vector(vyrRender.Color:named("#ff000080"), { 1, 0, 0, 128 / 255 }, 1e-12)
end

function testUnknownNameGivesNil()
  check.isNil(vyrRender.Color:named("no such colour"))
end

function testAColorIsAVec4()
  check.vector(vyrRender.Color:Red() + vyr.Vec4(0, 1, 0, 0), { 1, 1, 0, 1 })
  check.vector(vyr.absolute(vyrRender.Color(-1, 0, 0)), { 1, 0, 0, 1 })
  check.equal(tostring(vyrRender.Color:White()), "(1, 1, 1, 1)")
end

function testColorVector()
  local scale = vyrRender.ColorVector:fromTable({ vyrRender.Color:Blue(), vyr.Vec4(1, 0, 0, 1) })
  scale:push_back(vyrRender.Color:White())
  check.equal(scale:size(), 3)
  check.vector(scale:at(1), { 1, 0, 0, 1 })
  check.isNil(scale:at(3))
end

check.run()
