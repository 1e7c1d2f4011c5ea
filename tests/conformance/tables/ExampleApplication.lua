-- The viewer application, its camera, and picking. The program of these tests asks for no graphics: nothing is drawn.
types {
  "vyrOSG::ImageCapture", "vyrSDK::Simulation", "osg::Vec4", "vyrOSG::SceneDecorator", "vyrCollide::Geometry",
  "vyr::Quat", "vyr::RigidBody", "osgViewer::Viewer", "vyr::Vec4", "vyr::SPDMatrix3x3", "vyrOSG::CameraData",
  "vyr::Vec4d", "vyr::Vec2u", "vyr::Vec3", "vyr::Referenced", "vyrIO::ArgumentParser", "vyrIO::CFGSceneLoader",
  "vyr::Vec2f", "vyr::Constraint", "vyr::Vec2", "vyr::Vec3d", "vyrSDK::PickHandler", "vyrOSG::GeometryNode",
  "vyr::AffineMatrix4x4", "osg::Camera", "vyr::Vec2d", "vyrOSG::RenderToTexture", "vyr::FrictionModel", "osg::Group",
  "vyr::Vec3f", "vyr::Vec4f", "vyrOSG::ExampleApplication", "vyrSDK::PickResult",
}
shared()
samples({
  picked = function(env) return env.app:getPickHandler():pick(1, 2) end,
  picker = function(env) return env.app:getPickHandler() end,
  found = function(env)
    env.picked.geometry = env.geometry
    return env.picked
  end,
  -- The geometry that it had is gone.
  lost = function(env)
    local result = env.app:getPickHandler():pick(3, 4)
    result.geometry = vyrCollide.Geometry(vyrCollide.Box(0.5, 0.5, 0.5))
    collectgarbage()
    collectgarbage()
    return result
  end,
  cameraData = function(env) return vyrOSG.CameraData(env.camera) end,
  geometryNode = function(env) return vyrOSG.GeometryNode(env.geometry) end,
  target = function() return vyrOSG.RenderToTexture(64, 32) end,
  vec2u = function() return vyr.Vec2u(7, 9) end,
  otherBody = function() return vyr.RigidBody("other") end,
  center = function() return vyr.Vec3(0.5, 0.25, 1) end,
  up = function() return vyr.Vec3(0, 0.6, 0.8) end,
  -- A file that is there.
  script = function() return (package.path:gsub("%?", "run")) end,
  -- An application that has read its arguments and whose time is over.
  ready = function(env)
    env.app:init(env.arguments)
    env.app:stopAfter(0)
    return env.app
  end,
}, {
  ["vyrSDK::PickResult"] = "picked", ["vyrSDK::PickHandler"] = "picker", ["vyrOSG::CameraData"] = "cameraData",
  ["vyrOSG::GeometryNode"] = "geometryNode", ["vyrOSG::RenderToTexture"] = "target", ["vyr::Vec2u"] = "vec2u",
})

namespace "vyrSDK"
class("PickResult", { collector = "deletes" })
variable "vyrCollide::Geometry* geometry"
variable "double distance"
variable "vyr::Vec3 worldPoint"
variable "vyr::Vec3 localPoint"
variable "bool hit"
class "PickHandler"
row { "vyrSDK::PickResult pick(float x, float y)", reaches = "vyrSDK::PickResult vyrOSG::ScenePickHandler::pick(float, float)",
  seen = "found.geometry ~= nil, lost.geometry == nil" }

namespace "vyrOSG"
class("CameraData", { collector = "deletes" })
constructor "CameraData(const osg::Camera* camera)"
constructor { "CameraData(const osgViewer::Viewer* viewer)", seen = "not vyrOSG.CameraData(nil).valid" }
row "void applyTo(osg::Camera* camera) const"
variable "double nearClippingPlane"
variable "double farClippingPlane"
variable "double fieldOfView"
variable "double aspectRatio"
variable "bool valid"
variable "vyr::Vec3 eye"
variable "vyr::Vec3 center"
variable "vyr::Vec3 up"

class("ExampleApplication", { base = "vyr::Referenced", collector = "drops" })
constants { "MULTI", 0, "ITERATIVE", 1, "NUM_SOLVERS", 2 }
row { "void setSolverType(enum vyrOSG::ExampleApplication::SolverType type)", with = "0.9", seen = "self:getSolverType() == 0" }
row "enum vyrOSG::ExampleApplication::SolverType getSolverType() const"
row { "std::string getSolverName(enum vyrOSG::ExampleApplication::SolverType type) const", with = "1.9", gives = "'ITERATIVE'" }
row { "enum vyrOSG::ExampleApplication::SolverType getSolverType(const std::string& name) const", with = "'MULTI'", gives = "0, 'MULTI'" }
row "void addAutoPausePair(const vyr::RigidBody* first, const vyr::RigidBody* second)"
row "void addAutoPausePair(const vyrCollide::Geometry* first, const vyrCollide::Geometry* second)"
row "void removeAutoPausePair(const vyr::RigidBody* first, const vyr::RigidBody* second)"
row "void removeAutoPausePair(const vyrCollide::Geometry* first, const vyrCollide::Geometry* second)"
row "void addRenderToTexture(vyrOSG::RenderToTexture* target)"
row "void reloadScene()"
row { "void setEnableAutoPausing(bool enable)", with = "false", seen = "not self:getEnableAutoPausing()" }
row "bool getEnableAutoPausing()"
constructor "ExampleApplication(vyrSDK::Simulation* simulation = nullptr)"
row { "bool init(vyrIO::ArgumentParser* arguments)", gives = "true" }
row { "vyrIO::ArgumentParser* getArguments()", before = "self:init(arguments)", gives = "arguments" }
row { "void setTimeStep(double step)", with = "0.3", seen = "self:getTimeStep() == 0.3" }
row "double getTimeStep() const"
local six = "bool vyrOSG::ExampleApplication::addScene(const std::string&, const std::string&, int, bool, float%s, bool%s)"
local five = "bool vyrOSG::ExampleApplication::addScene(const std::string&, const std::string&, bool, float%s, bool%s)"
row { "bool addScene(const std::string& file, const std::string& function, int a, bool b)", reaches = six:format(" = 0", " = false"),
  with = "script, 'build', 0.7, true", gives = "true, script, 'build'" }
row { "bool addScene(const std::string& file, const std::string& function, int a, bool b, float c, bool d)",
  with = "script, 'build', 0.7, false, 0.1, true", gives = "true, script, 'build'" }
row { "bool addScene(const std::string& file, const std::string& function, bool a)", reaches = five:format(" = 0", " = false"),
  with = "script, 'build', true", gives = "true, script, 'build'" }
row { "bool addScene(const std::string& file, const std::string& function, bool a, float b, bool c)",
  with = "script, 'build', false, 0.1, true", gives = "true, script, 'build'" }
row { "bool initialized() const", on = "ready", gives = "true" }
row "vyrOSG::SceneDecorator* getSceneDecorator()"
row { "int run()", on = "ready", gives = "0" }
row { "void stop()", seen = "self:shouldStop()" }
row { "bool shouldStop()", before = "self:stop()", gives = "true" }
row { "void setupViewer(bool a = true)", reaches = "bool vyrOSG::ExampleApplication::setupViewer(bool, bool = true)", with = "false" }
row { "osg::Group* getScene()", before = "self:setScene(group)", gives = "group" }
-- One reference for the scene that is set, none more for setting it again, and none for the one before.
row { "void setScene(osg::Group* scene)", with = "group", seen = "native.count('osg::Group', group) == 1, not self:setScene(group), "
  .. "native.count('osg::Group', group) == 1, not native.hold('osg::Group', group), not self:setScene(osg.Group:new()), "
  .. "native.count('osg::Group', group) == 1, native.address(self:getScene()) ~= native.address(group)" }
row "osg::Group* getSceneRoot()"
row "osg::Group* getSceneSwitch()"
row { "void setCameraHome(const vyr::Vec3& eye, const vyr::Vec3& center)", with = "vec3, center",
  reaches = "void vyrOSG::ExampleApplication::setCameraHome(const vyr::Vec3&, const vyr::Vec3&, const vyr::Vec3& = vyr::Vec3(0, 0, 1))" }
row { "void setCameraHome(const vyr::Vec3& eye, const vyr::Vec3& center, const vyr::Vec3& up)", with = "vec3, center, up" }
row "void setDebugRenderInverseMatrix(const vyr::AffineMatrix4x4& matrix)"
row { "bool setEnableDebugRenderer(bool enable)", seen = "self:getEnableDebugRenderer()" }
row "bool getEnableDebugRenderer() const"
row { "void setEnableTextDebugRendering(bool enable)", seen = "self:getEnableTextDebugRendering()" }
row "bool getEnableTextDebugRendering() const"
row { "void setEnableCaptureSyncWithSimulation(bool enable)", with = "false", seen = "not self:getEnableCaptureSyncWithSimulation()" }
row "bool getEnableCaptureSyncWithSimulation() const"
row { "void setEnableOSGRenderer(bool enable)", with = "false", seen = "not self:getEnableOSGRenderer()" }
row "bool getEnableOSGRenderer()"
row { "vyrSDK::Simulation* getSimulation()", on = "vyrOSG.ExampleApplication(simulation)", gives = "simulation" }
row { "bool restoreFromFile(const std::string& file)", with = "'absent.json'", gives = "false, 'absent.json'" }
row { "void setAutoStepping(bool enable)", with = "false", seen = "not self:getAutoStepping()" }
row "bool getAutoStepping() const"
row "void createNextScene()"
row "void createPreviousScene()"
row { "size_t getNumScenes() const", before = "self:addScene(script, 'build', false)", seen = "self:getNumScenes() >= 1" }
row "std::string getLuaFilePath() const"
row { "void step()", seen = "self:getTimeStamp() > 0" }
row { "void changeSolver()", before = "self:setSolverType(0)", seen = "self:getSolverType() == 1" }
row "std::string getSaveSceneFilename() const"
row "osg::Group* getRoot()"
row "void fitSceneIntoView()"
row { "void initSimulation(vyrSDK::Simulation* simulation)", with = "simulation", seen = "native.address(self:getSimulation()) == native.address(simulation)" }
row { "bool readCFGFile()", gives = "false" }
row { "void stopAfter(double time)", with = "-0.3" }
row "osgViewer::Viewer* getViewer()"
row "size_t getHWND() const"
row "osg::Camera* getCamera()"
row "vyrOSG::CameraData getCameraData() const"
row "void applyCameraData(const vyrOSG::CameraData& data)"
row "vyr::Vec3 getViewDirection()"
row { "vyrSDK::PickHandler* getPickHandler()", gives = "self:getPickHandler()" }
row "std::string getScriptFile() const"
row { "double getTimeStamp() const", before = "self:step()" }
row "void clearScene()"
row { "void setEnableSimulationDump(bool enable)", seen = "self:getEnableSimulationDump()" }
row "bool getEnableSimulationDump() const"
row "void updateRemoteDebugger()"
row "void centerScene()"
row "vyr::Vec3 getGravity() const"
row "void setSceneLoader(vyrIO::CFGSceneLoader* loader)"
row { "vyrIO::CFGSceneLoader* getSceneLoader()", before = "self:setSceneLoader(native.given('vyrIO::CFGSceneLoader'))",
  gives = "native.given('vyrIO::CFGSceneLoader')" }
row { "vyrOSG::ImageCapture* getImageCapture()", seen = "self:getImageCapture() ~= nil" }
row { "bool isCameraHomeSet() const", before = "self:setCameraHome(vec3, center)", gives = "true" }
row "void journalPlayback()"
-- The names that it finds stay behind.
row { "void listSessionNames(const std::string& file)", with = "'absent'", gives = "'absent'",
  reaches = "std::vector<std::string> vyrOSG::ExampleApplication::listSessionNames(const std::string&)" }
row { "void setOsgNotifyLevel(enum osg::NotifySeverity level) const", with = "osg.NOTICE + 0.9" }
row "void setOrbitCamera(vyrOSG::GeometryNode* node, double a, double b, double c, int d = 0)"
row { "void setOrbitCamera(vyrOSG::GeometryNode* node, const vyr::Vec3& a, const vyr::Vec3& b, const vyr::Vec3& c, int d = 0)",
  with = "geometryNode, vec3, center, up" }
row { "bool done() const", before = "self:stop()", gives = "true" }
row "bool getAllowWindowResizing() const"
row { "void setAllowWindowResizing(bool allow)", with = "false", seen = "not self:getAllowWindowResizing()" }
row { "void takeScreenShot()", reaches = 'void vyrOSG::ExampleApplication::takeScreenShot(const vyr::VyrString<std::string>& = "")' }
row { "void takeScreenShot(const vyr::VyrString<std::string>& file)", gives = "'text1'" }
row { "size_t getJournalFormat() const", before = "self:setJournalFormat(1)", gives = "1" }
row { "void setJournalFormat(size_t format)", with = "1.9", seen = "self:getJournalFormat() == 1" }
row "void setCoordinateSystemTransform(const vyr::AffineMatrix4x4& matrix)"
row "vyr::AffineMatrix4x4 getCoordinateSystemTransform() const"
row { "void setGridSize(const vyr::Vec2& size)", with = "vyr.Vec2(1.1, 2.2)", seen = "self:getGridSize().x == 1.1, self:getGridSize().y == 2.2" }
row "vyr::Vec2 getGridSize() const"
row { "void setGridResolution(const vyr::Vec2u& resolution)", reaches = "void vyrOSG::ExampleApplication::setGridResolution(vyr::Vec2u)" }
row { "vyr::Vec2u getGridResolution() const", before = "self:setGridResolution(vec2u)" }
row { "void setEnableGrid(bool enable)", seen = "self:getEnableGrid()" }
row "bool getEnableGrid() const"
row { "void setEnableCoordinateSystem(bool enable)", seen = "self:getEnableCoordinateSystem()" }
row "bool getEnableCoordinateSystem() const"
global()
constants { "OSG_CAMERA", 1 }

namespace "osg"
class "Camera"
constructor "Camera()"
row { "void setAllowEventFocus(bool focus)", with = "false", seen = "not self:getAllowEventFocus()" }
row "bool getAllowEventFocus() const"
row "const osg::Vec4& getClearAccum() const"
row { "void setClearDepth(double depth)", with = "0.3", seen = "self:getClearDepth() == 0.3" }
row { "double getClearDepth() const", before = "self:setClearDepth(0.3)", gives = "0.3" }
row { "void setClearStencil(int stencil)", with = "-3.7", seen = "self:getClearStencil() == -3" }
row { "int getClearStencil() const", before = "self:setClearStencil(-3)", gives = "-3" }
row { "void setColorMask(bool red, bool green, bool blue, bool alpha)", with = "true, false, true, false" }
constants { "PRE_MULTIPLY", 0, "POST_MULTIPLY", 1 }
row { "void setTransformOrder(enum osg::Camera::TransformOrder order)", seen = "self:getTransformOrder() == 1" }
row "enum osg::Camera::TransformOrder getTransformOrder() const"
constants { "FIXED", 0, "HORIZONTAL", 1, "VERTICAL", 2 }
row { "void setProjectionResizePolicy(enum osg::Camera::ProjectionResizePolicy policy)", with = "2.7", seen = "self:getProjectionResizePolicy() == 2" }
row "enum osg::Camera::ProjectionResizePolicy getProjectionResizePolicy() const"
row "void setProjectionMatrixAsOrtho(double left, double right, double bottom, double top, double near, double far)"
row "void setProjectionMatrixAsOrtho2D(double left, double right, double bottom, double top)"
row "void setProjectionMatrixAsFrustum(double left, double right, double bottom, double top, double near, double far)"
row "void setProjectionMatrixAsPerspective(double fovy, double aspect, double near, double far)"
row { "bool getProjectionMatrixAsOrtho(double& left, double& right, double& bottom, double& top, double& near, double& far) const", changes = true,
  before = "self:setProjectionMatrixAsOrtho(-1.5, 2.5, -3.5, 4.5, 0.5, 8)", gives = "true, -1.5, 2.5, -3.5, 4.5, 0.5, 8" }
row { "bool getProjectionMatrixAsFrustum(double& left, double& right, double& bottom, double& top, double& near, double& far) const", changes = true,
  before = "self:setProjectionMatrixAsFrustum(-1.5, 2.5, -3.5, 4.5, 0.5, 8)", gives = "true, -1.5, 2.5, -3.5, 4.5, 0.5, 8" }
row { "bool getProjectionMatrixAsPerspective(double& fovy, double& aspect, double& near, double& far) const", changes = true,
  before = "self:setProjectionMatrixAsPerspective(40, 1.5, 0.5, 8)", gives = "true, 40, 1.5, 0.5, 8" }
constants { "PRE_RENDER", 0, "NESTED_RENDER", 1, "POST_RENDER", 2 }
row { "void setRenderOrder(enum osg::Camera::RenderOrder order, int number = 0)", with = "2.7, -2.7",
  seen = "self:getRenderOrder() == 2, self:getRenderOrderNum() == -2" }
row "enum osg::Camera::RenderOrder getRenderOrder() const"
row { "int getRenderOrderNum() const", before = "self:setRenderOrder(0, -2)", gives = "-2" }
row "bool isRenderToTextureCamera() const"
constants { "FRAME_BUFFER_OBJECT", 0, "PIXEL_BUFFER_RTT", 1, "PIXEL_BUFFER", 2, "FRAME_BUFFER", 3 }
constants {
  "DEPTH_BUFFER", 0, "STENCIL_BUFFER", 1, "PACKED_DEPTH_STENCIL_BUFFER", 2, "COLOR_BUFFER", 3, "COLOR_BUFFER0", 4,
  "COLOR_BUFFER1", 5, "COLOR_BUFFER2", 6, "COLOR_BUFFER3", 7, "COLOR_BUFFER4", 8, "COLOR_BUFFER5", 9,
  "COLOR_BUFFER6", 10, "COLOR_BUFFER7", 11, "COLOR_BUFFER8", 12, "COLOR_BUFFER9", 13, "COLOR_BUFFER10", 14,
  "COLOR_BUFFER11", 15, "COLOR_BUFFER12", 16, "COLOR_BUFFER13", 17, "COLOR_BUFFER14", 18, "COLOR_BUFFER15", 19,
}
namespace "osg"
constants { "ALWAYS", 0, "FATAL", 1, "WARN", 2, "NOTICE", 3, "INFO", 4, "DEBUG_INFO", 5, "DEBUG_FP", 6 }
