/// Measures in drawn pixels that each texture mode changes a surface in the way that its name says.
#include "CapturedMessages.h"
#include "OffscreenViewer.h"
#include "TemporaryFolder.h"

#include <vyrOSG/Group.h>
#include <vyrOSG/utils.h>

#include <vyr/RigidBody.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Sphere.h>

#include <osgDB/WriteFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>

namespace {

constexpr int kSize = 256;
constexpr double kDistance = 6; ///< of the viewer (m)
constexpr double kFace = 1;     ///< half the edge of the face that is looked at (m)

/// A slab of 2 by 2 m, whose front the viewer at -y looks at, and a ball instead of it where that is asked for.
class TextureModes : public testing::Test {
protected:
  void SetUp() override {
    if (!m_viewer.isReady())
      GTEST_SKIP() << "no graphics on this machine: " << m_viewer.describe();
    m_viewer.viewer()->setSceneData(m_group);
    lookFrom(osg::Vec3d(0, -kDistance, 0));
    lightFrom(osg::Vec3d(0, -1, 0));
    use(new vyrCollide::Box(vyr::Vec3(kFace, 0.1, kFace)));
  }

  void TearDown() override { EXPECT_TRUE(m_messages.take().empty()); }

  void use(vyrCollide::Shape* shape) {
    m_group->removeChildren(0, m_group->getNumChildren());
    m_body = new vyr::RigidBody;
    m_body->add(new vyrCollide::Geometry(shape));
    m_node = vyrOSG::createVisual(m_body->getGeometries()[0].get(), m_group.get());
    vyrOSG::setDiffuseColor(m_node, vyr::Vec4(0.8, 0.8, 0.8, 1));
    vyrOSG::setSpecularColor(m_node, vyr::Vec4(0, 0, 0, 1));
  }

  void lookFrom(const osg::Vec3d& eye) {
    m_viewer.camera()->setViewMatrixAsLookAt(eye, osg::Vec3d(), osg::Vec3d(0, 0, 1));
  }

  void lightFrom(const osg::Vec3d& direction) {
    m_viewer.viewer()->setLightingMode(osg::View::SKY_LIGHT);
    osg::Light* light = m_viewer.viewer()->getLight();
    light->setPosition(osg::Vec4d(direction, 0));
    light->setAmbient(osg::Vec4(0, 0, 0, 1));
    light->setDiffuse(osg::Vec4(1, 1, 1, 1));
    light->setSpecular(osg::Vec4(1, 1, 1, 1));
  }

  /// Puts a picture on the node; color(u, v) runs from 0 to 1 to the right and upwards.
  void put(vyrOSG::TextureMode mode, const std::function<osg::Vec4(double u, double v)>& color) {
    constexpr int kPixels = 256;
    osg::ref_ptr<osg::Image> image = new osg::Image;
    image->allocateImage(kPixels, kPixels, 1, GL_RGB, GL_UNSIGNED_BYTE);
    for (unsigned int t = 0; t < kPixels; ++t)
      for (unsigned int s = 0; s < kPixels; ++s)
        image->setColor(color((s + 0.5) / kPixels, (t + 0.5) / kPixels), s, t);
    const std::string file = m_folder / ("mode" + std::to_string(mode) + ".png");
    ASSERT_TRUE(osgDB::writeImageFile(*image, file));
    ASSERT_TRUE(vyrOSG::setTexture(m_node, file, true, mode));
  }

  /// The picture; the first frame compiles.
  osg::ref_ptr<osg::Image> draw() {
    m_viewer.draw();
    return m_viewer.draw();
  }

  /// The average colour of a part of the picture, in parts of the face: (-1, -1) is its lower left corner.
  static osg::Vec3d average(const osg::Image& image, double left, double right, double low, double high) {
    // The opening of the viewer is 40 degrees.
    const double scale = kFace / ((kDistance - 0.1) * std::tan(20 * osg::PI / 180)) * 0.5 * kSize;
    const auto pixel = [&](double place) {
      return static_cast<unsigned int>(std::lround(0.5 * kSize + place * scale));
    };
    osg::Vec3d sum;
    int count = 0;
    for (unsigned int y = pixel(low); y < pixel(high); ++y) {
      for (unsigned int x = pixel(left); x < pixel(right); ++x, ++count) {
        const osg::Vec4 color = image.getColor(x, y);
        sum += osg::Vec3d(color.r(), color.g(), color.b());
      }
    }
    return sum / count;
  }

  /// Red along the middle row of the picture.
  static std::vector<double> middleRow(const osg::Image& image) {
    std::vector<double> row;
    for (unsigned int x = 0; x < kSize; ++x)
      row.push_back(image.getColor(x, kSize / 2).r());
    return row;
  }

  OffscreenViewer m_viewer{kSize, kSize};
  TemporaryFolder m_folder;
  CapturedMessages m_messages;
  osg::ref_ptr<vyrOSG::Group> m_group = new vyrOSG::Group;
  vyr::ref_ptr<vyr::RigidBody> m_body;
  osg::Node* m_node = nullptr;
};

const osg::Vec4 kBlack(0, 0, 0, 1);
const osg::Vec4 kWhite(1, 1, 1, 1);

TEST_F(TextureModes, DiffuseGivesTheSurfaceTheColorsOfThePicture) {
  put(vyrOSG::DIFFUSE_TEXTURE,
      [](double u, double) { return u < 0.5 ? osg::Vec4(1, 0, 0, 1) : osg::Vec4(0, 0, 1, 1); });
  const auto image = draw();
  const osg::Vec3d left = average(*image, -0.9, -0.1, -0.9, 0.9);
  const osg::Vec3d right = average(*image, 0.1, 0.9, -0.9, 0.9);
  EXPECT_GT(left.x(), 0.6);
  EXPECT_LT(left.z(), 0.05);
  EXPECT_GT(right.z(), 0.6);
  EXPECT_LT(right.x(), 0.05);
}

TEST_F(TextureModes, ShadowTakesLightAwayAndLeavesTheColor) {
  vyrOSG::setDiffuseColor(m_node, vyr::Vec4(0.8, 0.4, 0.2, 1));
  vyrOSG::setAmbientColor(m_node, vyr::Vec4(0, 0, 0, 1));
  put(vyrOSG::SHADOW_TEXTURE, [](double u, double) { return u < 0.5 ? kWhite * 0.25 : kWhite; });
  const auto image = draw();
  const osg::Vec3d dark = average(*image, -0.9, -0.1, -0.9, 0.9);
  const osg::Vec3d lit = average(*image, 0.1, 0.9, -0.9, 0.9);
  EXPECT_NEAR(lit.x(), 0.8, 0.01);
  for (int i = 0; i < 3; ++i)
    EXPECT_NEAR(dark[i], 0.25 * lit[i], 0.01);
}

TEST_F(TextureModes, ShadowJitterMakesTheEdgesOfShadowsSoft) {
  vyrOSG::setAmbientColor(m_node, vyr::Vec4(0, 0, 0, 1));
  put(vyrOSG::SHADOW_TEXTURE, [](double u, double) { return u > 0.25 && u < 0.75 ? kBlack : kWhite; });
  const auto countBetween = [](const osg::Image& image) {
    int count = 0;
    for (unsigned int y = kSize / 2 - 20; y < kSize / 2 + 20; ++y)
      for (unsigned int x = 0; x < kSize; ++x) {
        const osg::Vec4 color = image.getColor(x, y);
        // The background is blue.
        count += color.b() < 0.9f && color.r() > 0.1f && color.r() < 0.7f ? 1 : 0;
      }
    return count / 40.0;
  };
  const auto hard = draw();
  std::mt19937 generator(1);
  std::uniform_real_distribution<float> random(0, 1);
  put(vyrOSG::SHADOW_JITTER_TEXTURE,
      [&](double, double) { return osg::Vec4(random(generator), random(generator), 0, 1); });
  const auto soft = draw();
  // Two edges; 3 % of the picture to each side become half light: of the 116 pixels of the face about 7 an edge.
  EXPECT_LT(countBetween(*hard), 4);
  EXPECT_GT(countBetween(*soft), countBetween(*hard) + 6);
  // Away from the edges nothing changes, and as much light as before arrives.
  EXPECT_NEAR(average(*soft, -0.4, 0.4, -0.9, 0.9).x(), average(*hard, -0.4, 0.4, -0.9, 0.9).x(), 0.01);
  EXPECT_NEAR(average(*soft, -0.9, -0.6, -0.9, 0.9).x(), average(*hard, -0.9, -0.6, -0.9, 0.9).x(), 0.01);
  EXPECT_NEAR(average(*soft, -0.9, 0.9, -0.9, 0.9).x(), average(*hard, -0.9, 0.9, -0.9, 0.9).x(), 0.03);
}

TEST_F(TextureModes, NormalmapLightsWhatLeansToTheLight) {
  // The left half leans to the left, the right half to the right; the light comes from the left.
  lightFrom(osg::Vec3d(-1, -1, 0));
  const auto plain = draw();
  put(vyrOSG::NORMALMAP_TEXTURE, [](double u, double) { return osg::Vec4(u < 0.5 ? 0.25f : 0.75f, 0.5f, 0.933f, 1); });
  const auto image = draw();
  const double flat = average(*plain, -0.9, 0.9, -0.9, 0.9).x();
  EXPECT_GT(average(*image, -0.9, -0.1, -0.9, 0.9).x(), flat + 0.1);
  EXPECT_LT(average(*image, 0.1, 0.9, -0.9, 0.9).x(), flat - 0.1);
  // Of the light that comes from above, as much falls on what leans upwards.
  lightFrom(osg::Vec3d(0, -1, 1));
  put(vyrOSG::NORMALMAP_TEXTURE, [](double, double v) { return osg::Vec4(0.5f, v < 0.5 ? 0.25f : 0.75f, 0.933f, 1); });
  const auto upright = draw();
  EXPECT_GT(average(*upright, -0.9, 0.9, 0.1, 0.9).x(), average(*upright, -0.9, 0.9, -0.9, -0.1).x() + 0.2);
}

TEST_F(TextureModes, HeightmapLightsSlopesAndMovesWhatLiesDeep) {
  // A ridge in the middle: its left flank leans to the left.
  lightFrom(osg::Vec3d(-1, -1, 0));
  put(vyrOSG::HEIGHTMAP_TEXTURE, [](double u, double) { return kWhite * static_cast<float>(1 - std::abs(2 * u - 1)); });
  const auto ridge = draw();
  EXPECT_GT(average(*ridge, -0.8, -0.2, -0.5, 0.5).x(), average(*ridge, 0.2, 0.8, -0.5, 0.5).x() + 0.02);
  lightFrom(osg::Vec3d(0, -1, 0));
  lookFrom(osg::Vec3d(-4, -4, 0));
  put(vyrOSG::DIFFUSE_TEXTURE, [](double u, double) { return u < 0.5 ? kWhite : kBlack; });
  const auto edge = [this](float height) {
    put(vyrOSG::HEIGHTMAP_TEXTURE, [height](double, double) { return kWhite * height; });
    const std::vector<double> row = middleRow(*draw());
    const auto bright = std::find_if(row.begin(), row.end(), [](double red) { return red > 0.3; });
    return std::find_if(bright, row.end(), [](double red) { return red < 0.3; }) - row.begin();
  };
  // The line of sight runs on to the right below the surface: what lies deep is seen 0.04 of the picture farther to the
  // left at 45 degrees, 3 of the 84 pixels of the face.
  const auto high = edge(1), deep = edge(0);
  EXPECT_NEAR(high - deep, 3, 1);
}

TEST_F(TextureModes, SpecularmapSaysWhereTheSurfaceShines) {
  vyrOSG::setDiffuseColor(m_node, vyr::Vec4(0.1, 0.1, 0.1, 1));
  vyrOSG::setSpecularColor(m_node, vyr::Vec4(1, 1, 1, 1));
  vyrOSG::setShininess(m_node, 4);
  put(vyrOSG::SPECULARMAP_TEXTURE, [](double u, double) { return u < 0.5 ? kBlack : kWhite; });
  const auto image = draw();
  EXPECT_LT(average(*image, -0.9, -0.1, -0.5, 0.5).x(), 0.2);
  EXPECT_GT(average(*image, 0.1, 0.9, -0.5, 0.5).x(), 0.8);
}

TEST_F(TextureModes, SpheremapMirrorsSurroundings) {
  use(new vyrCollide::Sphere(kFace));
  put(vyrOSG::SPHEREMAP_TEXTURE, [](double u, double v) { return osg::Vec4(u < 0.5 ? 1 : 0, v < 0.5 ? 0 : 1, 0, 1); });
  vyrOSG::setEnvMapReflectionCoefficient(m_node, 1);
  const auto image = draw();
  // What stands on the left of the picture is mirrored by the left of the ball, what is above by its upper half.
  EXPECT_GT(average(*image, -0.6, -0.2, -0.2, 0.2).x(), 0.95);
  EXPECT_LT(average(*image, 0.2, 0.6, -0.2, 0.2).x(), 0.05);
  EXPECT_GT(average(*image, -0.2, 0.2, 0.2, 0.6).y(), 0.95);
  EXPECT_LT(average(*image, -0.2, 0.2, -0.6, -0.2).y(), 0.05);
  vyrOSG::setEnvMapReflectionCoefficient(m_node, 0);
  const auto dull = draw();
  const osg::Vec3d middle = average(*dull, -0.3, 0.3, -0.3, 0.3);
  EXPECT_NEAR(middle.x(), middle.z(), 0.02);
}

} // namespace
