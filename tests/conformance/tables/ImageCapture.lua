-- The recorder of rendered frames. No capture gets as far as a file here: nothing is drawn.
types {
  "vyrOSG::ImageCapture", "vyr::Vec3", "vyr::Vec2d", "vyr::Vec2f", "vyr::Constraint", "vyr::Vec2", "vyr::Quat",
  "vyr::FrictionModel", "vyr::Vec4f", "vyr::Vec4", "vyr::SPDMatrix3x3", "vyr::AffineMatrix4x4", "vyr::Vec4d",
  "vyr::Vec2u", "vyr::Vec3f", "vyrSDK::Simulation", "vyr::Vec3d",
}
shared()
samples({
  capture = function(env) return vyrOSG.ImageCapture(env.simulation) end,
  running = function(env)
    local capture = vyrOSG.ImageCapture(env.simulation)
    capture:startCapture()
    return capture
  end,
  -- Its simulation is gone.
  orphan = function()
    local capture = vyrOSG.ImageCapture(vyrSDK.Simulation())
    collectgarbage()
    collectgarbage()
    return capture
  end,
}, { ["vyrOSG::ImageCapture"] = "capture" })

namespace "vyrOSG"
class("ImageCapture", { collector = "drops" })
constructor "ImageCapture(vyrSDK::Simulation* simulation)"
row "void setMaxImages(int maximum)"
-- The rate of a running capture stays.
row { "void setFps(float fps)", with = "25", seen = "self:getFps() == 25, not running:setFps(5), running:getFps() == 25, "
  .. "running:stopCapture(), not running:setFps(5), running:getFps() == 5" }
row { "float getFps()", before = "self:setFps(5.5)", gives = "native.narrow(1 / native.narrow(1 / 5.5))" }
row { "void startCapture(int number = 0)", seen = "self:getCaptureStarted()" }
row { "void setPrefix(const std::string& prefix)", gives = "'text1'", seen = "self:getPrefix() == 'text1'" }
row { "std::string getPrefix() const", before = "self:setPrefix('a')", gives = "'a'" }
row { "void setDirectoryPath(const std::string& path)", gives = "'text1'", seen = "self:getDirectoryPath() == 'text1'" }
row { "std::string getDirectoryPath() const", before = "self:setDirectoryPath('a')", gives = "'a'" }
row { "void setSimulation(vyrSDK::Simulation* simulation)", with = "simulation", seen = "native.address(self:getSimulation()) == native.address(simulation)" }
row { "vyrSDK::Simulation* getSimulation()", before = "self:setSimulation(simulation)", gives = "simulation", seen = "orphan:getSimulation() == nil" }
row { "void setImageResolution(size_t width, size_t height)", with = "64.7, 32.7" }
row { "vyr::Vec2u getImageResolution() const", before = "self:setImageResolution(64, 32)" }
row { "bool stopCapture()", before = "self:startCapture()", gives = "true", seen = "not self:getCaptureStarted()" }
row { "bool getCaptureStarted()", on = "running", gives = "true" }
row { "std::string getPostfix() const", before = "self:setPostfix('.jpg')", gives = "'.jpg'" }
row { "void setPostfix(const std::string& postfix)", gives = "'text1'", seen = "self:getPostfix() == 'text1'" }
row "int getImageNum() const"
row { "int incImageNum()", gives = "self:getImageNum()" }
row "void resetTime()"
