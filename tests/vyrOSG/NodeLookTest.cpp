// Checks colours, opacity, textures, lights and wires of nodes: in state sets, and in drawn pixels where light matters.
#include "CapturedMessages.h"
#include "OffscreenViewer.h"
#include "TemporaryFolder.h"
#include "TestPicture.h"

#include <vyrOSG/SimulationObject.h>
#include <vyrOSG/utils.h>

#include <vyrCollide/Sphere.h>

#include <osg/Material>
#include <osg/PolygonMode>
#include <osg/TexMat>
#include <osgDB/WriteFile>

#include <gtest/gtest.h>

#include <limits>

namespace {

using vyrOSG::GeometryNode;
constexpr osg::Material::Face kFront = osg::Material::FRONT;

osg::Material* materialOf(osg::Node* node) {
  return static_cast<osg::Material*>(node->getStateSet()->getAttribute(osg::StateAttribute::MATERIAL));
}

class NodeLookTest : public testing::Test {
protected:
  NodeLookTest() {
    vyr::ref_ptr<vyrCollide::Geometry> sphere = new vyrCollide::Geometry(new vyrCollide::Sphere(1));
    m_body->add(sphere.get());
    m_geometry = sphere;
    m_node = vyrOSG::createVisual(sphere.get(), m_group.get());
  }

  /// The average colour of the middle of a picture of the sphere, lit from the viewer.
  osg::Vec3 drawnColor() {
    OffscreenViewer viewer(64, 64);
    if (!viewer.isReady())
      return osg::Vec3(-1, -1, -1);
    viewer.viewer()->setSceneData(m_group);
    viewer.camera()->setViewMatrixAsLookAt(osg::Vec3d(0, -6, 0), osg::Vec3d(), osg::Vec3d(0, 0, 1));
    viewer.draw();
    osg::ref_ptr<osg::Image> image = viewer.draw();
    osg::Vec3 sum;
    for (unsigned int y = 28; y < 36; ++y) {
      for (unsigned int x = 28; x < 36; ++x) {
        const osg::Vec4 pixel = image->getColor(x, y);
        sum += osg::Vec3(pixel.r(), pixel.g(), pixel.b());
      }
    }
    return sum / 64;
  }

  std::string writePicture(const std::string& name, const osg::Vec4& color) {
    osgDB::writeImageFile(*makePicture(16, 16, color), m_folder / name);
    return m_folder / name;
  }

  TemporaryFolder m_folder;
  osg::ref_ptr<vyrOSG::Group> m_group = new vyrOSG::Group;
  vyr::ref_ptr<vyr::RigidBody> m_body = new vyr::RigidBody;
  vyr::ref_ptr<vyrCollide::Geometry> m_geometry;
  GeometryNode* m_node = nullptr;
  CapturedMessages m_messages;
};

TEST_F(NodeLookTest, DiffuseColorReachesTheVisualsBelowAGroup) {
  vyrOSG::setDiffuseColor(m_group.get(), vyr::Vec4(0.1, 0.2, 0.3, 1));
  EXPECT_EQ(materialOf(m_node)->getDiffuse(kFront), osg::Vec4(0.1f, 0.2f, 0.3f, 1));
  EXPECT_EQ(materialOf(m_node)->getAmbient(kFront), osg::Vec4(0.1f, 0.2f, 0.3f, 1));
}

TEST_F(NodeLookTest, ColorsOfBodiesAndGeometriesReachTheirVisuals) {
  vyrOSG::setDiffuseColor(m_body.get(), vyrRender::Color::Red(), m_group.get());
  EXPECT_EQ(materialOf(m_node)->getDiffuse(kFront), osg::Vec4(1, 0, 0, 1));
  vyrOSG::setDiffuseColor(m_geometry.get(), vyr::Vec4(0, 0, 1, 1), m_group.get());
  EXPECT_EQ(materialOf(m_node)->getDiffuse(kFront), osg::Vec4(0, 0, 1, 1));
}

TEST_F(NodeLookTest, AmbientColorStaysWhereItWasSetApart) {
  vyrOSG::setAmbientColor(m_node, vyr::Vec4(0.5, 0, 0, 1));
  vyrOSG::setDiffuseColor(m_node, vyr::Vec4(0, 1, 0, 1));
  EXPECT_EQ(materialOf(m_node)->getAmbient(kFront), osg::Vec4(0.5f, 0, 0, 1));
}

TEST_F(NodeLookTest, SpecularColorAndShininess) {
  vyrOSG::setSpecularColor(m_node, vyr::Vec4(1, 0.5, 0, 1));
  EXPECT_EQ(materialOf(m_node)->getSpecular(kFront), osg::Vec4(1, 0.5f, 0, 1));
  vyrOSG::setShininess(m_node, 77);
  EXPECT_EQ(materialOf(m_node)->getShininess(kFront), 77);
  vyrOSG::setShininess(m_node, 1000);
  EXPECT_EQ(materialOf(m_node)->getShininess(kFront), 128);
}

TEST_F(NodeLookTest, ColorsThatAreNoNumbersAreRefused) {
  const osg::Vec4 before = materialOf(m_node)->getDiffuse(kFront);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  vyrOSG::setDiffuseColor(m_node, vyr::Vec4(nan, 0, 0, 1));
  EXPECT_NE(m_messages.takeOne().find("setDiffuseColor"), std::string::npos);
  EXPECT_EQ(materialOf(m_node)->getDiffuse(kFront), before);
  vyrOSG::setAlpha(m_node, float(nan));
  EXPECT_NE(m_messages.takeOne().find("setAlpha"), std::string::npos);
  vyrOSG::setShininess(m_node, float(nan));
  EXPECT_NE(m_messages.takeOne().find("setShininess"), std::string::npos);
}

TEST_F(NodeLookTest, NullNodesAreLeftAlone) {
  osg::Node* none = nullptr;
  vyrOSG::setDiffuseColor(none, vyr::Vec4(1, 1, 1, 1));
  vyrOSG::setSpecularColor(none, vyr::Vec4(1, 1, 1, 1));
  vyrOSG::setAmbientColor(none, vyr::Vec4(1, 1, 1, 1));
  vyrOSG::setShininess(none, 1);
  vyrOSG::setAlpha(none, 1);
  vyrOSG::setEnableLight(true, 0, none);
  vyrOSG::setUniformInt(none, "u", 1);
  vyrOSG::setUniformFloat(none, "u", 1);
  vyrOSG::setEnvMapReflectionCoefficient(none, 1);
  EXPECT_FALSE(vyrOSG::forceWireFrameModeOn(none));
  EXPECT_FALSE(vyrOSG::setTexture(none, "a.png"));
  EXPECT_FALSE(vyrOSG::setTexture(none, static_cast<osg::Texture2D*>(nullptr)));
  EXPECT_FALSE(vyrOSG::setCubeMapTexture(none, "a"));
  EXPECT_TRUE(m_messages.take().empty());
}

TEST_F(NodeLookTest, AlphaTurnsBlendingOnAndOffAgain) {
  vyrOSG::setAlpha(m_node, 0.25f);
  EXPECT_EQ(materialOf(m_node)->getDiffuse(kFront).a(), 0.25f);
  EXPECT_EQ(m_node->getStateSet()->getRenderingHint(), osg::StateSet::TRANSPARENT_BIN);
  EXPECT_EQ(m_node->getStateSet()->getMode(GL_BLEND), osg::StateAttribute::ON);
  vyrOSG::setAlpha(m_node, 1);
  EXPECT_EQ(m_node->getStateSet()->getRenderingHint(), osg::StateSet::DEFAULT_BIN);
  EXPECT_EQ(m_node->getStateSet()->getMode(GL_BLEND), osg::StateAttribute::INHERIT);
}

TEST_F(NodeLookTest, ColorsDoNotReachAxes) {
  vyrOSG::createAxes(m_geometry.get(), vyr::AffineMatrix4x4(), m_group.get());
  osg::Node* axes = m_node->getChild(1);
  const osg::Vec4 before = materialOf(axes)->getDiffuse(kFront);
  vyrOSG::setDiffuseColor(m_node, vyr::Vec4(0.9, 0.8, 0.7, 1));
  EXPECT_EQ(materialOf(axes)->getDiffuse(kFront), before);
}

TEST_F(NodeLookTest, LightsAreSwitchedByNumber) {
  vyrOSG::setEnableLight(false, 2, m_node);
  EXPECT_EQ(m_node->getStateSet()->getMode(GL_LIGHT2) & osg::StateAttribute::ON, osg::StateAttribute::OFF);
  vyrOSG::setEnableLight(true, 2, m_node);
  EXPECT_EQ(m_node->getStateSet()->getMode(GL_LIGHT2) & osg::StateAttribute::ON, osg::StateAttribute::ON);
  vyrOSG::setEnableLight(true, 8, m_node);
  EXPECT_NE(m_messages.takeOne().find("no light number 8"), std::string::npos);
}

TEST_F(NodeLookTest, WiresOverrideWhatIsBelow) {
  EXPECT_TRUE(vyrOSG::forceWireFrameModeOn(m_group.get()));
  const osg::StateSet::RefAttributePair* wires =
      m_group->getStateSet()->getAttributePair(osg::StateAttribute::POLYGONMODE);
  ASSERT_NE(wires, nullptr);
  EXPECT_EQ(static_cast<osg::PolygonMode*>(wires->first.get())->getMode(osg::PolygonMode::FRONT),
            osg::PolygonMode::LINE);
  EXPECT_TRUE(wires->second & osg::StateAttribute::OVERRIDE);
}

TEST_F(NodeLookTest, UniformsAreAddedByNameAndReplaced) {
  vyrOSG::setUniformInt(m_node, "count", 3);
  vyrOSG::setUniformFloat(m_node, "speed", 2.5f);
  int count = 0;
  float speed = 0;
  EXPECT_TRUE(m_node->getStateSet()->getUniform("count")->get(count));
  EXPECT_TRUE(m_node->getStateSet()->getUniform("speed")->get(speed));
  EXPECT_EQ(count, 3);
  EXPECT_EQ(speed, 2.5f);
  vyrOSG::setUniformInt(m_node, "count", 4);
  EXPECT_TRUE(m_node->getStateSet()->getUniform("count")->get(count));
  EXPECT_EQ(count, 4);
}

TEST_F(NodeLookTest, EveryModeTakesItsOwnTextureUnit) {
  const std::string picture = writePicture("p.png", osg::Vec4(1, 1, 1, 1));
  for (int mode = 0; mode <= 6; ++mode) {
    EXPECT_TRUE(vyrOSG::setTexture(m_geometry.get(), m_group.get(), picture, true, vyrOSG::TextureMode(mode)));
    const auto* texture = dynamic_cast<osg::Texture2D*>(
        m_node->getStateSet()->getTextureAttribute(unsigned(mode), osg::StateAttribute::TEXTURE));
    ASSERT_NE(texture, nullptr) << mode;
    EXPECT_EQ(texture->getWrap(osg::Texture::WRAP_S), osg::Texture::REPEAT);
  }
  EXPECT_FALSE(vyrOSG::setTexture(m_node, picture, false, vyrOSG::TextureMode(7)));
  EXPECT_NE(m_messages.takeOne().find("7 is no texture mode"), std::string::npos);
}

TEST_F(NodeLookTest, ScalesTileTheImage) {
  EXPECT_TRUE(
      vyrOSG::setTexture(m_node, writePicture("p.png", osg::Vec4(1, 1, 1, 1)), true, vyrOSG::DIFFUSE_TEXTURE, 4, 2));
  const auto* matrix =
      static_cast<osg::TexMat*>(m_node->getStateSet()->getTextureAttribute(0, osg::StateAttribute::TEXMAT));
  EXPECT_EQ(matrix->getMatrix().getScale(), osg::Vec3d(4, 2, 1));
}

TEST_F(NodeLookTest, AMissingImageIsNamed) {
  EXPECT_FALSE(vyrOSG::setTexture(m_node, "no such picture.png"));
  EXPECT_NE(m_messages.takeOne().find("no such picture.png"), std::string::npos);
  EXPECT_FALSE(vyrOSG::setTexture(m_body.get(), m_group.get(), "no such picture.png"));
  EXPECT_NE(m_messages.takeOne().find("no such picture.png"), std::string::npos);
  EXPECT_FALSE(vyrOSG::setCubeMapTexture(m_node, m_folder / "sky_", ".png"));
  EXPECT_NE(m_messages.takeOne().find("sky_posx.png"), std::string::npos);
}

TEST_F(NodeLookTest, ADiffuseImageGivesItsOwnColor) {
  ASSERT_TRUE(vyrOSG::setTexture(m_node, writePicture("green.png", osg::Vec4(0, 1, 0, 1))));
  const osg::Vec3 color = drawnColor();
  if (color.x() < 0)
    GTEST_SKIP() << "no graphics on this machine";
  EXPECT_GT(color.y(), 0.6f);
  EXPECT_LT(color.x(), 0.3f);
  EXPECT_LT(color.z(), 0.3f);
}

TEST_F(NodeLookTest, AShadowImageTakesTheLightAway) {
  const osg::Vec3 lit = drawnColor();
  if (lit.x() < 0)
    GTEST_SKIP() << "no graphics on this machine";
  ASSERT_TRUE(
      vyrOSG::setTexture(m_node, writePicture("dark.png", osg::Vec4(0, 0, 0, 1)), false, vyrOSG::SHADOW_TEXTURE));
  EXPECT_LT(drawnColor().y(), 0.5f * lit.y());
}

TEST_F(NodeLookTest, ANormalMapThatPointsStraightOutChangesNothing) {
  ASSERT_TRUE(
      vyrOSG::setTexture(m_node, writePicture("white.png", osg::Vec4(1, 1, 1, 1)), false, vyrOSG::SHADOW_TEXTURE));
  const osg::Vec3 plain = drawnColor();
  if (plain.x() < 0)
    GTEST_SKIP() << "no graphics on this machine";
  ASSERT_TRUE(vyrOSG::setTexture(m_node, writePicture("flat.png", osg::Vec4(0.5f, 0.5f, 1, 1)), false,
                                 vyrOSG::NORMALMAP_TEXTURE));
  EXPECT_LT((drawnColor() - plain).length(), 0.02f);
  ASSERT_TRUE(vyrOSG::setTexture(m_node, writePicture("steep.png", osg::Vec4(1, 0.5f, 0.5f, 1)), false,
                                 vyrOSG::NORMALMAP_TEXTURE));
  EXPECT_GT((drawnColor() - plain).length(), 0.1f);
}

TEST_F(NodeLookTest, ASphereMapIsMirroredAsMuchAsTheCoefficientSays) {
  ASSERT_TRUE(
      vyrOSG::setTexture(m_node, writePicture("red.png", osg::Vec4(1, 0, 0, 1)), false, vyrOSG::SPHEREMAP_TEXTURE));
  vyrOSG::setSpecularColor(m_node, vyr::Vec4(0, 0, 0, 1));
  vyrOSG::setEnvMapReflectionCoefficient(m_node, 1);
  const osg::Vec3 mirror = drawnColor();
  if (mirror.x() < 0)
    GTEST_SKIP() << "no graphics on this machine";
  EXPECT_NEAR(mirror.x(), 1, 0.02);
  EXPECT_NEAR(mirror.y(), 0, 0.02);
  vyrOSG::setEnvMapReflectionCoefficient(m_group.get(), 0);
  EXPECT_GT(drawnColor().y(), 0.2f);
}

TEST_F(NodeLookTest, ACubeMapShowsTheSideThatTheSurfaceLooksAt) {
  // The viewer stands at -y and sees itself mirrored: that is the cube's +z side, y being up there and z up here.
  for (const char* side : {"posx", "negx", "posy", "negy", "negz"})
    writePicture(std::string("sky_") + side + ".png", osg::Vec4(0, 0, 1, 1));
  writePicture("sky_posz.png", osg::Vec4(1, 1, 0, 1));
  ASSERT_TRUE(vyrOSG::setCubeMapTexture(m_node, m_folder / "sky_", ".png"));
  vyrOSG::setSpecularColor(m_node, vyr::Vec4(0, 0, 0, 1));
  vyrOSG::setEnvMapReflectionCoefficient(m_node, 1);
  const osg::Vec3 color = drawnColor();
  if (color.x() < 0)
    GTEST_SKIP() << "no graphics on this machine";
  EXPECT_NEAR(color.x(), 1, 0.02);
  EXPECT_NEAR(color.y(), 1, 0.02);
  EXPECT_NEAR(color.z(), 0, 0.02);
}

} // namespace
