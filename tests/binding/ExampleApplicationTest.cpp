// The module ExampleApplication: the application, the camera, camera data and picking.
#include "ModuleTest.h"

#include <osg/Camera>
#include <osg/Group>
#include <vyr/AffineMatrix4x4.h>
#include <vyr/Vec2.h>
#include <vyr/Vec2u.h>
#include <vyr/Vec3.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Geometry.h>
#include <vyrOSG/CameraData.h>
#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/LaunchOptions.h>
#include <vyrSDK/PickHandler.h>
#include <vyrSDK/PickResult.h>

namespace {

using bindingtest::lastRaised;

class ExampleApplicationModule : public bindingtest::ModuleTest {
protected:
  ExampleApplicationModule() { set("c", camera.get(), "osg::Camera"); }
  osg::ref_ptr<osg::Camera> camera = new osg::Camera;
};

/// Picks what it was told to.
class FixedPick : public vyrSDK::PickHandler {
public:
  vyrSDK::PickResult pick(float x, float y) override {
    vyrSDK::PickResult result;
    result.geometry = geometry.get();
    result.distance = x;
    result.worldPoint = vyr::Vec3(x, y, 0);
    result.hit = true;
    return result;
  }
  vyr::ref_ptr<vyrCollide::Geometry> geometry = new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(1, 1, 1)));
};

TEST_F(ExampleApplicationModule, ConstantsStandWhereTheyBelong) {
  EXPECT_EQ("1 nil nil", lua.eval("OSG_CAMERA, vyrOSG.OSG_CAMERA, osg.OSG_CAMERA"));
  EXPECT_EQ("0 1 2 3 4 5 6",
            lua.eval("osg.ALWAYS, osg.FATAL, osg.WARN, osg.NOTICE, osg.INFO, osg.DEBUG_INFO, osg.DEBUG_FP"));
  EXPECT_EQ("0 1 2", lua.run("local A = vyrOSG.ExampleApplication return A.MULTI, A.ITERATIVE, A.NUM_SOLVERS"));
  EXPECT_EQ("0 1 2 3 19", lua.run("local C = osg.Camera return C.DEPTH_BUFFER, C.STENCIL_BUFFER, "
                                  "C.PACKED_DEPTH_STENCIL_BUFFER, C.COLOR_BUFFER, C.COLOR_BUFFER15"));
}

TEST_F(ExampleApplicationModule, ProjectionsAreReadIntoAllTheirNumbers) {
  lua.run("c:setProjectionMatrixAsPerspective(45, 1.5, 1, 100)");
  EXPECT_EQ("#ferror in function 'getProjectionMatrixAsPerspective'.",
            lua.raised("c:getProjectionMatrixAsPerspective()"));
  EXPECT_EQ("5 true true true", lua.run("local r = {c:getProjectionMatrixAsPerspective(0, 0, 0, 0)}"
                                        " return #r, r[1], math.abs(r[2] - 45) < 1e-9, math.abs(r[3] - 1.5) < 1e-9"));
  EXPECT_EQ("7", lua.run("return select('#', c:getProjectionMatrixAsFrustum(0, 0, 0, 0, 0, 0))"));
  lua.run("c:setProjectionMatrixAsOrtho(-1, 1, -2, 2, 1, 10)");
  EXPECT_EQ("7 true true", lua.run("local r = {c:getProjectionMatrixAsOrtho(0, 0, 0, 0, 0, 0)}"
                                   " return #r, r[1], math.abs(r[2] + 1) < 1e-12"));
  EXPECT_EQ(
      "none",
      lua.raised("c:setProjectionMatrixAsOrtho2D(-1, 1, -2, 2) c:setProjectionMatrixAsFrustum(-1, 1, -1, 1, 1, 9)"));
}

TEST_F(ExampleApplicationModule, TheRenderOrdersNumberDefaultsToZero) {
  camera->setRenderOrder(osg::Camera::PRE_RENDER, 5);
  EXPECT_EQ("2 0",
            lua.run("c:setRenderOrder(osg.Camera.POST_RENDER) return c:getRenderOrder(), c:getRenderOrderNum()"));
  EXPECT_EQ("0 -3", lua.run("c:setRenderOrder(0.9, -3.9) return c:getRenderOrder(), c:getRenderOrderNum()"));
}

TEST_F(ExampleApplicationModule, ClearValuesAndMasks) {
  EXPECT_EQ("0.5 3",
            lua.run("c:setClearDepth(0.5) c:setClearStencil(3.9) return c:getClearDepth(), c:getClearStencil()"));
  EXPECT_EQ("const osg::Vec4", lua.eval("c:getClearAccum()"));
  EXPECT_EQ("none", lua.raised("c:setColorMask(true, false, true, false)"));
  EXPECT_EQ("#ferror in function 'setColorMask'.", lua.raised("c:setColorMask(true, false, true)"));
  EXPECT_EQ("1 2 false",
            lua.run("c:setTransformOrder(1) c:setProjectionResizePolicy(2) c:setAllowEventFocus(false)"
                    " return c:getTransformOrder(), c:getProjectionResizePolicy(), c:getAllowEventFocus()"));
}

TEST_F(ExampleApplicationModule, PicksAreCopiesThatObserve) {
  vyr::ref_ptr<FixedPick> handler = new FixedPick;
  set("h", static_cast<vyrSDK::PickHandler*>(handler.get()), "vyrSDK::PickHandler");
  EXPECT_EQ("vyrSDK::PickResult true 0.25 vyrCollide::Geometry",
            lua.run("r = h:pick(0.25, 2) return r, r.hit, r.distance, r.geometry"));
  lua.run("p = r.worldPoint");
  EXPECT_EQ(vyr::Vec3(0.25, 2, 0), *global<vyr::Vec3>("p"));
  handler->geometry = nullptr;
  EXPECT_EQ("nil", lua.eval("r.geometry"));
  EXPECT_EQ("#ferror in function 'pick'.", lua.raised("h:pick(1)"));
}

TEST_F(ExampleApplicationModule, PickedGeometriesAreReplaced) {
  vyr::ref_ptr<FixedPick> handler = new FixedPick;
  vyr::ref_ptr<vyrCollide::Geometry> other = new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(1, 1, 1)));
  set("h", static_cast<vyrSDK::PickHandler*>(handler.get()), "vyrSDK::PickHandler");
  set("o", other.get(), "vyrCollide::Geometry");
  EXPECT_EQ(
      "true true nil",
      lua.run("r = h:pick(0, 0) local same = r.geometry r.geometry = same local first = r.geometry == same"
              " r.geometry = o local second = r.geometry == o r.geometry = nil return first, second, r.geometry"));
  EXPECT_EQ("#vinvalid type in variable assignment.", lua.raised("r.geometry = c"));
  EXPECT_EQ("#vinvalid type in variable assignment.", lua.raised("r.worldPoint = nil"));
  EXPECT_EQ("#vinvalid type in variable assignment.", lua.raised("r.hit = 1"));
}

TEST_F(ExampleApplicationModule, CameraDataIsReadFromCamerasAndViewers) {
  EXPECT_EQ("vyrOSG::CameraData", lua.eval("vyrOSG.CameraData(c)"));
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("vyrOSG.CameraData(1)"));
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("vyrOSG.CameraData()"));
  EXPECT_EQ("2.5 9 60 1.25 true",
            lua.run("d = vyrOSG.CameraData(c) d.nearClippingPlane = 2.5 d.farClippingPlane = 9 d.fieldOfView = 60"
                    " d.aspectRatio = 1.25 d.valid = true"
                    " return d.nearClippingPlane, d.farClippingPlane, d.fieldOfView, d.aspectRatio, d.valid"));
  EXPECT_EQ("#vinvalid type in variable assignment.", lua.raised("d.eye = 1"));
  EXPECT_EQ("#ferror in function 'applyTo'.", lua.raised("d:applyTo(1)"));
}

TEST_F(ExampleApplicationModule, TheEyeIsAViewThatKeepsItsRecord) {
  vyr::Vec3 eye(1, 2, 3);
  set("e", &eye, "vyr::Vec3");
  lua.run("d = vyrOSG.CameraData(c) d.eye = e view = d.eye d = nil");
  lua.collect();
  lua.run("for i = 1, 100 do local x = vyrOSG.CameraData(c) end");
  EXPECT_EQ(eye, *global<vyr::Vec3>("view"));
}

TEST_F(ExampleApplicationModule, AnApplicationCarriesLuasReference) {
  lua.run("a = vyrOSG.ExampleApplication()");
  EXPECT_EQ(1, global<vyrOSG::ExampleApplication>("a")->getReferenceCount());
  EXPECT_EQ("function", lua.eval("type(rawget(vyrOSG.ExampleApplication, '.collector'))"));
  lua.run("a = nil");
  lua.collect();
}

TEST_F(ExampleApplicationModule, SolversByNumberAndName) {
  EXPECT_EQ("1 1", lua.run("a = vyrOSG.ExampleApplication() a:setSolverType(1.9) return a:getSolverType(), select('#', "
                           "a:getSolverType())"));
  // The chain tries the string form first, and a number passes the runtime's string test.
  EXPECT_EQ("2", lua.eval("select('#', a:getSolverType(a:getSolverName(1)))"));
  EXPECT_EQ("1", lua.eval("(a:getSolverType(a:getSolverName(1)))"));
}

TEST_F(ExampleApplicationModule, AddSceneChoosesByTheFourthArgument) {
  lua.run("a = vyrOSG.ExampleApplication()");
  EXPECT_EQ("3", lua.eval("select('#', a:addScene('f.lua', 'f', 49, false))"));
  EXPECT_EQ("3", lua.eval("select('#', a:addScene('f.lua', 'f', false))"));
  EXPECT_EQ("f.lua f", lua.run("local _, x, y = a:addScene('f.lua', 'f', 50, false, 1, false) return x, y"));
  EXPECT_EQ("f.lua f", lua.run("local _, x, y = a:addScene('f.lua', 'f', false, 1, false) return x, y"));
  EXPECT_EQ("#ferror in function 'addScene'.", lua.raised("a:addScene('f.lua', 'f', 50, false, 1)"));
  EXPECT_EQ("#ferror in function 'addScene'.", lua.raised("a:addScene('f.lua', 'f')"));
}

TEST_F(ExampleApplicationModule, VectorsAreCopiedInAndOut) {
  vyr::Vec2 size(7, 8);
  vyr::Vec2u resolution(3, 4);
  set("s", &size, "vyr::Vec2");
  set("n", &resolution, "vyr::Vec2u");
  lua.run("a = vyrOSG.ExampleApplication() a:setGridSize(s) a:setGridResolution(n)");
  EXPECT_EQ("vyr::Vec2 vyr::Vec2u vyr::Vec3 vyr::AffineMatrix4x4",
            lua.run("gs, gr, gg = a:getGridSize(), a:getGridResolution(), a:getGravity()"
                    " return gs, gr, gg, a:getCoordinateSystemTransform()"));
  EXPECT_EQ(size, *global<vyr::Vec2>("gs"));
  EXPECT_EQ("#ferror in function 'setGridSize'.", lua.raised("a:setGridSize(n)"));
}

TEST_F(ExampleApplicationModule, SetSceneHoldsItsGroup) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  set("g", group.get(), "osg::Group");
  lua.run("a = vyrOSG.ExampleApplication() a:setScene(g)");
  EXPECT_EQ(2, group->referenceCount());
  EXPECT_EQ("true", lua.eval("a:getScene() == g"));
  lua.run("a:setScene(g)");
  EXPECT_EQ(2, group->referenceCount());
  lua.run("a:setScene(nil)");
  EXPECT_EQ(1, group->referenceCount());
}

TEST_F(ExampleApplicationModule, OnlyTheDebugRendererAnswersItsSwitch) {
  EXPECT_EQ("1 0", lua.run("a = vyrOSG.ExampleApplication() return select('#', a:setEnableDebugRenderer(false)), "
                           "select('#', a:setEnableGrid(false))"));
}

TEST_F(ExampleApplicationModule, WithoutAViewerThereIsNoCamera) {
  EXPECT_EQ("nil nil", lua.run("a = vyrOSG.ExampleApplication() return a:getCamera(), a:getViewer()"));
  EXPECT_EQ("false true", lua.run("local before = a:shouldStop() a:stop() return before, a:shouldStop()"));
}

TEST_F(ExampleApplicationModule, WithAViewerTheCameraIsItsMaster) {
  vyrOSG::LaunchOptions& options = vyrOSG::LaunchOptions::process();
  options.backend = vyrOSG::LaunchOptions::EGL;
  options.width = 64;
  options.height = 48;
  const vyr::ref_ptr<vyrOSG::ExampleApplication> application = new vyrOSG::ExampleApplication;
  application->setupViewer(false);
  options = vyrOSG::LaunchOptions();
  if (application->getViewer() == nullptr) {
    GTEST_SKIP() << "no EGL context on this machine";
  }
  set("a", application.get(), "vyrOSG::ExampleApplication");
  EXPECT_EQ("osg::Camera osgViewer::Viewer", lua.run("k, v = a:getCamera(), a:getViewer() return k, v"));
  EXPECT_EQ(application->getViewer()->getCamera(), global<osg::Camera>("k"));
  EXPECT_EQ(application->getViewer(), global<osgViewer::Viewer>("v"));
}

} // namespace
