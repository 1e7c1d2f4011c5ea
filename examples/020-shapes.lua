-- Every shape that vyrOSG.SimulationObject can make, dropped on a hilly ground whose heights this script computes.
--
--   vyr examples/020-shapes.lua

-- A hollow with soft waves: the shapes roll towards the middle. Heights are in metres, row after row along x.
local function hills(columns, rows)
  local heights = vyr.RealVector()
  for row = 0, rows - 1 do
    for column = 0, columns - 1 do
      local x, y = column / (columns - 1) - 0.5, row / (rows - 1) - 0.5
      heights:push_back(4 * (x * x + y * y) + 0.12 * math.sin(16 * x) * math.cos(14 * y))
    end
  end
  return heights
end

function buildScene(sim, app, root)
  local S = vyrOSG.SimulationObject
  local function at(x, y, z) return vyr.AffineMatrix4x4:translate(x, y, z) end
  local function paint(object, r, g, b) vyrOSG.setDiffuseColor(object:getNode(), vyr.Vec4(r, g, b, 1)) end

  -- 61 x 61 heights spread over 12 m x 12 m; the 1 behind them scales the heights.
  local ground = S:createHeightField("hills", at(0, 0, 0), hills(61, 61), 61, 61, 12, 12, 1, root, sim)
  paint(ground, 0.45, 0.62, 0.36)

  -- An endless plane lies around the hills, and a mesh of four triangles is one of the shapes that fall.
  local plain = S:createPlane("plain", at(0, 0, -0.3), root, sim)
  paint(plain, 0.55, 0.60, 0.45)
  local v = vyr.Vec3
  local tetrahedron = vyrCollide.Trimesh({ v(0.5, 0, -0.3), v(-0.3, 0.5, -0.3), v(-0.3, -0.5, -0.3), v(0, 0, 0.5) },
    { 0, 2, 1, 0, 1, 3, 1, 2, 3, 2, 0, 3 })

  for i = 0, 3 do
    local angle, z = i * math.pi / 2, 2.5 + i * 0.8
    local function ring(k, radius)
      return at(radius * math.cos(angle + k), radius * math.sin(angle + k), z)
    end
    paint(S:createBox("box " .. i, ring(0.0, 2.2), vyr.Vec3(0.8, 0.6, 0.6), root, sim), 0.90, 0.30, 0.24)
    paint(S:createSphere("sphere " .. i, ring(0.4, 3.0), 0.4, root, sim), 0.95, 0.77, 0.06)
    paint(S:createCylinder("cylinder " .. i, ring(0.8, 2.2), 0.3, 0.8, root, sim), 0.20, 0.60, 0.86)
    paint(S:createCapsule("capsule " .. i, ring(1.2, 3.2), 0.25, 0.7, root, sim), 0.61, 0.35, 0.71)
    paint(S:createTrimesh("tetrahedron " .. i, ring(0.3, 1.0), tetrahedron, root, sim), 0.10, 0.74, 0.61)
  end

  app:setCameraHome(vyr.Vec3(7, -9, 7), vyr.Vec3(0, 0, 0.5))
  app:getSceneDecorator():setEnableShadows(true)
end

local app = vyrOSG.ExampleApplication()
app:init(vyrIO.ArgumentParser(arg))
app:addScene(arg[0], "buildScene", string.byte("1"), true)
app:run()
