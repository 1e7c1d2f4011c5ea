// The module SceneDecorator.
#include "ModuleTest.h"

#include <osg/BoundingBox>
#include <osg/BoundingSphere>
#include <osg/Group>
#include <osg/observer_ptr>
#include <vyr/Vec3.h>
#include <vyr/Vec4.h>
#include <vyrOSG/SceneDecorator.h>

namespace {

class SceneDecoratorModule : public bindingtest::ModuleTest {
protected:
  SceneDecoratorModule() {
    set("red", &red, "vyr::Vec3");
    set("color", &color, "vyr::Vec4");
    set("n", node.get(), "osg::Node");
    set("o", other.get(), "osg::Node");
    lua.run("D = vyrOSG.SceneDecorator d = D(640, 480)");
  }

  vyrOSG::SceneDecorator* decorator() { return global<vyrOSG::SceneDecorator>("d"); }

  vyr::Vec3 red{1, 0, 0};
  vyr::Vec4 color{1, 1, 0, 1};
  osg::ref_ptr<osg::Node> node = new osg::Node;
  osg::ref_ptr<osg::Node> other = new osg::Node;
};

TEST_F(SceneDecoratorModule, Constants) {
  EXPECT_EQ("1 2 3 4 5", lua.eval("D.UPPER_LEFT, D.LOWER_LEFT, D.UPPER_RIGHT, D.LOWER_RIGHT, D.FREE"));
  EXPECT_EQ("1 2 4 7", lua.eval("D.LIGHT0, D.LIGHT1, D.LIGHT2, D.ALL"));
  EXPECT_EQ("0 1 2 3 4 5", lua.eval("D.SOFT_SHADOWMAP, D.SHADOWMAP, D.SHADOWVOLUME, D.PARALLELLSPLIT_SHADOWMAP, "
                                    "D.SHADOWTEXTURE, D.NO_SHADOWS"));
}

TEST_F(SceneDecoratorModule, TwoNumbersMakeThreeLights) {
  EXPECT_EQ("osg::LightSource osg::LightSource osg::LightSource",
            lua.eval("d:getOSGLight(D.LIGHT0), d:getOSGLight(D.LIGHT1), d:getOSGLight(D.LIGHT2)"));
  EXPECT_EQ("osg::LightSource nil", lua.run("local e = D(640, 480, 1) "
                                            "return e:getOSGLight(D.LIGHT0), e:getOSGLight(D.LIGHT1)"));
  EXPECT_EQ("#ferror in function 'new'.", lua.raised("D(1, 2, 3, 4)"));
}

TEST_F(SceneDecoratorModule, LocalConstructionHoldsOneReference) {
  osg::observer_ptr<vyrOSG::SceneDecorator> watch = decorator();
  ASSERT_EQ(1, watch->referenceCount());
  lua.run("d = nil");
  lua.collect();
  EXPECT_FALSE(watch.valid());
}

TEST_F(SceneDecoratorModule, ASceneKeepsTheDecoratorOverCollection) {
  osg::ref_ptr<osg::Group> scene = new osg::Group;
  scene->addChild(decorator());
  lua.run("d = nil");
  lua.collect();
  EXPECT_EQ(1, scene->getChild(0)->referenceCount());
}

TEST_F(SceneDecoratorModule, StringsAndFontSizesComeBack) {
  EXPECT_EQ("hello", lua.eval("d:setText(0, 'hello')"));
  EXPECT_EQ("there", lua.eval("d:setText(1, 'there', color)"));
  EXPECT_EQ("hello", decorator()->getText(0));
  EXPECT_EQ("there", decorator()->getText(1));
  EXPECT_EQ("#ferror in function 'setText'.", lua.raised("d:setText(1, 'x', nil)"));
  EXPECT_EQ("0.10000000149012", lua.eval("d:setFontSize(0.1)"));
  EXPECT_EQ("false no-such-logo.png", lua.eval("d:setLogoFile('no-such-logo.png')"));
  EXPECT_EQ("false no-such.png", lua.eval("d:setBaseTexture('no-such.png')"));
}

TEST_F(SceneDecoratorModule, RemovingByPositionMayLeaveTheCountOut) {
  EXPECT_EQ("true true", lua.eval("d:addChild(n), d:addChild(o)"));
  EXPECT_EQ("true", lua.eval("d:removeChild(0)"));
  ASSERT_EQ(1u, decorator()->getNumChildren());
  EXPECT_EQ(other.get(), decorator()->getChild(0));
  EXPECT_EQ("#ferror in function 'removeChildren'.", lua.raised("d:removeChildren(0)"));
  EXPECT_EQ("true", lua.eval("d:removeChildren(0, 1)"));
  EXPECT_EQ("false", lua.eval("d:removeChild(n)"));
}

TEST_F(SceneDecoratorModule, ShaderStateTakesOneOrTwoBooleans) {
  lua.run("d:setEnableShaderState(true)");
  EXPECT_EQ("true", lua.eval("d:getEnableShaderState()"));
  lua.run("d:setEnableShaderState(false, true)");
  EXPECT_EQ("false", lua.eval("d:getEnableShaderState()"));
}

TEST_F(SceneDecoratorModule, LogoDimensionIsAViewAndTheOthersAreCopies) {
  EXPECT_EQ("const osg::Vec2 osg::Vec2 osg::Vec2",
            lua.eval("d:getLogoDimension(), d:getMaximumLogoDimension(), d:getDefaultLogoPosition()"));
}

TEST_F(SceneDecoratorModule, LightsAreCreatedByMask) {
  lua.run("d:createLights(D.LIGHT1)");
  EXPECT_EQ("nil osg::LightSource", lua.eval("d:getOSGLight(D.LIGHT0), d:getOSGLight(D.LIGHT1)"));
  lua.run("d:createLights()");
  EXPECT_EQ("osg::LightSource", lua.eval("d:getOSGLight(D.LIGHT2)"));
  EXPECT_EQ("true osg::LightSource", lua.eval("d:setShadowLightSource(D.LIGHT1), d:getShadowLightSource()"));
  EXPECT_EQ("vyrOSG::LightSource 1", lua.run("local l = d:getLightSource(D.LIGHT1) return l, l:getLightNum()"));
}

TEST_F(SceneDecoratorModule, LightPositionsTakeNodesBoxesAndSpheres) {
  osg::BoundingBox box(-1, -1, -1, 1, 1, 1);
  osg::BoundingSphere sphere(osg::Vec3(), 10);
  set("box", &box, "osg::BoundingBox");
  set("sphere", &sphere, "osg::BoundingSphere");
  lua.run("d:calculateLightPositions(box)");
  const double near = decorator()->getLightSource(vyrOSG::SceneDecorator::LIGHT0).getPosition().x();
  lua.run("d:calculateLightPositions(sphere)");
  const double far = decorator()->getLightSource(vyrOSG::SceneDecorator::LIGHT0).getPosition().x();
  EXPECT_GT(std::abs(far), std::abs(near));
  EXPECT_EQ("none", lua.raised("d:calculateLightPositions(n)"));
  EXPECT_EQ("#ferror in function 'calculateLightPositions'.", lua.raised("d:calculateLightPositions(1)"));
}

TEST_F(SceneDecoratorModule, BackgroundTakesOneTwoOrFourColours) {
  EXPECT_EQ("none", lua.raised("d:setBackgroundColor(red) d:setBackgroundColor(red, red) "
                               "d:setBackgroundColor(red, red, red, red)"));
  EXPECT_EQ("#ferror in function 'setBackgroundColor'.", lua.raised("d:setBackgroundColor(red, red, red)"));
}

TEST_F(SceneDecoratorModule, EverySetterHasItsGetter) {
  EXPECT_EQ("true", lua.run("d:setEnableShadows(true) return d:getEnableShadows()"));
  EXPECT_EQ("2", lua.run("d:setShadowMethod(D.SHADOWVOLUME) return d:getShadowMethod()"));
  EXPECT_EQ("false", lua.run("d:setEnable(false) return d:getEnable()"));
  EXPECT_EQ("false", lua.run("d:setEnableLogo(false) return d:getEnableLogo()"));
  EXPECT_EQ("3", lua.run("d:setLogoLocation(D.UPPER_RIGHT) return d:getLogoLocation()"));
  EXPECT_EQ("5", lua.run("d:setLogoPosition(0.5, 0.5) return d:getLogoLocation()"));
  EXPECT_EQ("false true", lua.run("d:setEnableCalculateLightPositions(D.LIGHT1, false) return "
                                  "d:getEnableCalculateLightPositions(D.ALL), "
                                  "d:getEnableCalculateLightPositions(D.LIGHT0)"));
  EXPECT_EQ("osg::StateSet osg::MatrixTransform osg::Group osg::Group",
            lua.eval("d:getDecoratorStateSet(), d:getHud(), d:getShadowedScene(), d:getNonShadowedScene()"));
}

} // namespace
