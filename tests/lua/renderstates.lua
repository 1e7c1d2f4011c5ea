-- State sets, uniforms, render states, text and model files, as a scene script uses them.
package.path = arg[0]:gsub("[^/]*$", "?.lua;") .. package.path
local check = require("check")

local states = [[
{
  "textures": { "wood": { "file": "wood.png" } },
  "shaderStates": { "time": { "uniforms": { "time": 2.5 } } },
  "renderStates": {
    "planks": { "diffuse": [1, 0.5, 0.25], "textures": [ { "texture": "wood" } ], "shaderState": "time" },
    "glass": { "alpha": 0.5 }
  }
}
]]

-- A manager that knows the states above; their texture stands with the examples.
local function parsed()
  local folder = arg[0]:gsub("tests/lua/[^/]*$", "examples/data/")
  local script = vyrCFG.ConfigScript()
  check.isTrue(script:parse(states:gsub('"wood.png"', '"' .. folder .. 'wood.png"'), "states"))
  local manager = vyrOSG.RenderStateManager:instance()
  manager:parse(script)
  return manager
end

function testARenderStateReachesEveryKindOfTarget()
  local manager = parsed()
  local state, name = manager:findRenderState("planks")
  check.equal(name, "planks")
  local group, set = vyrOSG.Group:new(), osg.StateSet:new()
  local box = vyrOSG.SimulationObject:createBox("box", vyr.AffineMatrix4x4(), vyr.Vec3(1, 1, 1), group, nil)
  state:apply(set)
  state:apply(group)
  state:apply(box)
  for _, target in ipairs({ set, group:getOrCreateStateSet(), box:getNode():getOrCreateStateSet() }) do
    check.notNil(target:getAttribute(osg.StateAttribute.MATERIAL))
    check.notNil(target:getTextureAttribute(0, osg.StateAttribute.TEXTURE))
    check.equal(target:getTextureMode(0, 3553), osg.StateAttribute.ON)
    check.equal(select(2, (target:getUniform("time")):getFloat(0)), 2.5)
  end
  manager:clear()
  check.isNil((manager:findRenderState("planks")))
end

function testBlendingFollowsTheAlpha()
  local manager, set = parsed(), osg.StateSet:new()
  manager:findRenderState("glass"):apply(set, vyrOSG.RenderStateManager.ON + vyrOSG.RenderStateManager.OVERRIDE)
  check.equal(set:getRenderingHint(), osg.StateSet.TRANSPARENT_BIN)
  check.equal(set:getMode(3042), 3)
  manager:clear()
end

function testAStateMadeByHand()
  local state = vyrOSG.RenderStateManager.RenderState("made")
  local uniform = osg.Uniform:new(osg.Uniform.FLOAT_VEC3, "tint")
  state:setColor(vyrOSG.RenderStateManager.RenderState.DIFFUSE, vyr.Vec4(1, 0, 0, 1))
  state:addUniform(uniform)
  local set = osg.StateSet:new()
  state:apply(set)
  check.isTrue(set:getUniform("tint") == uniform)
  check.raises("error in function 'apply'", state.apply, state, "text")
end

function testAFloatUniformIsMadeByType()
  local uniform, name = osg.Uniform:new(osg.Uniform.FLOAT, "time")
  check.equal(name, "time")
  check.isTrue(uniform:setFloat(0.5))
  check.equal(select(2, uniform:getFloat(0)), 0.5)
  -- By name and number it is an integer, whatever the number.
  check.equal(osg.Uniform:new("count", 0.5):getType(), osg.Uniform.INT)
end

function testSmallMatrices()
  local matrix = osg.Matrix2(1, 2, 3, 4)
  matrix[3] = 5
  check.equal(matrix[3], 5)
  check.equal(matrix[4], 0)
  local uniform = osg.Uniform:new("m", matrix)
  local read = osg.Matrix2()
  check.isTrue(uniform:get(read))
  check.equal(read[3], 5)
end

function testStateSetsCompare()
  local a, b = osg.StateSet:new(), osg.StateSet:new()
  b:setMode(3042, osg.StateAttribute.ON)
  check.equal(a:compare(a), 0)
  check.equal(a < b, a:compare(b) < 0)
end

function testTextStandsInAScene()
  local group = vyrOSG.Group:new()
  local text, given = vyrOSG.Text:new("label", vyr.Vec3(0, 0, 1), vyr.Vec4(1, 1, 0, 1))
  check.equal(given, "label")
  check.isTrue(group:addChild(text))
  check.equal(text:setText("changed"), "changed")
  text:setCharacterSize(0.5)
  text:setAlignment(vyrOSG.Text.CENTER_CENTER)
  check.equal(group:getNumChildren(), 1)
end

function testALightWithoutANodeIsInert()
  local light = vyrOSG.LightSource(nil)
  light:setSpotCutoff(30)
  check.equal(light:getSpotCutoff(), 0)
  check.equal(light:getLightNum(), -1)
  check.vector(light:getAmbient(), { 0, 0, 0, 0 })
end

function testModelFiles()
  local file = arg[0]:gsub("tests/lua/[^/]*$", "examples/data/") .. "gem.obj"
  local node, name = vyrOSG.readNodeFile(file)
  check.notNil(node)
  check.equal(name, file)
  check.isTrue(rawequal(node, (vyrOSG.readNodeFile(file))))
  local sim, group = vyrSDK.Simulation(), vyrOSG.Group:new()
  check.isTrue((vyrOSG.readFile(file, sim, group)))
  check.equal(group:getNumChildren(), 1)
  check.isNil((vyrOSG.readNodeFile("no such file.obj")))
end

check.run()
