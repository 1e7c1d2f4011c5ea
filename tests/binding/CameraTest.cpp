// The camera as the module RenderToTexture registers it: every row, constants, in-out numbers, views, references.
#include "CallChecks.h"

#include <OpenThreads/Mutex>
#include <osg/Camera>
#include <osg/ColorMask>
#include <osg/DisplaySettings>
#include <osg/GraphicsContext>
#include <osg/Image>
#include <osg/NodeVisitor>
#include <osg/State>
#include <osg/Stats>
#include <osg/Texture2D>
#include <osg/View>
#include <osg/Viewport>

namespace {

using bindingtest::lastRaised;

/// A graphics context that draws nothing.
class IdleContext : public osg::GraphicsContext {
public:
  bool valid() const override { return true; }
  bool realizeImplementation() override { return true; }
  bool isRealizedImplementation() const override { return true; }
  void closeImplementation() override {}
  bool makeCurrentImplementation() override { return true; }
  bool makeContextCurrentImplementation(osg::GraphicsContext*) override { return true; }
  bool releaseContextImplementation() override { return true; }
  void bindPBufferToTextureImplementation(GLenum) override {}
  void swapBuffersImplementation() override {}
};

/// Work for a context that does nothing.
class IdleOperation : public osg::GraphicsOperation {
public:
  IdleOperation()
      : osg::Referenced(true)
      , osg::GraphicsOperation("idle", false) {}
  void operator()(osg::GraphicsContext*) override {}
};

class Camera : public bindingtest::CallChecks {
protected:
  Camera() {
    lua.run("c = osg.Camera()");
    camera = global<osg::Camera>("c");
  }
  osg::ref_ptr<osg::Camera> camera;
};

TEST_F(Camera, IsBuiltThreeWays) {
  lua.run("a = osg.Camera:new() b = osg.Camera:new_local()");
  EXPECT_EQ("osg::Camera osg::Camera osg::Camera", lua.eval("a, b, c"));
  const osg::ref_ptr<osg::Camera> keep = global<osg::Camera>("a");
  EXPECT_EQ(1, keep->referenceCount());
  EXPECT_EQ(1, global<osg::Camera>("b")->referenceCount());
  EXPECT_EQ(2, camera->referenceCount());
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("osg.Camera:new(1)"));
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("osg.Camera(1)"));
}

TEST_F(Camera, CollectionDropsTheReferenceOfLua) {
  lua.run("b = osg.Camera()");
  const osg::observer_ptr<osg::Camera> alone = global<osg::Camera>("b");
  lua.run("b, c = nil, nil");
  lua.collect();
  EXPECT_FALSE(alone.valid());
  EXPECT_EQ(1, camera->referenceCount());
}

TEST_F(Camera, ConstantsHaveTheirValues) {
  EXPECT_EQ("0 1 0 1 2", lua.eval("c.PRE_MULTIPLY, c.POST_MULTIPLY, c.FIXED, c.HORIZONTAL, c.VERTICAL"));
  EXPECT_EQ("0 1 2", lua.eval("c.PRE_RENDER, c.NESTED_RENDER, c.POST_RENDER"));
  EXPECT_EQ("0 1 2 3", lua.eval("c.FRAME_BUFFER_OBJECT, c.PIXEL_BUFFER_RTT, c.PIXEL_BUFFER, c.FRAME_BUFFER"));
  EXPECT_EQ("0 1 2 3", lua.eval("c.DEPTH_BUFFER, c.STENCIL_BUFFER, c.PACKED_DEPTH_STENCIL_BUFFER, c.COLOR_BUFFER"));
  for (int i = 0; i < 16; ++i)
    EXPECT_EQ(std::to_string(4 + i), lua.eval("osg.Camera.COLOR_BUFFER" + std::to_string(i)));
  EXPECT_EQ("1 2 4 -1", lua.eval("c.IMPLICIT_DEPTH_BUFFER_ATTACHMENT, c.IMPLICIT_STENCIL_BUFFER_ATTACHMENT, "
                                 "c.IMPLICIT_COLOR_BUFFER_ATTACHMENT, c.USE_DISPLAY_SETTINGS_MASK"));
}

TEST_F(Camera, TheStaticConstantIsAReadOnlyVariable) {
  const std::string value = std::to_string(osg::Camera::FACE_CONTROLLED_BY_GEOMETRY_SHADER);
  EXPECT_EQ(value, lua.run("return string.format('%.0f', c.FACE_CONTROLLED_BY_GEOMETRY_SHADER)"));
  EXPECT_EQ(value, lua.run("return string.format('%.0f', osg.Camera.FACE_CONTROLLED_BY_GEOMETRY_SHADER)"));
}

TEST_F(Camera, SharedObjectsAreCountedAndReadBackReadOnly) {
  osg::ref_ptr<osg::Stats> stats = new osg::Stats("stats");
  osg::ref_ptr<osg::DisplaySettings> settings = new osg::DisplaySettings;
  osg::ref_ptr<osg::ColorMask> mask = new osg::ColorMask;
  osg::ref_ptr<osg::Viewport> viewport = new osg::Viewport(1, 2, 3, 4);
  osg::ref_ptr<IdleContext> context = new IdleContext;
  osg::ref_ptr<IdleOperation> renderer = new IdleOperation;
  osg::ref_ptr<osg::Group> cache = new osg::Group;
  const struct {
    const char* name;
    void* object;
    const char* type;
    const osg::Referenced* counted;
  } rows[] = {
      {"Stats", stats.get(), "osg::Stats", stats.get()},
      {"DisplaySettings", settings.get(), "osg::DisplaySettings", settings.get()},
      {"ColorMask", mask.get(), "osg::ColorMask", mask.get()},
      {"Viewport", viewport.get(), "osg::Viewport", viewport.get()},
      {"GraphicsContext", static_cast<osg::GraphicsContext*>(context.get()), "osg::GraphicsContext", context.get()},
      {"Renderer", static_cast<osg::GraphicsOperation*>(renderer.get()), "osg::GraphicsOperation", renderer.get()},
      {"RenderingCache", static_cast<osg::Object*>(cache.get()), "osg::Object", cache.get()}};
  for (const auto& row : rows) {
    const std::string name = row.name;
    set("object", row.object, row.type);
    EXPECT_EQ("", lua.run("return c:set" + name + "(object)")) << name;
    // Mask and viewport also stand in the camera's state set.
    const int held = row.counted->referenceCount();
    EXPECT_GE(held, 2) << name;
    // The overload for read-only cameras is tried first and takes every camera; a value that a script holds already
    // keeps its better type.
    EXPECT_EQ(row.type, lua.run("return c:get" + name + "()")) << name;
    lua.run("object = nil");
    lua.collect();
    EXPECT_EQ(std::string("const ") + row.type, lua.run("return c:get" + name + "()")) << name;
    EXPECT_EQ(held, row.counted->referenceCount()) << name;
    EXPECT_EQ("#ferror in function 'set" + name + "'.", lua.raised("c:set" + name + "({})")) << name;
    EXPECT_EQ("nil", lua.run("c:set" + name + "(nil) return c:get" + name + "()")) << name;
    EXPECT_LT(row.counted->referenceCount(), held) << name;
    lua.collect();
  }
}

TEST_F(Camera, TheViewIsOnlyPointedAt) {
  const osg::ref_ptr<osg::View> view = new osg::View;
  set("view", view.get(), "osg::View");
  EXPECT_EQ("", lua.run("return c:setView(view)"));
  EXPECT_EQ(view.get(), camera->getView());
  EXPECT_EQ(1, view->referenceCount());
  lua.run("view = nil");
  lua.collect();
  EXPECT_EQ("const osg::View", lua.run("return c:getView()"));
  EXPECT_EQ("nil", lua.run("c:setView(nil) return c:getView()"));
}

TEST_F(Camera, PlainValues) {
  EXPECT_EQ("false true",
            lua.run("c:setAllowEventFocus(false) local a = c:getAllowEventFocus() c:setAllowEventFocus(true) "
                    "return a, c:getAllowEventFocus()"));
  EXPECT_EQ("0.25", lua.run("c:setClearDepth(0.25) return c:getClearDepth()"));
  EXPECT_EQ("-3", lua.run("c:setClearStencil(-3.9) return c:getClearStencil()"));
  EXPECT_EQ("0", lua.run("c:setTransformOrder(osg.Camera.PRE_MULTIPLY) return c:getTransformOrder()"));
  EXPECT_EQ("2", lua.run("c:setProjectionResizePolicy(c.VERTICAL) return c:getProjectionResizePolicy()"));
  EXPECT_EQ("#ferror in function 'setClearDepth'.", lua.raised("c:setClearDepth('x')"));
  EXPECT_EQ("#ferror in function 'setAllowEventFocus'.", lua.raised("c:setAllowEventFocus(1)"));
}

TEST_F(Camera, MasksAreObjectsAndNotNumbers) {
  EXPECT_EQ("GLbitfield", lua.run("mask = c:getClearMask() return mask"));
  EXPECT_EQ(camera->getClearMask(), *global<GLbitfield>("mask"));
  *global<GLbitfield>("mask") = 64;
  EXPECT_EQ("", lua.run("return c:setClearMask(mask)"));
  EXPECT_EQ(64u, camera->getClearMask());
  EXPECT_EQ("#ferror in function 'setClearMask'.", lua.raised("c:setClearMask(64)"));
  EXPECT_EQ("GLbitfield", lastRaised().type);
  EXPECT_EQ("#ferror in function 'setClearMask'.", lua.raised("c:setClearMask(nil)"));
  for (const std::string name : {"DrawBuffer", "ReadBuffer"}) {
    EXPECT_EQ("GLenum", lua.run("buffer = c:get" + name + "() return buffer")) << name;
    *global<GLenum>("buffer") = GL_BACK;
    EXPECT_EQ("", lua.run("return c:set" + name + "(buffer)")) << name;
    EXPECT_EQ("#ferror in function 'set" + name + "'.", lua.raised("c:set" + name + "(1029)")) << name;
  }
  EXPECT_EQ(static_cast<GLenum>(GL_BACK), camera->getDrawBuffer());
  EXPECT_EQ(static_cast<GLenum>(GL_BACK), camera->getReadBuffer());
  lua.run("mask, buffer = nil, nil");
  lua.collect();
}

TEST_F(Camera, ColorsAreViewsIntoTheCamera) {
  osg::Vec4 color(0.25f, 0.5f, 0.75f, 1.0f);
  set("color", &color, "osg::Vec4");
  EXPECT_EQ(
      "const osg::Vec4 const osg::Vec4",
      lua.run("c:setClearColor(color) c:setClearAccum(color) a, b = c:getClearColor(), c:getClearAccum() return a, b"));
  EXPECT_EQ(color, camera->getClearColor());
  EXPECT_EQ(color, camera->getClearAccum());
  EXPECT_EQ(&camera->getClearColor(), global<osg::Vec4>("a"));
  EXPECT_EQ(&camera->getClearAccum(), global<osg::Vec4>("b"));
  EXPECT_EQ("#ferror in function 'setClearColor'.", lua.raised("c:setClearColor(nil)"));
  EXPECT_EQ("#ferror in function 'setClearAccum'.", lua.raised("c:setClearAccum(1)"));
}

TEST_F(Camera, MaskAndViewportTakeNumbersToo) {
  EXPECT_EQ("", lua.run("return c:setColorMask(true, false, true, false)"));
  ASSERT_TRUE(camera->getColorMask());
  EXPECT_TRUE(camera->getColorMask()->getRedMask());
  EXPECT_FALSE(camera->getColorMask()->getGreenMask());
  EXPECT_TRUE(camera->getColorMask()->getBlueMask());
  EXPECT_FALSE(camera->getColorMask()->getAlphaMask());
  EXPECT_EQ("", lua.run("return c:setViewport(1.9, 2, 30, 40)"));
  ASSERT_TRUE(camera->getViewport());
  EXPECT_EQ(1.0, camera->getViewport()->x());
  EXPECT_EQ(40.0, camera->getViewport()->height());
  EXPECT_EQ("#ferror in function 'setColorMask'.", lua.raised("c:setColorMask(true, false, true)"));
  EXPECT_EQ("#ferror in function 'setViewport'.", lua.raised("c:setViewport(1, 2, 3)"));
}

TEST_F(Camera, ProjectionsAreSetByNumbers) {
  EXPECT_EQ("true -1 1 -2 2 3 4", lua.run("c:setProjectionMatrixAsOrtho(-1, 1, -2, 2, 3, 4) "
                                          "return c:getProjectionMatrixAsOrtho(0, 0, 0, 0, 0, 0)"));
  EXPECT_EQ("true -1 1 -2 2 -1 1", lua.run("c:setProjectionMatrixAsOrtho2D(-1, 1, -2, 2) "
                                           "return c:getProjectionMatrixAsOrtho(0, 0, 0, 0, 0, 0)"));
  lua.run("c:setProjectionMatrixAsFrustum(-1, 1, -2, 2, 3, 6)");
  EXPECT_EQ("7 true", lua.run("local r = {c:getProjectionMatrixAsFrustum(0, 0, 0, 0, 0, 0)} return #r, r[1]"));
  EXPECT_EQ("-1.0 1.0 -2.0 2.0 3.0 6.0",
            lua.run("local _, l, r, b, t, n, f = c:getProjectionMatrixAsFrustum(0, 0, 0, 0, 0, 0) "
                    "return string.format('%.1f %.1f %.1f %.1f %.1f %.1f', l, r, b, t, n, f)"));
  EXPECT_EQ("true 40.0 1.5 1.0 100.0", lua.run("c:setProjectionMatrixAsPerspective(40, 1.5, 1, 100) "
                                               "local ok, y, a, n, f = c:getProjectionMatrixAsPerspective(0, 0, 0, 0) "
                                               "return ok, string.format('%.1f %.1f %.1f %.1f', y, a, n, f)"));
}

TEST_F(Camera, InOutNumbersAreRequiredAndComeBackEvenWhenNothingFits) {
  lua.run("c:setProjectionMatrixAsPerspective(40, 1.5, 1, 100)");
  EXPECT_EQ("7 false", lua.run("local r = {c:getProjectionMatrixAsOrtho(1, 2, 3, 4, 5, 6)} return #r, r[1]"));
  lua.run("c:setProjectionMatrixAsOrtho(-1, 1, -2, 2, 3, 4)");
  EXPECT_EQ("5 false", lua.run("local r = {c:getProjectionMatrixAsPerspective(1, 2, 3, 4)} return #r, r[1]"));
  for (const std::string name : {"Ortho", "Frustum", "Perspective"})
    EXPECT_EQ("#ferror in function 'getProjectionMatrixAs" + name + "'.",
              lua.raised("c:getProjectionMatrixAs" + name + "()"));
}

TEST_F(Camera, MatricesAreViewsAndSinglePrecisionIsWidened) {
  osg::Matrixd twice = osg::Matrixd::translate(0.1, 2, 3);
  osg::Matrixf single = osg::Matrixf::translate(0.1f, 2, 3);
  set("twice", &twice, "osg::Matrixd");
  set("single", &single, "osg::Matrixf");
  lua.run("c:setProjectionMatrix(twice) c:setViewMatrix(twice)");
  EXPECT_EQ(twice, camera->getProjectionMatrix());
  EXPECT_EQ(twice, camera->getViewMatrix());
  EXPECT_EQ("const osg::Matrixd const osg::Matrixd",
            lua.run("p, v = c:getProjectionMatrix(), c:getViewMatrix() return p, v"));
  EXPECT_EQ(&camera->getProjectionMatrix(), global<osg::Matrixd>("p"));
  EXPECT_EQ(&camera->getViewMatrix(), global<osg::Matrixd>("v"));
  camera->getBound();
  EXPECT_EQ("", lua.run("c:setProjectionMatrix(single) return c:setViewMatrix(single)"));
  EXPECT_EQ(osg::Matrixd(single), camera->getProjectionMatrix());
  EXPECT_EQ(osg::Matrixd(single), camera->getViewMatrix());
  EXPECT_EQ("osg::Matrixd", lua.run("inverse = c:getInverseViewMatrix() return inverse"));
  EXPECT_NEAR(-2.0, global<osg::Matrixd>("inverse")->getTrans().y(), 1e-12);
  EXPECT_NE(&camera->getViewMatrix(), global<osg::Matrixd>("inverse"));
  EXPECT_EQ("#ferror in function 'setViewMatrix'.", lua.raised("c:setViewMatrix(nil)"));
  EXPECT_EQ("#ferror in function 'setProjectionMatrix'.", lua.raised("c:setProjectionMatrix(c)"));
}

TEST_F(Camera, LookAtFillsVectorsOfBothPrecisions) {
  lua.run("c:setViewMatrixAsLookAt(osg.Vec3d(0, -10, 0), osg.Vec3d(0, 0, 0), osg.Vec3d(0, 0, 1))");
  for (const std::string type : {"Vec3d", "Vec3f"}) {
    lua.run("e, m, u = osg." + type + "(), osg." + type + "(), osg." + type + "()");
    EXPECT_EQ("", lua.run("return c:getViewMatrixAsLookAt(e, m, u)")) << type;
    EXPECT_EQ("-10.0 -9.0 1.0", lua.run("return string.format('%.1f %.1f %.1f', e:y(), m:y(), u:z())")) << type;
    lua.run("c:getViewMatrixAsLookAt(e, m, u, 10)");
    EXPECT_EQ("0.0", lua.run("return string.format('%.1f', math.abs(m:y()))")) << type;
  }
  EXPECT_EQ("#ferror in function 'getViewMatrixAsLookAt'.",
            lua.raised("c:getViewMatrixAsLookAt(osg.Vec3d(), osg.Vec3f(), osg.Vec3d())"));
  EXPECT_EQ("#ferror in function 'setViewMatrixAsLookAt'.", lua.raised("c:setViewMatrixAsLookAt(e, m)"));
}

TEST_F(Camera, RenderOrderAndTarget) {
  EXPECT_EQ("2 0",
            lua.run("c:setRenderOrder(osg.Camera.POST_RENDER) return c:getRenderOrder(), c:getRenderOrderNum()"));
  EXPECT_EQ("0 7", lua.run("c:setRenderOrder(0, 7) return c:getRenderOrder(), c:getRenderOrderNum()"));
  EXPECT_EQ("false", lua.eval("c:isRenderToTextureCamera()"));
  // Without a fallback of one's own the next implementation is the fallback.
  EXPECT_EQ("0 1", lua.run("c:setRenderTargetImplementation(c.FRAME_BUFFER_OBJECT) "
                           "return c:getRenderTargetImplementation(), c:getRenderTargetFallback()"));
  EXPECT_EQ("0 2", lua.run("c:setRenderTargetImplementation(c.FRAME_BUFFER_OBJECT, c.PIXEL_BUFFER) "
                           "return c:getRenderTargetImplementation(), c:getRenderTargetFallback()"));
}

TEST_F(Camera, AttachmentsInThreeKinds) {
  const osg::ref_ptr<osg::Texture2D> texture = new osg::Texture2D;
  const osg::ref_ptr<osg::Image> image = new osg::Image;
  GLenum format = GL_DEPTH_COMPONENT;
  set("texture", static_cast<osg::Texture*>(texture.get()), "osg::Texture");
  set("image", image.get(), "osg::Image");
  set("format", &format, "GLenum");
  EXPECT_EQ("", lua.run("return c:attach(osg.Camera.DEPTH_BUFFER, format)"));
  EXPECT_EQ(static_cast<GLenum>(GL_DEPTH_COMPONENT),
            camera->getBufferAttachmentMap()[osg::Camera::DEPTH_BUFFER]._internalFormat);
  lua.run("c:attach(osg.Camera.COLOR_BUFFER0, texture)");
  const osg::Camera::Attachment& plain = camera->getBufferAttachmentMap()[osg::Camera::COLOR_BUFFER0];
  EXPECT_EQ(texture.get(), plain._texture.get());
  EXPECT_EQ(0u, plain._level + plain._face + plain._multisampleSamples + plain._multisampleColorSamples);
  EXPECT_FALSE(plain._mipMapGeneration);
  lua.run("c:attach(osg.Camera.COLOR_BUFFER1, texture, 1, 2, true, 4, 3)");
  const osg::Camera::Attachment& full = camera->getBufferAttachmentMap()[osg::Camera::COLOR_BUFFER1];
  EXPECT_EQ(1u, full._level);
  EXPECT_EQ(2u, full._face);
  EXPECT_TRUE(full._mipMapGeneration);
  EXPECT_EQ(4u, full._multisampleSamples);
  EXPECT_EQ(3u, full._multisampleColorSamples);
  lua.run("c:attach(osg.Camera.COLOR_BUFFER2, image)");
  EXPECT_EQ(image.get(), camera->getBufferAttachmentMap()[osg::Camera::COLOR_BUFFER2]._image.get());
  lua.run("c:attach(osg.Camera.COLOR_BUFFER3, image, 8, 2)");
  EXPECT_EQ(8u, camera->getBufferAttachmentMap()[osg::Camera::COLOR_BUFFER3]._multisampleSamples);
  EXPECT_EQ(2u, camera->getBufferAttachmentMap()[osg::Camera::COLOR_BUFFER3]._multisampleColorSamples);
  EXPECT_EQ("#ferror in function 'attach'.", lua.raised("c:attach(osg.Camera.COLOR_BUFFER, 6408)"));
  EXPECT_EQ("GLenum", lastRaised().type);
  EXPECT_EQ("", lua.run("return c:detach(osg.Camera.COLOR_BUFFER2)"));
  EXPECT_EQ(0u, camera->getBufferAttachmentMap().count(osg::Camera::COLOR_BUFFER2));
  EXPECT_EQ("const std::map<osg::Camera::BufferComponent,osg::Camera::Attachment>",
            lua.run("map = c:getBufferAttachmentMap() return map"));
  EXPECT_EQ(static_cast<void*>(&camera->getBufferAttachmentMap()), global<void>("map"));
}

TEST_F(Camera, AnAttachmentIsAValue) {
  for (const std::string construct : {"A:new()", "A:new_local()", "A()"}) {
    EXPECT_EQ("osg::Camera::Attachment 0 0 0",
              lua.run("A = osg.Camera.Attachment a = " + construct + " return a, a:width(), a:height(), a:depth()"));
  }
  const osg::ref_ptr<osg::Image> image = new osg::Image;
  image->allocateImage(4, 3, 2, GL_RGB, GL_UNSIGNED_BYTE);
  global<osg::Camera::Attachment>("a")->_image = image;
  EXPECT_EQ("4 3 2", lua.eval("a:width(), a:height(), a:depth()"));
  EXPECT_EQ(2, image->referenceCount());
  lua.run("a = nil");
  lua.collect();
  EXPECT_EQ(1, image->referenceCount());
  constexpr bindingtest::Call calls[] = {{"width", ""}, {"height", ""}, {"depth", ""}};
  expectRefusals("osg.Camera.Attachment", "A()", "osg::Camera::Attachment", calls);
  osg::Camera::Attachment readOnly;
  expectConstant("osg.Camera.Attachment", &readOnly, "osg::Camera::Attachment", calls, "width height depth");
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("A:new(1)"));
}

TEST_F(Camera, ImplicitBuffersDefaultToDepthAndColor) {
  EXPECT_EQ("-1 -1", lua.eval("c:getImplicitBufferAttachmentRenderMask(), c:getImplicitBufferAttachmentResolveMask()"));
  EXPECT_EQ("5 5",
            lua.eval("c:getImplicitBufferAttachmentRenderMask(true), c:getImplicitBufferAttachmentResolveMask(true)"));
  EXPECT_EQ("5 5", lua.run("c:setImplicitBufferAttachmentMask() return c:getImplicitBufferAttachmentRenderMask(), "
                           "c:getImplicitBufferAttachmentResolveMask()"));
  EXPECT_EQ("1 5", lua.run("c:setImplicitBufferAttachmentMask(1) return c:getImplicitBufferAttachmentRenderMask(), "
                           "c:getImplicitBufferAttachmentResolveMask()"));
  EXPECT_EQ("1 2", lua.run("c:setImplicitBufferAttachmentMask(1, 2) return c:getImplicitBufferAttachmentRenderMask(), "
                           "c:getImplicitBufferAttachmentResolveMask()"));
  EXPECT_EQ("3 4", lua.run("c:setImplicitBufferAttachmentRenderMask(3) c:setImplicitBufferAttachmentResolveMask(4) "
                           "return c:getImplicitBufferAttachmentRenderMask(false), "
                           "c:getImplicitBufferAttachmentResolveMask(false)"));
}

TEST_F(Camera, ThreadsMutexAndObjectsOfOpenGL) {
  EXPECT_EQ("", lua.run("return c:createCameraThread()"));
  EXPECT_TRUE(camera->getCameraThread());
  EXPECT_EQ("OpenThreads::Mutex", lua.run("mutex = c:getDataChangeMutex() return mutex"));
  EXPECT_EQ(camera->getDataChangeMutex(), global<OpenThreads::Mutex>("mutex"));
  EXPECT_EQ("", lua.run("return c:resizeGLObjectBuffers(8)"));
  const osg::ref_ptr<osg::State> state = new osg::State;
  set("state", state.get(), "osg::State");
  EXPECT_EQ("", lua.run("c:releaseGLObjects() c:releaseGLObjects(nil) return c:releaseGLObjects(state)"));
}

TEST_F(Camera, WorldMatricesAreComputedInPlace) {
  lua.run("c:setViewMatrixAsLookAt(osg.Vec3d(0, -10, 0), osg.Vec3d(0, 0, 0), osg.Vec3d(0, 0, 1))");
  osg::Matrix matrix;
  osg::NodeVisitor visitor;
  set("matrix", &matrix, "osg::Matrix");
  set("visitor", &visitor, "osg::NodeVisitor");
  EXPECT_EQ("true", lua.run("return c:computeLocalToWorldMatrix(matrix, visitor)"));
  EXPECT_EQ(camera->getViewMatrix(), matrix);
  matrix.makeIdentity();
  EXPECT_EQ("true", lua.run("return c:computeWorldToLocalMatrix(matrix, nil)"));
  EXPECT_EQ(camera->getInverseViewMatrix(), matrix);
  EXPECT_EQ("#ferror in function 'computeLocalToWorldMatrix'.",
            lua.raised("c:computeLocalToWorldMatrix(nil, visitor)"));
}

} // namespace
