// What the camera's wrappers refuse, and which of them take a read-only camera: every function of the registration.
#include "CallChecks.h"

#include <osg/Camera>
#include <osg/Matrixd>
#include <osg/Matrixf>
#include <osg/Vec4>

namespace {

class CameraCalls : public bindingtest::CallChecks {
protected:
  CameraCalls() { lua.run("c = osg.Camera()"); }
};

TEST_F(CameraCalls, EveryFunctionRefusesForeignAndNullSelfAndSurplus) {
  osg::Vec4 color;
  osg::Matrixd twice;
  osg::Matrixf single;
  // An address has one type in a state: what goes under another name is another object.
  osg::Matrixd world;
  GLenum value = GL_BACK;
  GLbitfield bits = 0;
  set("color", &color, "osg::Vec4");
  set("twice", &twice, "osg::Matrixd");
  set("single", &single, "osg::Matrixf");
  set("enum", &value, "GLenum");
  set("bits", &bits, "GLbitfield");
  set("matrix", &world, "osg::Matrix");
  constexpr bindingtest::Call calls[] = {
      {"setView", "nil"},
      {"getView", ""},
      {"setStats", "nil"},
      {"getStats", ""},
      {"setAllowEventFocus", "true"},
      {"getAllowEventFocus", ""},
      {"setDisplaySettings", "nil"},
      {"getDisplaySettings", ""},
      {"setClearMask", "bits"},
      {"getClearMask", ""},
      {"setClearColor", "color"},
      {"getClearColor", ""},
      {"setClearAccum", "color"},
      {"getClearAccum", ""},
      {"setClearDepth", "1"},
      {"getClearDepth", ""},
      {"setClearStencil", "1"},
      {"getClearStencil", ""},
      {"setColorMask", "nil"},
      {"setColorMask", "true, true, true, true"},
      {"getColorMask", ""},
      {"setViewport", "1, 1, 1, 1"},
      {"setViewport", "nil"},
      {"getViewport", ""},
      {"setTransformOrder", "0"},
      {"getTransformOrder", ""},
      {"setProjectionResizePolicy", "0"},
      {"getProjectionResizePolicy", ""},
      {"setProjectionMatrix", "single"},
      {"setProjectionMatrix", "twice"},
      {"setProjectionMatrixAsOrtho", "-1, 1, -1, 1, 1, 2"},
      {"setProjectionMatrixAsOrtho2D", "-1, 1, -1, 1"},
      {"setProjectionMatrixAsFrustum", "-1, 1, -1, 1, 1, 2"},
      {"setProjectionMatrixAsPerspective", "40, 1, 1, 2"},
      {"getProjectionMatrix", ""},
      {"getProjectionMatrixAsOrtho", "0, 0, 0, 0, 0, 0"},
      {"getProjectionMatrixAsFrustum", "0, 0, 0, 0, 0, 0"},
      {"getProjectionMatrixAsPerspective", "0, 0, 0, 0"},
      {"setViewMatrix", "single"},
      {"setViewMatrix", "twice"},
      {"getViewMatrix", ""},
      {"setViewMatrixAsLookAt", "osg.Vec3d(0, -1, 0), osg.Vec3d(), osg.Vec3d(0, 0, 1)"},
      {"getViewMatrixAsLookAt", "osg.Vec3d(), osg.Vec3d(), osg.Vec3d()"},
      {"getViewMatrixAsLookAt", "osg.Vec3f(), osg.Vec3f(), osg.Vec3f(), 2"},
      {"getInverseViewMatrix", ""},
      {"setRenderOrder", "0"},
      {"setRenderOrder", "0, 1"},
      {"getRenderOrder", ""},
      {"getRenderOrderNum", ""},
      {"isRenderToTextureCamera", ""},
      {"setRenderTargetImplementation", "0"},
      {"setRenderTargetImplementation", "0, 3"},
      {"getRenderTargetImplementation", ""},
      {"getRenderTargetFallback", ""},
      {"setDrawBuffer", "enum"},
      {"getDrawBuffer", ""},
      {"setReadBuffer", "enum"},
      {"getReadBuffer", ""},
      {"attach", "4, enum"},
      {"attach", "4, nil"},
      {"detach", "4"},
      {"getBufferAttachmentMap", ""},
      {"setImplicitBufferAttachmentMask", ""},
      {"setImplicitBufferAttachmentRenderMask", "1"},
      {"setImplicitBufferAttachmentResolveMask", "1"},
      {"getImplicitBufferAttachmentRenderMask", ""},
      {"getImplicitBufferAttachmentResolveMask", "true"},
      {"createCameraThread", ""},
      {"setGraphicsContext", "nil"},
      {"getGraphicsContext", ""},
      {"setRenderer", "nil"},
      {"getRenderer", ""},
      {"setRenderingCache", "nil"},
      {"getRenderingCache", ""},
      {"getDataChangeMutex", ""},
      {"resizeGLObjectBuffers", "1"},
      {"releaseGLObjects", ""},
      {"computeLocalToWorldMatrix", "matrix, nil"},
      {"computeWorldToLocalMatrix", "matrix, nil"},
  };
  expectRefusals("osg.Camera", "c", "osg::Camera", calls);
  const osg::ref_ptr<osg::Camera> other = new osg::Camera;
  expectConstant(
      "osg.Camera", other.get(), "osg::Camera", calls,
      "getView getStats getAllowEventFocus getDisplaySettings getClearMask getClearColor getClearAccum "
      "getClearDepth getClearStencil getColorMask getViewport getTransformOrder getProjectionResizePolicy "
      "getProjectionMatrix getProjectionMatrixAsOrtho getProjectionMatrixAsFrustum "
      "getProjectionMatrixAsPerspective getViewMatrix getViewMatrixAsLookAt getInverseViewMatrix getRenderOrder "
      "getRenderOrderNum isRenderToTextureCamera getRenderTargetImplementation getRenderTargetFallback "
      "getDrawBuffer getReadBuffer getBufferAttachmentMap getImplicitBufferAttachmentRenderMask "
      "getImplicitBufferAttachmentResolveMask getGraphicsContext getRenderer getRenderingCache "
      "getDataChangeMutex releaseGLObjects computeLocalToWorldMatrix computeWorldToLocalMatrix");
}

} // namespace
