// The module RenderToTexture: the class itself; its camera and vectors have tests of their own.
#include "CallChecks.h"

#include <osg/Camera>
#include <osg/Texture2D>
#include <vyr/Vec2u.h>
#include <vyrOSG/ImageCapture.h>
#include <vyrOSG/RenderToTexture.h>

namespace {

using bindingtest::lastRaised;

class RenderToTexture : public bindingtest::CallChecks {
protected:
  RenderToTexture() { lua.run("r = vyrOSG.RenderToTexture(64, 32)"); }
  vyrOSG::RenderToTexture* target(const char* name = "r") { return global<vyrOSG::RenderToTexture>(name); }
};

TEST_F(RenderToTexture, IsBuiltThreeWaysWithTwoDefaults) {
  lua.run("a = vyrOSG.RenderToTexture:new(16.9, 8) b = vyrOSG.RenderToTexture:new_local(16, 8, 4) "
          "d = vyrOSG.RenderToTexture(16, 8, 2, 6407)");
  EXPECT_EQ("vyrOSG::RenderToTexture vyrOSG::RenderToTexture vyrOSG::RenderToTexture", lua.eval("a, b, d"));
  const vyr::ref_ptr<vyrOSG::RenderToTexture> keep = target("a");
  EXPECT_EQ(1, keep->getReferenceCount());
  EXPECT_EQ(1, target("b")->getReferenceCount());
  EXPECT_EQ(1, target("d")->getReferenceCount());
  const struct {
    const char* name;
    unsigned samples;
    int format;
  } rows[] = {{"a", 8, 6408}, {"b", 4, 6408}, {"d", 2, 6407}};
  for (const auto& row : rows) {
    EXPECT_EQ(vyr::Vec2u(16, 8), target(row.name)->getSize()) << row.name;
    EXPECT_EQ(row.format, target(row.name)->getTexture()->getInternalFormat()) << row.name;
    EXPECT_EQ(row.samples,
              target(row.name)->getCamera()->getBufferAttachmentMap()[osg::Camera::COLOR_BUFFER]._multisampleSamples)
        << row.name;
  }
  for (const char* call : {"vyrOSG.RenderToTexture:new(1)", "vyrOSG.RenderToTexture:new_local()",
                           "vyrOSG.RenderToTexture('a', 1)", "vyrOSG.RenderToTexture:new(1, 1, 1, 1, 1)"})
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(call)) << call;
}

TEST_F(RenderToTexture, CollectionDropsTheReferenceOfLua) {
  const vyr::observer_ptr<vyrOSG::RenderToTexture> alone = target();
  lua.run("held = vyrOSG.RenderToTexture(8, 8)");
  const vyr::ref_ptr<vyrOSG::RenderToTexture> holder = target("held");
  lua.run("r, held = nil, nil");
  lua.collect();
  EXPECT_EQ(nullptr, alone.get());
  EXPECT_EQ(1, holder->getReferenceCount());
}

TEST_F(RenderToTexture, TheReferenceCameraIsObserved) {
  osg::ref_ptr<osg::Camera> camera = new osg::Camera;
  set("plain", camera.get(), "osg::Camera");
  EXPECT_EQ("", lua.run("return r:setReferenceCamera(plain)"));
  EXPECT_EQ(1, camera->referenceCount());
  EXPECT_EQ("none", lua.raised("r:setReferenceCamera(nil)"));
  EXPECT_EQ("#ferror in function 'setReferenceCamera'.", lua.raised("r:setReferenceCamera({})"));
  EXPECT_EQ("const osg::Camera", lastRaised().type);
  const osg::ref_ptr<osg::Camera> other = new osg::Camera;
  set("readOnly", other.get(), "const osg::Camera");
  EXPECT_EQ("none", lua.raised("r:setReferenceCamera(readOnly)"));
}

TEST_F(RenderToTexture, TheRecorderIsHeld) {
  EXPECT_EQ("nil", lua.eval("r:getImageCapture()"));
  EXPECT_EQ("vyrOSG::ImageCapture true", lua.run("c = vyrOSG.ImageCapture(nil) r:setImageCapture(c) "
                                                 "return r:getImageCapture(), r:getImageCapture() == c"));
  EXPECT_EQ(2, global<vyrOSG::ImageCapture>("c")->getReferenceCount());
  EXPECT_EQ("nil", lua.run("r:setImageCapture(nil) return r:getImageCapture()"));
  EXPECT_EQ(1, global<vyrOSG::ImageCapture>("c")->getReferenceCount());
  EXPECT_EQ("#ferror in function 'setImageCapture'.", lua.raised("r:setImageCapture(r)"));
}

TEST_F(RenderToTexture, TheSizeIsACopyAndTheRestIsItsOwn) {
  EXPECT_EQ("vyr::Vec2u osg::Camera osg::Texture2D",
            lua.run("s, k, t = r:getSize(), r:getCamera(), r:getTexture() return s, k, t"));
  EXPECT_EQ(vyr::Vec2u(64, 32), *global<vyr::Vec2u>("s"));
  EXPECT_EQ(target()->getCamera(), global<osg::Camera>("k"));
  EXPECT_EQ(target()->getTexture(), global<osg::Texture2D>("t"));
  EXPECT_EQ("true", lua.run("return k:isRenderToTextureCamera()"));
  EXPECT_EQ(1, target()->getCamera()->referenceCount());
  lua.run("s, k, t = nil, nil, nil");
  lua.collect();
  EXPECT_EQ(1, target()->getCamera()->referenceCount());
}

TEST_F(RenderToTexture, EveryFunctionRefusesForeignAndNullSelfAndSurplus) {
  constexpr bindingtest::Call calls[] = {
      {"setReferenceCamera", "nil"}, {"setImageCapture", "nil"}, {"getSize", ""}, {"getCamera", ""}, {"getTexture", ""},
      {"getImageCapture", ""}};
  expectRefusals("vyrOSG.RenderToTexture", "r", "vyrOSG::RenderToTexture", calls);
  const vyr::ref_ptr<vyrOSG::RenderToTexture> other = new vyrOSG::RenderToTexture(8, 8);
  expectConstant("vyrOSG.RenderToTexture", other.get(), "vyrOSG::RenderToTexture", calls, "getSize");
}

} // namespace
