-- Pictures as textures, with most of the camera that draws them and its small vectors.
types {
  "vyrOSG::ImageCapture", "osg::GraphicsContext", "osg::Vec4", "osg::Matrixf", "osg::ColorMask",
  "osg::GraphicsOperation", "vyr::Quat", "osg::Camera::Attachment", "vyr::FrictionModel", "GLbitfield", "vyr::Vec4",
  "vyr::SPDMatrix3x3", "osg::NodeVisitor", "vyr::Vec4d", "osg::Matrixd", "osg::Texture",
  "std::map<osg::Camera::BufferComponent,osg::Camera::Attachment>", "vyr::Vec3", "vyr::Vec2d", "osg::Texture2D",
  "osg::Image", "vyr::Vec2f", "vyr::Constraint", "vyr::Vec2u", "vyr::Vec2", "GLenum", "vyr::Vec3d",
  "vyrOSG::RenderToTexture", "osg::Matrix", "osg::View", "vyr::Vec4f", "osg::State", "OpenThreads::Mutex",
  "osg::Object", "vyr::AffineMatrix4x4", "osg::Vec3f", "osg::DisplaySettings", "osg::Camera", "osg::Viewport",
  "osg::Transform", "vyr::Vec3f", "vyr::Object", "osg::Vec3d", "osg::Stats",
}
shared()
samples({
  double3 = function() return osg.Vec3d(1.1, -2.2, 3.3) end,
  float3 = function() return osg.Vec3f(1.1, -2.2, 3.3) end,
  eye = function() return osg.Vec3d(1, 2, 3) end,
  center = function() return osg.Vec3d(1, 5, 3) end,
  up = function() return osg.Vec3d(0, 0, 1) end,
  a = function() return osg.Vec3d() end,
  b = function() return osg.Vec3d() end,
  c = function() return osg.Vec3d() end,
  attachment = function() return osg.Camera.Attachment() end,
  capture = function(env) return vyrOSG.ImageCapture(env.simulation) end,
  target = function() return vyrOSG.RenderToTexture(64, 32) end,
}, {
  ["osg::Vec3d"] = "double3", ["osg::Vec3f"] = "float3", ["osg::Camera::Attachment"] = "attachment",
  ["vyrOSG::ImageCapture"] = "capture", ["vyrOSG::RenderToTexture"] = "target",
})

-- The two vectors differ in precision, and the wider one converts to the other.
local function vector(name, scalar)
  local type = "osg::" .. name
  class(name, { collector = "deletes" })
  constants { "num_components", 3 }
  array(scalar .. " _v", 3)
  constructor { name .. "()", seen = ("osg.%s():length() == 0"):format(name) }
  if name == "Vec3d" then
    row { "osg::Vec3f operator osg::Vec3f() const", name = ".Vec3f", native = "operatorVec3f" }
  end
  constructor(("%s(%s x, %s y, %s z)"):format(name, scalar, scalar, scalar))
  row { ("void set(%s x, %s y, %s z)"):format(scalar, scalar, scalar), seen = ("self:z() == %s"):format(scalar == "float" and "native.narrow(3.1)" or "3.3") }
  row(("void set(const %s& other)"):format(type))
  for _, component in ipairs { "x", "y", "z" } do row(("%s& %s()"):format(scalar, component)) end
  for _, component in ipairs { "x", "y", "z" } do row(("%s %s() const"):format(scalar, component)) end
  row { "bool valid() const", gives = "true" }
  row { "bool isNaN() const", gives = "false" }
  row { scalar .. " length() const", on = ("osg.%s(2, 3, 6)"):format(name), gives = "7" }
  row { scalar .. " length2() const", on = ("osg.%s(2, 3, 6)"):format(name), gives = "49" }
  row { scalar .. " normalize()", on = ("osg.%s(2, 3, 6)"):format(name), gives = "7",
    seen = ("math.abs(self:length() - 1) < 1e-6, osg.%s():normalize() == 0"):format(name) }
end

-- What a camera has and gives back: as it is, and read-only from a read-only camera.
local function member(name, type)
  local own, other = name:lower(), name:lower() .. "ReadOnly"
  samples({
    [own] = function() return native.given(type) end,
    [other] = function() return native.given("const " .. type) end,
  }, { [type] = own })
  row { ("void set%s(%s* value)"):format(name, type) }
  row { ("%s* get%s()"):format(type, name), before = ("self:set%s(%s)"):format(name, own), gives = own }
  row { ("const %s* get%s() const"):format(type, name), before = ("self:set%s(native.as(%s, '%s'))"):format(name, other, type), gives = other }
end

namespace "osg"
vector("Vec3f", "float")
vector("Vec3d", "double")

class("Camera", { base = "osg::Transform", collector = "drops" })
constructor "Camera()"
member("View", "osg::View")
member("Stats", "osg::Stats")
row { "void setAllowEventFocus(bool focus)", with = "false", seen = "not self:getAllowEventFocus()" }
row "bool getAllowEventFocus() const"
member("DisplaySettings", "osg::DisplaySettings")
row { "void setClearMask(GLbitfield mask)", seen = "native.numbers(self:getClearMask(), 'u', 1)[1] == 0x100, not pcall(self.setClearMask, self, 1)" }
row "GLbitfield getClearMask() const"
row "void setClearColor(const osg::Vec4& color)"
row "const osg::Vec4& getClearColor() const"
row "void setClearAccum(const osg::Vec4& color)"
row "const osg::Vec4& getClearAccum() const"
row { "void setClearDepth(double depth)", with = "0.3", seen = "self:getClearDepth() == 0.3" }
row { "double getClearDepth() const", before = "self:setClearDepth(0.3)", gives = "0.3" }
row { "void setClearStencil(int stencil)", with = "-3.7", seen = "self:getClearStencil() == -3" }
row { "int getClearStencil() const", before = "self:setClearStencil(-3)", gives = "-3" }
row "void setColorMask(osg::ColorMask* mask)"
row "void setColorMask(bool red, bool green, bool blue, bool alpha)"
row { "osg::ColorMask* getColorMask()", before = "self:setColorMask(true, true, true, false)" }
row { "const osg::ColorMask* getColorMask() const", before = "self:setColorMask(true, true, true, false)" }
row "void setViewport(osg::Viewport* viewport)"
row "void setViewport(int x, int y, int width, int height)"
row { "osg::Viewport* getViewport()", before = "self:setViewport(0, 0, 64, 32)" }
row { "const osg::Viewport* getViewport() const", before = "self:setViewport(0, 0, 64, 32)" }
constants { "PRE_MULTIPLY", 0, "POST_MULTIPLY", 1 }
row { "void setTransformOrder(enum osg::Camera::TransformOrder order)", seen = "self:getTransformOrder() == 1" }
row "enum osg::Camera::TransformOrder getTransformOrder() const"
constants { "FIXED", 0, "HORIZONTAL", 1, "VERTICAL", 2 }
row { "void setProjectionResizePolicy(enum osg::Camera::ProjectionResizePolicy policy)", with = "2.7", seen = "self:getProjectionResizePolicy() == 2" }
row "enum osg::Camera::ProjectionResizePolicy getProjectionResizePolicy() const"
row "void setProjectionMatrix(const osg::Matrixf& matrix)"
row "void setProjectionMatrix(const osg::Matrixd& matrix)"
row "void setProjectionMatrixAsOrtho(double left, double right, double bottom, double top, double near, double far)"
row "void setProjectionMatrixAsOrtho2D(double left, double right, double bottom, double top)"
row "void setProjectionMatrixAsFrustum(double left, double right, double bottom, double top, double near, double far)"
row "void setProjectionMatrixAsPerspective(double fovy, double aspect, double near, double far)"
row "osg::Matrixd& getProjectionMatrix()"
row "const osg::Matrixd& getProjectionMatrix() const"
row { "bool getProjectionMatrixAsOrtho(double& left, double& right, double& bottom, double& top, double& near, double& far) const", changes = true,
  before = "self:setProjectionMatrixAsOrtho(-1.5, 2.5, -3.5, 4.5, 0.5, 8)", gives = "true, -1.5, 2.5, -3.5, 4.5, 0.5, 8" }
row { "bool getProjectionMatrixAsFrustum(double& left, double& right, double& bottom, double& top, double& near, double& far) const", changes = true,
  before = "self:setProjectionMatrixAsFrustum(-1.5, 2.5, -3.5, 4.5, 0.5, 8)", gives = "true, -1.5, 2.5, -3.5, 4.5, 0.5, 8" }
row { "bool getProjectionMatrixAsPerspective(double& fovy, double& aspect, double& near, double& far) const", changes = true,
  before = "self:setProjectionMatrixAsPerspective(40, 1.5, 0.5, 8)", gives = "true, 40, 1.5, 0.5, 8" }
row "void setViewMatrix(const osg::Matrixf& matrix)"
row "void setViewMatrix(const osg::Matrixd& matrix)"
row "osg::Matrixd& getViewMatrix()"
row "const osg::Matrixd& getViewMatrix() const"
row { "void setViewMatrixAsLookAt(const osg::Vec3d& eye, const osg::Vec3d& center, const osg::Vec3d& up)", with = "eye, center, up" }
row { "void getViewMatrixAsLookAt(osg::Vec3d& eye, osg::Vec3d& center, osg::Vec3d& up, double distance = 1) const", with = "a, b, c, 2.5",
  before = "self:setViewMatrixAsLookAt(eye, center, up)", seen = "a._v[2] == 3, b._v[1] == 4.5, c._v[2] == 1" }
row { "void getViewMatrixAsLookAt(osg::Vec3f& eye, osg::Vec3f& center, osg::Vec3f& up, float distance = 1) const",
  before = "self:setViewMatrixAsLookAt(eye, center, up)" }
row "osg::Matrixd getInverseViewMatrix() const"
constants { "PRE_RENDER", 0, "NESTED_RENDER", 1, "POST_RENDER", 2 }
row { "void setRenderOrder(enum osg::Camera::RenderOrder order, int number = 0)", with = "2.7, -2.7",
  seen = "self:getRenderOrder() == 2, self:getRenderOrderNum() == -2" }
row "enum osg::Camera::RenderOrder getRenderOrder() const"
row { "int getRenderOrderNum() const", before = "self:setRenderOrder(0, -2)", gives = "-2" }
row "bool isRenderToTextureCamera() const"
constants { "FRAME_BUFFER_OBJECT", 0, "PIXEL_BUFFER_RTT", 1, "PIXEL_BUFFER", 2, "FRAME_BUFFER", 3 }
row { "void setRenderTargetImplementation(enum osg::Camera::RenderTargetImplementation implementation)", seen = "self:getRenderTargetImplementation() == 1" }
row { "void setRenderTargetImplementation(enum osg::Camera::RenderTargetImplementation implementation, enum osg::Camera::RenderTargetImplementation fallback)",
  with = "1.7, 3.7", seen = "self:getRenderTargetFallback() == 3" }
row "enum osg::Camera::RenderTargetImplementation getRenderTargetImplementation() const"
row "enum osg::Camera::RenderTargetImplementation getRenderTargetFallback() const"
row "void setDrawBuffer(GLenum buffer)"
row "GLenum getDrawBuffer() const"
row "void setReadBuffer(GLenum buffer)"
row "GLenum getReadBuffer() const"
constants {
  "DEPTH_BUFFER", 0, "STENCIL_BUFFER", 1, "PACKED_DEPTH_STENCIL_BUFFER", 2, "COLOR_BUFFER", 3, "COLOR_BUFFER0", 4,
  "COLOR_BUFFER1", 5, "COLOR_BUFFER2", 6, "COLOR_BUFFER3", 7, "COLOR_BUFFER4", 8, "COLOR_BUFFER5", 9,
  "COLOR_BUFFER6", 10, "COLOR_BUFFER7", 11, "COLOR_BUFFER8", 12, "COLOR_BUFFER9", 13, "COLOR_BUFFER10", 14,
  "COLOR_BUFFER11", 15, "COLOR_BUFFER12", 16, "COLOR_BUFFER13", 17, "COLOR_BUFFER14", 18, "COLOR_BUFFER15", 19,
}
variable("unsigned int FACE_CONTROLLED_BY_GEOMETRY_SHADER", { readOnly = true, static = true, is = 2 ^ 32 - 1 })
row { "void attach(enum osg::Camera::BufferComponent buffer, GLenum format)", with = "4.7" }
row { "void attach(enum osg::Camera::BufferComponent buffer, osg::Texture* texture, unsigned int level = 0, unsigned int face = 0,"
  .. " bool mipmaps = false, unsigned int samples = 0, unsigned int colorSamples = 0)", with = "4.7" }
row { "void attach(enum osg::Camera::BufferComponent buffer, osg::Image* image, unsigned int samples = 0, unsigned int colorSamples = 0)",
  with = "4.7" }
row { "void detach(enum osg::Camera::BufferComponent buffer)", with = "4.7" }
class("Camera.Attachment", { collector = "deletes" })
constructor "Attachment()"
row { "int width() const", gives = "0" }
row { "int height() const", gives = "0" }
row { "int depth() const", gives = "0" }
back "Camera"
row "std::map<osg::Camera::BufferComponent,osg::Camera::Attachment>& getBufferAttachmentMap()"
row "const std::map<osg::Camera::BufferComponent,osg::Camera::Attachment>& getBufferAttachmentMap() const"
constants {
  "IMPLICIT_DEPTH_BUFFER_ATTACHMENT", 1, "IMPLICIT_STENCIL_BUFFER_ATTACHMENT", 2, "IMPLICIT_COLOR_BUFFER_ATTACHMENT", 4,
  "USE_DISPLAY_SETTINGS_MASK", -1,
}
row "void setImplicitBufferAttachmentMask(int render = 5, int resolve = 5)"
row { "void setImplicitBufferAttachmentRenderMask(int mask)", with = "6.7", seen = "self:getImplicitBufferAttachmentRenderMask() == 6" }
row { "void setImplicitBufferAttachmentResolveMask(int mask)", with = "6.7", seen = "self:getImplicitBufferAttachmentResolveMask() == 6" }
row "int getImplicitBufferAttachmentRenderMask(bool effective = false) const"
row "int getImplicitBufferAttachmentResolveMask(bool effective = false) const"
row "void createCameraThread()"
member("GraphicsContext", "osg::GraphicsContext")
member("Renderer", "osg::GraphicsOperation")
member("RenderingCache", "osg::Object")
row "OpenThreads::Mutex* getDataChangeMutex() const"
row { "void resizeGLObjectBuffers(unsigned int size)", guarded = "1" }
row { "void releaseGLObjects(osg::State* state = nullptr) const", with = "nil" }
row "bool computeLocalToWorldMatrix(osg::Matrix& matrix, osg::NodeVisitor* visitor) const"
row "bool computeWorldToLocalMatrix(osg::Matrix& matrix, osg::NodeVisitor* visitor) const"

namespace "vyrOSG"
class("RenderToTexture", { base = "vyr::Object", collector = "drops" })
constructor { "RenderToTexture(size_t width, size_t height, size_t samples = 8, int format = 6408)", with = "64.7, 32.7, 3.7, 6408.7" }
row "void setReferenceCamera(const osg::Camera* camera)"
row { "void setImageCapture(vyrOSG::ImageCapture* capture)", with = "capture", seen = "native.address(self:getImageCapture()) == native.address(capture)" }
row "vyr::Vec2u getSize() const"
row "osg::Camera* getCamera()"
row "osg::Texture2D* getTexture()"
row { "vyrOSG::ImageCapture* getImageCapture()", before = "self:setImageCapture(capture)", gives = "capture" }
