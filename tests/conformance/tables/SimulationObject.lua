-- A geometry, its body and its visual node in one value, and what creates all three at once.
types { "vyr::Vec3", "vyr::Vec2d", "vyr::RealVector", "vyr::Vec2f", "vyr::Constraint", "vyrOSG::Group", "vyr::Vec2",
  "vyrCollide::Geometry", "vyr::Quat", "vyr::RigidBody", "vyrOSG::SimulationObject", "vyr::Vec4f", "vyr::Vec4",
  "vyr::SPDMatrix3x3", "vyr::AffineMatrix4x4", "vyr::Vec4d", "vyrCollide::Trimesh", "vyrSDK::Simulation", "osg::Node",
  "vyr::Vec3f", "vyrSDK::SimulationObject", "vyr::FrictionModel", "vyr::Vec3d" }
local folder = debug.getinfo(1, "S").source:match("^@(.*)/[^/]*$") .. "/../../../examples/data/"
samples({
  reals = function() return vyr.RealVector:fromTable({ 0, 0.5, 1, 0.5, 0.25, 0 }) end,
  mesh = function() return vyrCollide.Trimesh({ vyr.Vec3(0, 0, 0), vyr.Vec3(1, 0, 0), vyr.Vec3(0, 1, 0),
    vyr.Vec3(0, 0, 1) }, { 0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3 }) end,
  size = function() return vyr.Vec3(0.5, 0.75, 1) end,
  pictureFile = function() return folder .. "wood.png" end,
  modelFile = function() return folder .. "gem.obj" end,
  object = function(env) return vyrOSG.SimulationObject:new(env.geometry, env.body, env.node) end,
}, { ["vyr::RealVector"] = "reals", ["vyrCollide::Trimesh"] = "mesh", ["vyrOSG::SimulationObject"] = "object" })

shared()

namespace "vyr"
class("RigidBody")
constants { "STATIC", 1, "KINEMATICS", 2, "DYNAMICS", 3 }

-- After both tables have been closed again: it is a global.
global()
constants { "DEFAULT_DETAIL_RATIO", 1 }

namespace "vyrOSG"
class("SimulationObject", { base = "vyrSDK::SimulationObject", collector = "deletes" })
-- Each part that is not null is held once by each object: the samples here hold node and body once, the geometry twice.
constructor { "SimulationObject(vyrCollide::Geometry* geometry, vyr::RigidBody* body, osg::Node* node = nullptr)",
  with = "geometry, body, node",
  seen = "native.count('osg::Node', node) == 2, native.count('vyr::RigidBody', body) == 2, native.count('vyrCollide::Geometry', geometry) == 3, vyrOSG.SimulationObject:new(geometry, body):getNode() == nil" }
constructor { "SimulationObject()", seen = "vyrOSG.SimulationObject:new():getNode() == nil" }
row { "void delete()", reaches = "vyrOSG::SimulationObject::~SimulationObject()", once = true,
  on = "vyrOSG.SimulationObject:new(geometry, body, node)",
  seen = "native.count('osg::Node', node) == 1, native.count('vyr::RigidBody', body) == 1, native.count('vyrCollide::Geometry', geometry) == 2" }
constructor { "SimulationObject(const vyrOSG::SimulationObject& other)", with = "object",
  seen = "native.count('osg::Node', node) == 3, native.count('vyr::RigidBody', body) == 3, native.count('vyrCollide::Geometry', geometry) == 4" }
row { "osg::Node* getNode()", on = "vyrOSG.SimulationObject:new(geometry, body, node)", gives = "node" }
-- The simulation has no default here, other than in the functions after it.
row { "static vyrOSG::SimulationObject createBox(const vyr::VyrString<std::string>& name, const vyr::AffineMatrix4x4& transform, const vyr::Vec3& size, vyrOSG::Group* group, vyrSDK::Simulation* simulation, enum vyr::RigidBody::MotionControl motion = 3, bool a = true, bool b = true, bool c = false)",
  with = "'box', matrix, size, vgroup, simulation, 2.7, false, false, true" }
row { "static vyrOSG::SimulationObject createPlane(const vyr::VyrString<std::string>& name, const vyr::AffineMatrix4x4& transform, vyrOSG::Group* group, vyrSDK::Simulation* simulation = nullptr, enum vyr::RigidBody::MotionControl motion = 1, bool a = true, bool b = true)",
  with = "'plane', matrix, vgroup, simulation, 1.7, false, false" }
row { "static vyrOSG::SimulationObject createHeightField(const vyr::VyrString<std::string>& name, const vyr::AffineMatrix4x4& transform, const vyr::VyrString<std::string>& fileName, const double& a, const double& b, const double& c, const double& d, vyrOSG::Group* group, vyrSDK::Simulation* simulation = nullptr, enum vyr::RigidBody::MotionControl motion = 1, bool e = true, bool f = true)",
  with = "'field', matrix, pictureFile, 2.25, 3.25, 0.5, 0.75, vgroup, simulation, 1.7, false, false" }
row { "static vyrOSG::SimulationObject createHeightField(const vyr::VyrString<std::string>& name, const vyr::AffineMatrix4x4& transform, const vyr::RealVector& heights, unsigned long a, unsigned long b, double c, double d, double e, vyrOSG::Group* group, vyrSDK::Simulation* simulation = nullptr, enum vyr::RigidBody::MotionControl motion = 1, bool f = true, bool g = true)",
  with = "'field', matrix, reals, 3.7, 2.2, 2.25, 3.25, 0.5, vgroup, simulation, 1.7, false, false" }
row { "static vyrOSG::SimulationObject createCylinder(const vyr::VyrString<std::string>& name, const vyr::AffineMatrix4x4& transform, double a, double b, vyrOSG::Group* group, vyrSDK::Simulation* simulation = nullptr, enum vyr::RigidBody::MotionControl motion = 3, bool c = true, bool d = true, bool e = false)",
  with = "'cylinder', matrix, 0.25, 1.5, vgroup, simulation, 2.7, false, false, true" }
row { "static vyrOSG::SimulationObject createCapsule(const vyr::VyrString<std::string>& name, const vyr::AffineMatrix4x4& transform, double a, double b, vyrOSG::Group* group, vyrSDK::Simulation* simulation = nullptr, enum vyr::RigidBody::MotionControl motion = 3, bool c = true, bool d = true)",
  with = "'capsule', matrix, 0.25, 1.5, vgroup, simulation, 2.7, false, false" }
row { "static vyrOSG::SimulationObject createSphere(const vyr::VyrString<std::string>& name, const vyr::AffineMatrix4x4& transform, double a, vyrOSG::Group* group, vyrSDK::Simulation* simulation = nullptr, enum vyr::RigidBody::MotionControl motion = 3, bool b = true, bool c = true)",
  with = "'sphere', matrix, 0.25, vgroup, simulation, 2.7, false, false" }
row { "static vyrOSG::SimulationObject createTrimesh(const vyr::VyrString<std::string>& name, const vyr::AffineMatrix4x4& transform, const vyr::VyrString<std::string>& fileName, vyrOSG::Group* group, vyrSDK::Simulation* simulation = nullptr, enum vyr::RigidBody::MotionControl motion = 3, bool a = true, bool b = true)",
  with = "'mesh', matrix, modelFile, vgroup, simulation, 2.7, false, false" }
row { "static vyrOSG::SimulationObject createTrimesh(const vyr::VyrString<std::string>& name, const vyr::AffineMatrix4x4& transform, vyrCollide::Trimesh* mesh, vyrOSG::Group* group, vyrSDK::Simulation* simulation = nullptr, enum vyr::RigidBody::MotionControl motion = 3, bool a = true, bool b = true)",
  with = "'mesh', matrix, mesh, vgroup, simulation, 2.7, false, false" }
row { "static vyrOSG::SimulationObject createTrimesh(const vyr::VyrString<std::string>& name, const vyr::AffineMatrix4x4& transform, const vyr::VyrString<std::string>& fileName, double a, vyrOSG::Group* group, vyrSDK::Simulation* simulation = nullptr, enum vyr::RigidBody::MotionControl motion = 3, bool b = true, bool c = true)",
  with = "'mesh', matrix, modelFile, 2.5, vgroup, simulation, 2.7, false, false" }
