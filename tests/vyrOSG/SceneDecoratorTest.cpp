// Dresses scenes: children, lights, background, HUD and shadows, looked at in the pictures where they show.
#include "CapturedMessages.h"
#include "OffscreenViewer.h"
#include "TemporaryFolder.h"
#include "TestPicture.h"

#include <vyrCollide/Box.h>
#include <vyrCollide/Plane.h>
#include <vyrOSG/PictureFile.h>
#include <vyrOSG/SceneDecorator.h>
#include <vyrOSG/utils.h>

#include <gtest/gtest.h>
#include <osg/Geode>
#include <osg/ShapeDrawable>

#include <limits>

using vyrOSG::SceneDecorator;

namespace {

osg::Vec4 pixel(const osg::Image& image, double x, double y) {
  return image.getColor(static_cast<unsigned>(x * image.s()), static_cast<unsigned>(y * image.t()));
}

double brightness(const osg::Vec4& color) {
  return (color.r() + color.g() + color.b()) / 3.0;
}

/// A box that hovers over a plane, seen from above, so that its shadow on the plane is in view beside it.
class ShadowScene {
public:
  ShadowScene()
      : decorator(new SceneDecorator(160, 120))
      , group(new vyrOSG::Group) {
    plane = new vyrCollide::Geometry(new vyrCollide::Plane);
    box = new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(0.5, 0.5, 0.1)));
    box->setLocalTransform(vyr::AffineMatrix4x4::translate(0, 0, 2));
    vyrOSG::createVisual(plane.get(), group.get());
    vyrOSG::createVisual(box.get(), group.get());
    decorator->addChild(group.get());
    decorator->calculateLightPositions(osg::BoundingSphere(osg::Vec3(), 3));
  }

  /// Brightness of the plane where the shadow of the box's middle falls.
  double brightnessInShadow(OffscreenViewer& viewer) {
    viewer.viewer()->setLightingMode(osg::View::NO_LIGHT);
    viewer.viewer()->setSceneData(decorator.get());
    viewer.camera()->setViewMatrixAsLookAt(osg::Vec3d(0, -9, 12), osg::Vec3d(0, 0, 0), osg::Vec3d(0, 1, 0));
    viewer.draw();
    const osg::ref_ptr<osg::Image> picture = viewer.draw();
    const vyr::Vec4 toLight = decorator->getLightSource(SceneDecorator::LIGHT0).getPosition();
    const osg::Vec3d place(-toLight.x() * 2 / toLight.z(), -toLight.y() * 2 / toLight.z(), 0);
    const osg::Vec3d seen = place * viewer.camera()->getViewMatrix() * viewer.camera()->getProjectionMatrix();
    return brightness(pixel(*picture, 0.5 + 0.5 * seen.x(), 0.5 + 0.5 * seen.y()));
  }

  osg::ref_ptr<SceneDecorator> decorator;

private:
  osg::ref_ptr<vyrOSG::Group> group;
  vyr::ref_ptr<vyrCollide::Geometry> plane;
  vyr::ref_ptr<vyrCollide::Geometry> box;
};

TEST(SceneDecorator, ChildrenStandBelowTheShadowsToo) {
  osg::ref_ptr<SceneDecorator> decorator = new SceneDecorator(640, 480);
  osg::ref_ptr<osg::Node> a = new osg::Node;
  osg::ref_ptr<osg::Node> b = new osg::Node;
  osg::ref_ptr<osg::Node> c = new osg::Node;
  EXPECT_EQ(0u, decorator->getNumChildren());
  EXPECT_TRUE(decorator->addChild(a.get()));
  EXPECT_TRUE(decorator->insertChild(0, b.get()));
  ASSERT_EQ(2u, decorator->getNumChildren());
  EXPECT_EQ(b.get(), decorator->getChild(0));
  EXPECT_EQ(b.get(), decorator->getShadowedScene()->getChild(0));
  EXPECT_TRUE(decorator->replaceChild(b.get(), c.get()));
  EXPECT_TRUE(decorator->getShadowedScene()->containsNode(c.get()));
  EXPECT_FALSE(decorator->getShadowedScene()->containsNode(b.get()));
  EXPECT_TRUE(decorator->setChild(1, b.get()));
  EXPECT_FALSE(decorator->setChild(2, a.get()));
  EXPECT_FALSE(decorator->replaceChild(a.get(), c.get()));
  EXPECT_TRUE(decorator->removeChild(c.get()));
  EXPECT_FALSE(decorator->removeChild(c.get()));
  EXPECT_TRUE(decorator->removeChildren(0, 9));
  EXPECT_FALSE(decorator->removeChildren(0, 1));
  EXPECT_EQ(0u, decorator->getNumChildren());
  EXPECT_EQ(0u, decorator->getShadowedScene()->getNumChildren());
}

TEST(SceneDecorator, AnImpossibleHudIsOneError) {
  CapturedMessages messages;
  osg::ref_ptr<SceneDecorator> decorator = new SceneDecorator(0, -5);
  EXPECT_EQ(1u, messages.errors().size());
}

TEST(SceneDecorator, TextsAreKeptByLine) {
  CapturedMessages messages;
  osg::ref_ptr<SceneDecorator> decorator = new SceneDecorator(640, 480);
  decorator->setText(3, vyr::String("grün"));
  EXPECT_EQ("grün", decorator->getText(3));
  EXPECT_EQ("", decorator->getText(0));
  decorator->setText(3, vyr::String());
  EXPECT_EQ("", decorator->getText(3));
  decorator->setText(1, vyr::String("x"));
  decorator->clearText();
  EXPECT_EQ("", decorator->getText(1));
  EXPECT_TRUE(messages.errors().empty());
  decorator->setText(-1, vyr::String("x"));
  EXPECT_EQ(1u, messages.errors().size());
}

TEST(SceneDecorator, FontsThatCannotBeReadChangeNothing) {
  CapturedMessages messages;
  osg::ref_ptr<SceneDecorator> decorator = new SceneDecorator(640, 480);
  const std::string before = decorator->getFontName();
  decorator->setFontName("no-such-font");
  EXPECT_EQ(before, decorator->getFontName());
  EXPECT_NE(std::string::npos, messages.takeOne().find("no-such-font"));
  decorator->setFontName("");
  EXPECT_EQ("", decorator->getFontName());
  decorator->setFontSize(24.5f);
  decorator->setFontSize(0.0f);
  decorator->setFontSize(std::numeric_limits<float>::quiet_NaN());
  EXPECT_EQ(24.5f, decorator->getFontSize());
  EXPECT_EQ(2u, messages.take().size());
}

TEST(SceneDecorator, LogosAreShrunkAndStandInCorners) {
  TemporaryFolder folder;
  std::string reason;
  ASSERT_TRUE(vyrOSG::PictureFile::write(*makePicture(400, 100, osg::Vec4(1, 0, 0, 1)), folder / "logo.png", reason));
  osg::ref_ptr<SceneDecorator> decorator = new SceneDecorator(640, 480);
  EXPECT_EQ(osg::Vec2(0, 0), decorator->getLogoDimension());
  ASSERT_TRUE(decorator->setLogoFile(folder / "logo.png"));
  decorator->setMaximumLogoDimension(200, 200);
  EXPECT_EQ(osg::Vec2(200, 50), decorator->getLogoDimension());
  const osg::Vec2 lowerRight = decorator->getDefaultLogoPosition();
  EXPECT_GT(lowerRight.x(), 400);
  EXPECT_LT(lowerRight.y(), 50);
  decorator->setLogoLocation(SceneDecorator::UPPER_LEFT);
  EXPECT_LT(decorator->getDefaultLogoPosition().x(), 50);
  EXPECT_GT(decorator->getDefaultLogoPosition().y(), 380);
  decorator->setLogoPosition(0.25f, 0.5f);
  EXPECT_EQ(SceneDecorator::FREE, decorator->getLogoLocation());
  EXPECT_EQ(osg::Vec2(160, 240), decorator->getDefaultLogoPosition());
  decorator->resetHUD();
  EXPECT_EQ(osg::Vec2(0, 0), decorator->getLogoDimension());
}

TEST(SceneDecorator, LightsAreCreatedAndRemoved) {
  osg::ref_ptr<SceneDecorator> decorator = new SceneDecorator(640, 480, 1);
  EXPECT_NE(nullptr, decorator->getOSGLight(SceneDecorator::LIGHT0));
  EXPECT_EQ(nullptr, decorator->getOSGLight(SceneDecorator::LIGHT1));
  EXPECT_FALSE(decorator->setShadowLightSource(SceneDecorator::LIGHT1));
  decorator->createLights();
  EXPECT_TRUE(decorator->setShadowLightSource(SceneDecorator::LIGHT1));
  EXPECT_EQ(decorator->getOSGLight(SceneDecorator::LIGHT1), decorator->getShadowLightSource());
  decorator->createLights(SceneDecorator::LIGHT0);
  EXPECT_EQ(nullptr, decorator->getShadowLightSource());
  EXPECT_EQ(-1, decorator->getLightSource(SceneDecorator::LIGHT2).getLightNum());
}

TEST(SceneDecorator, OnlyLightsWithPlacementMove) {
  osg::ref_ptr<SceneDecorator> decorator = new SceneDecorator(640, 480);
  decorator->setEnableCalculateLightPositions(SceneDecorator::LIGHT1, false);
  EXPECT_FALSE(decorator->getEnableCalculateLightPositions(SceneDecorator::ALL));
  EXPECT_TRUE(decorator->getEnableCalculateLightPositions(SceneDecorator::LIGHT0));
  const vyr::Vec4 still = decorator->getLightSource(SceneDecorator::LIGHT1).getPosition();
  decorator->calculateLightPositions(osg::BoundingSphere(osg::Vec3(), 50));
  const vyr::Vec4 moved = decorator->getLightSource(SceneDecorator::LIGHT0).getPosition();
  EXPECT_NEAR(150.0, vyr::Vec3(moved.x(), moved.y(), moved.z()).length(), 1e-3);
  EXPECT_EQ(still.x(), decorator->getLightSource(SceneDecorator::LIGHT1).getPosition().x());
  decorator->calculateLightPositions(osg::BoundingBox());
  decorator->calculateLightPositions(static_cast<osg::Node*>(nullptr));
  EXPECT_EQ(moved.x(), decorator->getLightSource(SceneDecorator::LIGHT0).getPosition().x());
}

TEST(SceneDecorator, TheBackgroundFillsThePicture) {
  OffscreenViewer viewer(64, 64);
  if (!viewer.isReady())
    GTEST_SKIP() << viewer.describe();
  osg::ref_ptr<SceneDecorator> decorator = new SceneDecorator(64, 64);
  viewer.viewer()->setSceneData(decorator.get());
  decorator->setBackgroundColor(vyr::Vec3(1, 0, 0), vyr::Vec3(0, 1, 0));
  osg::ref_ptr<osg::Image> picture = viewer.draw();
  EXPECT_GT(pixel(*picture, 0.5, 0.97).r(), 0.9);
  EXPECT_GT(pixel(*picture, 0.5, 0.02).g(), 0.9);
  decorator->setBackgroundColor(vyr::Vec3(1, 0, 0), vyr::Vec3(0, 1, 0), vyr::Vec3(0, 0, 1), vyr::Vec3(1, 1, 1));
  picture = viewer.draw();
  EXPECT_GT(pixel(*picture, 0.02, 0.02).r(), 0.9);
  EXPECT_LT(pixel(*picture, 0.02, 0.02).b(), 0.1);
  EXPECT_GT(pixel(*picture, 0.97, 0.02).g(), 0.9);
  EXPECT_GT(pixel(*picture, 0.97, 0.97).b(), 0.9);
  EXPECT_GT(pixel(*picture, 0.02, 0.97).g(), 0.9);
  decorator->setEnable(false);
  picture = viewer.draw();
  EXPECT_EQ(osg::Vec4(0, 0, 1, 1), pixel(*picture, 0.5, 0.5));
}

TEST(SceneDecorator, TextIsDrawnOverTheScene) {
  OffscreenViewer viewer(128, 64);
  if (!viewer.isReady())
    GTEST_SKIP() << viewer.describe();
  osg::ref_ptr<SceneDecorator> decorator = new SceneDecorator(128, 64);
  viewer.viewer()->setSceneData(decorator.get());
  decorator->setBackgroundColor(vyr::Vec3(0, 0, 0));
  const auto countGreen = [&] {
    const osg::ref_ptr<osg::Image> picture = viewer.draw();
    int count = 0;
    for (int y = 0; y < 64; ++y)
      for (int x = 0; x < 128; ++x)
        count += picture->getColor(static_cast<unsigned>(x), static_cast<unsigned>(y)).g() > 0.8f ? 1 : 0;
    return count;
  };
  EXPECT_EQ(0, countGreen());
  decorator->setText(0, vyr::String("HHHH"), vyr::Vec4(0, 1, 0, 1));
  EXPECT_GT(countGreen(), 50);
}

class ShadowMethods : public ::testing::TestWithParam<int> {};

TEST_P(ShadowMethods, DarkenTheGroundBehindTheBox) {
  OffscreenViewer viewer(160, 120);
  if (!viewer.isReady())
    GTEST_SKIP() << viewer.describe();
  ShadowScene scene;
  const double lit = scene.brightnessInShadow(viewer);
  scene.decorator->setShadowMethod(static_cast<SceneDecorator::ShadowMethod>(GetParam()));
  EXPECT_NEAR(lit, scene.brightnessInShadow(viewer), 0.01) << "chosen, but not enabled";
  scene.decorator->setEnableShadows(true);
  const double dark = scene.brightnessInShadow(viewer);
  if (GetParam() == SceneDecorator::NO_SHADOWS) {
    EXPECT_NEAR(lit, dark, 0.01);
  } else {
    EXPECT_LT(dark, 0.80 * lit);
    EXPECT_GT(dark, 0.20 * lit) << "shadows keep the ambient light";
  }
  scene.decorator->setEnableShadows(false);
  EXPECT_NEAR(lit, scene.brightnessInShadow(viewer), 0.01);
}

/// A low box over a wide one: where the sun's ray through the low box meets the wide one, there must be its shadow, and
/// next to it none, seen from the side, from straight above, and from so far below the casters' height that slices
/// differ.
TEST_P(ShadowMethods, DarkenAGroundThatIsABoxItself) {
  if (GetParam() == SceneDecorator::NO_SHADOWS)
    return;
  OffscreenViewer viewer(160, 120);
  if (!viewer.isReady())
    GTEST_SKIP() << viewer.describe();
  osg::ref_ptr<SceneDecorator> decorator = new SceneDecorator(160, 120);
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  vyr::ref_ptr<vyrCollide::Geometry> floor = new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(6, 6, 0.25)));
  floor->setLocalTransform(vyr::AffineMatrix4x4::translate(0, 0, -0.25));
  vyr::ref_ptr<vyrCollide::Geometry> box = new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(0.5, 0.5, 0.1)));
  box->setLocalTransform(vyr::AffineMatrix4x4::translate(0, 0, 2));
  vyrOSG::createVisual(floor.get(), group.get());
  vyrOSG::createVisual(box.get(), group.get());
  decorator->addChild(group.get());
  decorator->calculateLightPositions(osg::BoundingSphere(osg::Vec3(), 6));
  decorator->setShadowMethod(static_cast<SceneDecorator::ShadowMethod>(GetParam()));
  decorator->setEnableShadows(true);
  const vyr::Vec4 toLight = decorator->getLightSource(SceneDecorator::LIGHT0).getPosition();
  const osg::Vec3d place(-toLight.x() * 2 / toLight.z(), -toLight.y() * 2 / toLight.z(), 0);
  viewer.viewer()->setLightingMode(osg::View::NO_LIGHT);
  viewer.viewer()->setSceneData(decorator.get());
  for (const osg::Vec3d& eye : {osg::Vec3d(0, -9, 12), osg::Vec3d(0, 0, 14), osg::Vec3d(3, -6, 1.5)}) {
    viewer.camera()->setViewMatrixAsLookAt(eye, place, eye.x() == 0 ? osg::Vec3d(0, 1, 0) : osg::Vec3d(0, 0, 1));
    viewer.draw();
    const osg::ref_ptr<osg::Image> picture = viewer.draw();
    const osg::Matrixd toPicture = viewer.camera()->getViewMatrix() * viewer.camera()->getProjectionMatrix();
    const osg::Vec3d dark = place * toPicture;
    const osg::Vec3d lit = (place + osg::Vec3d(1.2, 0, 0)) * toPicture;
    EXPECT_LT(brightness(pixel(*picture, 0.5 + 0.5 * dark.x(), 0.5 + 0.5 * dark.y())),
              0.8 * brightness(pixel(*picture, 0.5 + 0.5 * lit.x(), 0.5 + 0.5 * lit.y())))
        << "from " << eye.x() << ' ' << eye.y() << ' ' << eye.z();
  }
}

INSTANTIATE_TEST_SUITE_P(SceneDecorator, ShadowMethods, ::testing::Range(0, 6));

TEST(SceneDecorator, OutlinesTakeTheGroundsBitAndGiveItBack) {
  OffscreenViewer viewer(32, 32);
  if (!viewer.isReady())
    GTEST_SKIP() << viewer.describe();
  constexpr osg::Node::NodeMask kCasts = 0x2;
  osg::ref_ptr<SceneDecorator> decorator = new SceneDecorator(32, 32);
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  vyr::ref_ptr<vyrCollide::Geometry> floor = new vyrCollide::Geometry(new vyrCollide::Box(vyr::Vec3(6, 6, 0.25)));
  osg::ref_ptr<vyrOSG::GeometryNode> visual = vyrOSG::createVisual(floor.get(), group.get());
  decorator->addChild(group.get());
  decorator->setEnableShadows(true);
  viewer.viewer()->setSceneData(decorator.get());
  decorator->setShadowMethod(SceneDecorator::SHADOWTEXTURE);
  viewer.draw();
  EXPECT_EQ(0u, visual->getNodeMask() & kCasts);
  decorator->setShadowMethod(SceneDecorator::SHADOWMAP);
  viewer.draw();
  EXPECT_EQ(kCasts, visual->getNodeMask() & kCasts);
}

TEST(SceneDecorator, ThereAreSixShadowMethods) {
  CapturedMessages messages;
  osg::ref_ptr<SceneDecorator> decorator = new SceneDecorator(640, 480);
  decorator->setShadowMethod(static_cast<SceneDecorator::ShadowMethod>(6));
  EXPECT_EQ(SceneDecorator::SOFT_SHADOWMAP, decorator->getShadowMethod());
  EXPECT_EQ(1u, messages.errors().size());
}

TEST(SceneDecorator, TheShaderStateKeepsColours) {
  OffscreenViewer viewer(160, 120);
  if (!viewer.isReady())
    GTEST_SKIP() << viewer.describe();
  ShadowScene scene;
  const double fixed = scene.brightnessInShadow(viewer);
  scene.decorator->setEnableShaderState(true);
  // Ambient light from above is a fifth stronger in the shader than the even one of the fixed pipeline.
  EXPECT_NEAR(fixed, scene.brightnessInShadow(viewer), 0.10);
  scene.decorator->setEnableShaderState(false);
  EXPECT_NEAR(fixed, scene.brightnessInShadow(viewer), 0.01);
}

TEST(SceneDecorator, BaseTexturesAreRead) {
  TemporaryFolder folder;
  std::string reason;
  ASSERT_TRUE(vyrOSG::PictureFile::write(*makePicture(4, 4, osg::Vec4(0, 1, 0, 1)), folder / "base.png", reason));
  CapturedMessages messages;
  osg::ref_ptr<SceneDecorator> decorator = new SceneDecorator(640, 480);
  EXPECT_TRUE(decorator->setBaseTexture(folder / "base.png"));
  EXPECT_FALSE(decorator->setBaseTexture(folder / "none.png"));
  EXPECT_NE(std::string::npos, messages.takeOne().find("none.png"));
}

} // namespace
