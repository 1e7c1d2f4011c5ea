-- Shaders of one's own: a render state with a GLSL program, and a uniform that the simulation's clock drives.
--
--   vyr examples/050-shaders.lua

-- Everything that is drawn with the state "rings" gets coloured rings that run along its height. The same text may stand
-- in a file: vyrCFG.ConfigScript("rings.json").
local states = [[
{
  "shaders": {
    "rings vertex": { "stage": "vertex", "source": [
      "#version 120",
      "varying vec3 normal;",
      "varying vec3 place;",
      "varying vec3 eye;",
      "void main() {",
      "  normal = gl_NormalMatrix * gl_Normal;",
      "  place = gl_Vertex.xyz;",
      "  eye = -(gl_ModelViewMatrix * gl_Vertex).xyz;",
      "  gl_Position = ftransform();",
      "}" ] },
    "rings fragment": { "stage": "fragment", "source": [
      "#version 120",
      "varying vec3 normal;",
      "varying vec3 place;",
      "varying vec3 eye;",
      "uniform float time;",
      "uniform vec3 first;",
      "uniform vec3 second;",
      "void main() {",
      "  vec3 n = normalize(normal);",
      "  vec3 e = normalize(eye);",
      "  float wave = smoothstep(-0.2, 0.2, sin(18.0 * length(place.xy) - 6.0 * place.z - 4.0 * time));",
      "  float light = 0.35 + 0.65 * max(dot(n, normalize(vec3(0.3, 0.6, 0.7))), 0.0);",
      "  float rim = pow(1.0 - max(dot(n, e), 0.0), 3.0);",
      "  gl_FragColor = vec4(mix(first, second, wave) * light + 0.6 * rim * vec3(1.0), 1.0);",
      "}" ] }
  },
  "programs": { "rings": { "shaders": ["rings vertex", "rings fragment"] } },
  "shaderStates": { "rings": { "program": "rings", "uniforms": { "first": [0.95, 0.35, 0.15], "second": [0.10, 0.20, 0.45] } } },
  "renderStates": { "rings": { "shaderState": "rings" } }
}
]]

function buildScene(sim, app, root)
  local manager = vyrOSG.RenderStateManager:instance()
  local script = vyrCFG.ConfigScript()
  script:parse(states, "rings")
  manager:parse(script)
  local rings = manager:findRenderState("rings")

  -- A uniform that the step listener below sets; the state hands it to the program.
  local time = osg.Uniform:new(osg.Uniform.FLOAT, "time")
  time:setFloat(0)
  rings:addUniform(time)
  sim:add(vyrSDK.StepEventListener({ post = function(now) time:setFloat(now) end }))

  local S, Vec3 = vyrOSG.SimulationObject, vyr.Vec3
  local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end
  local floor = S:createBox("floor", at(0, 0, -0.25), Vec3(12, 12, 0.5), root, sim, vyr.RigidBody.STATIC)
  vyrOSG.setDiffuseColor(floor:getNode(), vyr.Vec4(0.30, 0.32, 0.36, 1))
  for i = 1, 12 do
    local place = at(1.7 * math.cos(2.4 * i), 1.7 * math.sin(2.4 * i), 0.7 + 0.6 * i)
    local object
    if i % 3 == 0 then
      object = S:createSphere("sphere " .. i, place, 0.6, root, sim)
    elseif i % 3 == 1 then
      object = S:createBox("box " .. i, place, Vec3(1, 1, 1), root, sim)
    else
      object = S:createCylinder("cylinder " .. i, place, 0.5, 1, root, sim)
    end
    rings:apply(object)
  end

  app:setCameraHome(Vec3(5.2, -8.6, 5), Vec3(0.9, 0, 0.5))
  app:getSceneDecorator():setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
