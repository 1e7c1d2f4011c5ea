// The surface of a geometry in texels.
#include "CapturedMessages.h"

#include <vyr/VectorPOD.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/HeightField.h>
#include <vyrCollide/Plane.h>
#include <vyrCollide/Sphere.h>
#include <vyrCollide/Trimesh.h>
#include <vyrOSG/PressureAtlas.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <set>

namespace {

using vyr::Vec3;
using vyrOSG::PressureAtlas;

vyr::ref_ptr<vyrCollide::Geometry> geometryOf(vyrCollide::Shape* shape) {
  return vyr::ref_ptr<vyrCollide::Geometry>(new vyrCollide::Geometry(shape));
}

TEST(PressureAtlas, CoversABoxExactly) {
  const auto geometry = geometryOf(new vyrCollide::Box(Vec3(0.5, 0.4, 0.3)));
  const vyr::ref_ptr<PressureAtlas> atlas(new PressureAtlas(geometry.get(), 20));
  ASSERT_TRUE(atlas->isValid());
  // Two faces each of 1.0 x 0.8, 1.0 x 0.6, 0.8 x 0.6 at 20 texels a metre.
  EXPECT_EQ(2u * (20 * 16 + 20 * 12 + 16 * 12), atlas->getNumTexels());
  EXPECT_NEAR(2 * (0.8 + 0.6 + 0.48), atlas->getArea(), 1e-6);
  for (const PressureAtlas::Texel& texel : atlas->getTexels()) {
    EXPECT_NEAR(0.0025, texel.area, 1e-6);
    const double side = std::max(
        {std::abs(texel.position.x()) / 0.5, std::abs(texel.position.y()) / 0.4, std::abs(texel.position.z()) / 0.3});
    EXPECT_NEAR(1, side, 1e-6);
    EXPECT_GT(texel.normal * texel.position, 0);
  }
}

TEST(PressureAtlas, CoversABallAsItIsDrawn) {
  const auto geometry = geometryOf(new vyrCollide::Sphere(0.5));
  const vyr::ref_ptr<PressureAtlas> atlas(new PressureAtlas(geometry.get()));
  const double area = 4 * 3.14159265 * 0.25;
  EXPECT_NEAR(area, atlas->getArea(), 0.01 * area);
  for (const PressureAtlas::Texel& texel : atlas->getTexels())
    EXPECT_NEAR(0.5, texel.position.length(), 0.005);
}

TEST(PressureAtlas, PixelsShowTheTexelsAndABorder) {
  const auto geometry = geometryOf(new vyrCollide::Box(Vec3(0.5, 0.5, 0.5)));
  const vyr::ref_ptr<PressureAtlas> atlas(new PressureAtlas(geometry.get(), 10));
  std::set<std::size_t> seen;
  std::size_t covered = 0;
  for (unsigned int y = 0; y < atlas->getHeight(); ++y) {
    for (unsigned int x = 0; x < atlas->getWidth(); ++x) {
      const std::size_t texel = atlas->getTexelOfPixel(x, y);
      covered += texel < atlas->getNumTexels() ? 1 : 0;
      seen.insert(texel);
    }
  }
  seen.erase(atlas->getNumTexels());
  EXPECT_EQ(atlas->getNumTexels(), seen.size());
  // Each of the six faces has 10 x 10 texels and a border around.
  EXPECT_EQ(6u * 12 * 12, covered);
  const osg::ref_ptr<osg::Geometry> mesh = atlas->createMesh();
  for (const osg::Vec2& coord : *static_cast<osg::Vec2Array*>(mesh->getTexCoordArray(0))) {
    EXPECT_GT(coord.x(), 0);
    EXPECT_LT(coord.x(), 1);
    EXPECT_GT(coord.y(), 0);
    EXPECT_LT(coord.y(), 1);
  }
}

TEST(PressureAtlas, AddsUpToForces) {
  const auto geometry = geometryOf(new vyrCollide::Box(Vec3(0.5, 0.5, 0.5)));
  const vyr::ref_ptr<PressureAtlas> atlas(new PressureAtlas(geometry.get(), 10));
  atlas->addPressure(3, 1000);
  atlas->addPressure(3, 500);
  atlas->addPressure(4, std::numeric_limits<double>::quiet_NaN());
  atlas->addPressure(99999, 1);
  EXPECT_EQ(1500, atlas->getPressure(3));
  EXPECT_EQ(0, atlas->getPressure(99999));
  EXPECT_NEAR(15, atlas->getForce(), 1e-4);
  EXPECT_EQ(1u, atlas->getPressedTexels().size());
  atlas->clear();
  EXPECT_EQ(0, atlas->getForce());
}

TEST(PressureAtlas, FindsTexelsInABox) {
  const auto geometry = geometryOf(new vyrCollide::Box(Vec3(0.5, 0.5, 0.5)));
  const vyr::ref_ptr<PressureAtlas> atlas(new PressureAtlas(geometry.get(), 10));
  std::vector<std::size_t> found;
  atlas->findTexels(Vec3(-0.3, -0.2, 0.4), Vec3(0.3, 0.2, 0.6), found);
  // Texel centres at 0.05, 0.15 and so on: 6 by 4 of the upper face.
  EXPECT_EQ(24u, found.size());
  atlas->findTexels(Vec3(5, 5, 5), Vec3(6, 6, 6), found);
  EXPECT_TRUE(found.empty());
}

TEST(PressureAtlas, LowersTheResolutionOfLargeSurfaces) {
  const auto geometry = geometryOf(new vyrCollide::Box(Vec3(100, 100, 1)));
  const vyr::ref_ptr<PressureAtlas> atlas(new PressureAtlas(geometry.get(), 100));
  ASSERT_TRUE(atlas->isValid());
  EXPECT_LT(atlas->getResolution(), 11);
  EXPECT_LE(atlas->getWidth(), 2048u);
  EXPECT_LE(atlas->getHeight(), 2048u);
  EXPECT_NEAR(2 * 200 * 200 + 4 * 200 * 2, atlas->getArea(), 1);
}

TEST(PressureAtlas, FollowsGroundThatGivesWay) {
  auto* field = new vyrCollide::HeightField(11, 11, 1, 1, vyr::RealVector(121, 0.0));
  const auto geometry = geometryOf(field);
  const vyr::ref_ptr<PressureAtlas> atlas(new PressureAtlas(geometry.get(), 20));
  EXPECT_EQ(400u, atlas->getNumTexels());
  EXPECT_FALSE(atlas->refresh());
  field->setHeights(vyr::RealVector(121, -0.25));
  EXPECT_TRUE(atlas->refresh());
  EXPECT_EQ(400u, atlas->getNumTexels());
  EXPECT_NEAR(-0.25, atlas->getTexels()[17].position.z(), 1e-9);
  EXPECT_NEAR(1, atlas->getArea(), 1e-9);
}

TEST(PressureAtlas, RefusesWhatHasNoSurface) {
  CapturedMessages messages;
  const auto plane = geometryOf(new vyrCollide::Plane);
  EXPECT_FALSE(vyr::ref_ptr<PressureAtlas>(new PressureAtlas(plane.get()))->isValid());
  EXPECT_EQ(1u, messages.take().size());
  EXPECT_FALSE(vyr::ref_ptr<PressureAtlas>(new PressureAtlas(nullptr))->isValid());
  const auto box = geometryOf(new vyrCollide::Box(Vec3(1, 1, 1)));
  for (double resolution : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
    const vyr::ref_ptr<PressureAtlas> atlas(new PressureAtlas(box.get(), resolution));
    EXPECT_FALSE(atlas->isValid());
    EXPECT_EQ(nullptr, atlas->createMesh());
    EXPECT_EQ(1u, messages.take().size());
  }
  // The message about an empty mesh is the mesh's own.
  const auto empty = geometryOf(new vyrCollide::Trimesh({}, {}));
  messages.take();
  EXPECT_FALSE(vyr::ref_ptr<PressureAtlas>(new PressureAtlas(empty.get()))->isValid());
}

} // namespace
