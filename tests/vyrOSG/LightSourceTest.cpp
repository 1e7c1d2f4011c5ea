/// The light handle.
#include <vyrOSG/LightSource.h>

#include <osg/LightSource>
#include <osg/observer_ptr>

#include <gtest/gtest.h>

namespace {

TEST(LightSource, EveryValueReachesTheLightAndComesBack) {
  osg::ref_ptr<osg::LightSource> node = new osg::LightSource;
  node->getLight()->setLightNum(3);
  vyrOSG::LightSource handle(node.get());
  handle.setAmbient(vyr::Vec4(0.25, 0.5, 0.75, 1));
  handle.setDiffuse(vyr::Vec4(0.5, 0.25, 0.125, 0.5));
  handle.setSpecular(vyr::Vec4(1, 0.5, 0, 0.25));
  handle.setPosition(vyr::Vec4(1, 2, 3, 0));
  handle.setDirection(vyr::Vec3(0, 1, -1));
  handle.setConstantAttenuation(0.5f);
  handle.setLinearAttenuation(0.25f);
  handle.setQuadraticAttenuation(0.125f);
  handle.setSpotExponent(16);
  handle.setSpotCutoff(30);

  const osg::Light* light = node->getLight();
  EXPECT_EQ(light->getAmbient(), osg::Vec4(0.25f, 0.5f, 0.75f, 1));
  EXPECT_EQ(light->getDiffuse(), osg::Vec4(0.5f, 0.25f, 0.125f, 0.5f));
  EXPECT_EQ(light->getSpecular(), osg::Vec4(1, 0.5f, 0, 0.25f));
  EXPECT_EQ(light->getPosition(), osg::Vec4(1, 2, 3, 0));
  EXPECT_EQ(light->getDirection(), osg::Vec3(0, 1, -1));
  EXPECT_EQ(light->getConstantAttenuation(), 0.5f);
  EXPECT_EQ(light->getLinearAttenuation(), 0.25f);
  EXPECT_EQ(light->getQuadraticAttenuation(), 0.125f);
  EXPECT_EQ(light->getSpotExponent(), 16);
  EXPECT_EQ(light->getSpotCutoff(), 30);

  EXPECT_EQ(handle.getLightNum(), 3);
  EXPECT_EQ(handle.getAmbient(), vyr::Vec4(0.25, 0.5, 0.75, 1));
  EXPECT_EQ(handle.getDiffuse(), vyr::Vec4(0.5, 0.25, 0.125, 0.5));
  EXPECT_EQ(handle.getSpecular(), vyr::Vec4(1, 0.5, 0, 0.25));
  EXPECT_EQ(handle.getPosition(), vyr::Vec4(1, 2, 3, 0));
  EXPECT_EQ(handle.getDirection(), vyr::Vec3(0, 1, -1));
  EXPECT_EQ(handle.getConstantAttenuation(), 0.5f);
  EXPECT_EQ(handle.getLinearAttenuation(), 0.25f);
  EXPECT_EQ(handle.getQuadraticAttenuation(), 0.125f);
  EXPECT_EQ(handle.getSpotExponent(), 16);
  EXPECT_EQ(handle.getSpotCutoff(), 30);
}

TEST(LightSource, ColoursReadBackThroughSinglePrecision) {
  osg::ref_ptr<osg::LightSource> node = new osg::LightSource;
  vyrOSG::LightSource handle(node.get());
  handle.setDiffuse(vyr::Vec4(0.1, 0.2, 0.3, 1));
  EXPECT_EQ(handle.getDiffuse()[0], static_cast<double>(0.1f));
  EXPECT_NE(handle.getDiffuse()[0], 0.1);
}

// Both a missing node and a node without a light make such a handle.
class EmptyLightSource : public testing::TestWithParam<bool> {};

TEST_P(EmptyLightSource, TakesEverythingAndGivesZero) {
  osg::ref_ptr<osg::LightSource> node;
  if (GetParam()) {
    node = new osg::LightSource;
    node->setLight(nullptr);
  }
  vyrOSG::LightSource handle(node.get());
  handle.setAmbient(vyr::Vec4(1, 1, 1, 1));
  handle.setDiffuse(vyr::Vec4(1, 1, 1, 1));
  handle.setSpecular(vyr::Vec4(1, 1, 1, 1));
  handle.setPosition(vyr::Vec4(1, 1, 1, 1));
  handle.setDirection(vyr::Vec3(1, 1, 1));
  handle.setConstantAttenuation(1);
  handle.setLinearAttenuation(1);
  handle.setQuadraticAttenuation(1);
  handle.setSpotExponent(1);
  handle.setSpotCutoff(1);
  EXPECT_EQ(handle.getLightNum(), -1);
  EXPECT_EQ(handle.getAmbient(), vyr::Vec4(0, 0, 0, 0));
  EXPECT_EQ(handle.getDiffuse(), vyr::Vec4(0, 0, 0, 0));
  EXPECT_EQ(handle.getSpecular(), vyr::Vec4(0, 0, 0, 0));
  EXPECT_EQ(handle.getPosition(), vyr::Vec4(0, 0, 0, 0));
  EXPECT_EQ(handle.getDirection(), vyr::Vec3(0, 0, 0));
  EXPECT_EQ(handle.getConstantAttenuation(), 0);
  EXPECT_EQ(handle.getLinearAttenuation(), 0);
  EXPECT_EQ(handle.getQuadraticAttenuation(), 0);
  EXPECT_EQ(handle.getSpotExponent(), 0);
  EXPECT_EQ(handle.getSpotCutoff(), 0);
}

INSTANTIATE_TEST_SUITE_P(LightSource, EmptyLightSource, testing::Bool());

TEST(LightSource, KeepsTheLightNotTheNode) {
  osg::ref_ptr<osg::LightSource> node = new osg::LightSource;
  osg::observer_ptr<osg::LightSource> seenNode = node.get();
  osg::observer_ptr<osg::Light> seenLight = node->getLight();
  {
    vyrOSG::LightSource handle(node.get());
    const vyrOSG::LightSource copy(handle);
    node = nullptr;
    EXPECT_FALSE(seenNode.valid());
    ASSERT_TRUE(seenLight.valid());
    EXPECT_EQ(seenLight->referenceCount(), 2);
  }
  EXPECT_FALSE(seenLight.valid());
}

} // namespace
