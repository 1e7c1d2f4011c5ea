// Soft ground and prints as surfaces.
#include <vyrOSG/DeformableHeightFieldRenderer.h>
#include <vyrOSG/TerrainRenderer.h>

#include <vyr/RigidBody.h>
#include <vyrCollide/Box.h>

#include <gtest/gtest.h>

#include <osg/Geode>
#include <osg/Geometry>

namespace {

using vyr::Vec3;

const size_t kSamples = 41;

struct Surface {
  const osg::Vec3Array& vertices;
  const osg::Vec3Array& normals;
  const osg::Vec4Array& colors;
};

Surface surfaceOf(vyrOSG::GeometryNode& node) {
  const osg::Geometry& mesh =
      *node.getRenderChild(vyrOSG::GeometryNode::RENDER_DATA)->asGeode()->getDrawable(0)->asGeometry();
  return {static_cast<const osg::Vec3Array&>(*mesh.getVertexArray()),
          static_cast<const osg::Vec3Array&>(*mesh.getNormalArray()),
          static_cast<const osg::Vec4Array&>(*mesh.getColorArray())};
}

void addLoad(vyrSDK::Simulation& simulation) {
  vyr::ref_ptr<vyr::RigidBody> body(new vyr::RigidBody("load"));
  body->add(new vyrCollide::Geometry(new vyrCollide::Box(Vec3(0.3, 0.3, 0.3))));
  body->setMass(2000);
  body->setPosition(Vec3(0, 0, 0.301));
  simulation.add(body.get());
}

vyr::RealVector flat() {
  return vyr::RealVector(kSamples * kSamples, 0.0);
}

TEST(TerrainRenderer, ShowsTheHeightsAfterEachStep) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  vyr::ref_ptr<vyrModel::Terrain> terrain(new vyrModel::Terrain(kSamples, kSamples, 4, 4, flat()));
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  vyr::ref_ptr<vyrOSG::TerrainRenderer> renderer(
      new vyrOSG::TerrainRenderer(terrain.get(), vyr::RangeReal(-0.2, 0.2), group));
  simulation->add(terrain.get());
  simulation->add(renderer.get());
  ASSERT_NE(renderer->getTerrainNode(), nullptr);
  const Surface surface = surfaceOf(*renderer->getTerrainNode());
  const osg::Vec4 before = surface.colors[20 * kSamples + 20];
  EXPECT_EQ(surface.normals[5], osg::Vec3(0, 0, 1));
  addLoad(*simulation);
  simulation->stepTo(1);
  for (size_t row = 0; row < kSamples; ++row) {
    for (size_t column = 0; column < kSamples; ++column)
      EXPECT_FLOAT_EQ(surface.vertices[row * kSamples + column].z(), float(terrain->getHeight(column, row)));
  }
  EXPECT_LT(surface.vertices[20 * kSamples + 20].z(), -0.01f);
  // Pressed soil is darker.
  EXPECT_LT(surface.colors[20 * kSamples + 20].r(), before.r());
}

TEST(TerrainRenderer, OutlivesItsTerrainAndItsGroup) {
  vyr::ref_ptr<vyrModel::Terrain> terrain(new vyrModel::Terrain(kSamples, kSamples, 4, 4, flat()));
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  vyr::ref_ptr<vyrOSG::TerrainRenderer> renderer(
      new vyrOSG::TerrainRenderer(terrain.get(), vyr::RangeReal(0, 1), group));
  EXPECT_NE(0u, renderer->getTerrainNode()->getNodeMask());
  terrain = nullptr;
  renderer->post(vyr::TimeStamp());
  EXPECT_EQ(0u, renderer->getTerrainNode()->getNodeMask());
  group = nullptr;
  renderer->post(vyr::TimeStamp());
  renderer = nullptr;
}

// From dark earth to grass, whichever bound is given first; all of one colour where the bounds are equal.
TEST(TerrainRenderer, TakesARangeUpsideDownAndAnEmptyOne) {
  vyr::RealVector slope = flat();
  for (size_t i = 0; i < slope.size(); ++i)
    slope[i] = 2 + 8 * double(i / kSamples) / (kSamples - 1);
  vyr::ref_ptr<vyrModel::Terrain> terrain(new vyrModel::Terrain(kSamples, kSamples, 4, 4, slope));
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  const auto colorsFor = [&](double a, double b) {
    vyr::ref_ptr<vyrOSG::TerrainRenderer> renderer(
        new vyrOSG::TerrainRenderer(terrain.get(), vyr::RangeReal(a, b), group));
    EXPECT_LE(renderer->getRange().lower(), renderer->getRange().upper());
    const osg::Vec4Array& colors = surfaceOf(*renderer->getTerrainNode()).colors;
    return std::make_pair(colors.front(), colors.back());
  };
  EXPECT_EQ(colorsFor(2, 10), colorsFor(10, 2));
  EXPECT_LT(colorsFor(10, 2).first.g(), colorsFor(10, 2).second.g());
  EXPECT_EQ(colorsFor(5, 5).first, colorsFor(5, 5).second);
  EXPECT_EQ(0u, group->getNumChildren());
}

TEST(TerrainRenderer, AnInvalidTerrainHasNoNode) {
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  vyr::ref_ptr<vyrModel::Terrain> terrain(new vyrModel::Terrain(1, 1, 4, 4, vyr::RealVector(1, 0.0)));
  vyr::ref_ptr<vyrOSG::TerrainRenderer> renderer(
      new vyrOSG::TerrainRenderer(terrain.get(), vyr::RangeReal(0, 0), group));
  EXPECT_EQ(renderer->getTerrainNode(), nullptr);
  EXPECT_EQ(group->getNumChildren(), 0u);
  renderer->post(vyr::TimeStamp());
}

TEST(DeformableHeightFieldRenderer, ShowsPrints) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  vyr::ref_ptr<vyrCollide::Geometry> ground(
      new vyrCollide::Geometry(new vyrCollide::HeightField(kSamples, kSamples, 4, 4, flat())));
  vyr::ref_ptr<vyrModel::HeightFieldDeformer> deformer(new vyrModel::HeightFieldDeformer(ground.get()));
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  vyr::ref_ptr<vyrOSG::DeformableHeightFieldRenderer> renderer(
      new vyrOSG::DeformableHeightFieldRenderer(deformer.get(), group));
  ASSERT_TRUE(renderer->isValid());
  simulation->add(ground.get());
  simulation->add(deformer.get());
  simulation->add(renderer.get());
  addLoad(*simulation);
  simulation->stepTo(1);
  const Surface surface = surfaceOf(*renderer->getHeightFieldNode());
  const size_t middle = 20 * kSamples + 20;
  EXPECT_FLOAT_EQ(surface.vertices[middle].z(), float(-deformer->getDepth(20, 20)));
  EXPECT_LT(surface.vertices[middle].z(), -0.01f);
  EXPECT_LT(surface.colors[middle].r(), surface.colors[0].r());
}

TEST(DeformableHeightFieldRenderer, IsInvalidOnceItsDeformerHasGone) {
  vyr::ref_ptr<vyrModel::HeightFieldDeformer> deformer(new vyrModel::HeightFieldDeformer(
      new vyrCollide::Geometry(new vyrCollide::HeightField(kSamples, kSamples, 4, 4, flat()))));
  osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
  vyr::ref_ptr<vyrOSG::DeformableHeightFieldRenderer> renderer(
      new vyrOSG::DeformableHeightFieldRenderer(deformer.get(), group));
  deformer = nullptr;
  renderer->last(vyr::TimeStamp());
  EXPECT_FALSE(renderer->isValid());
  EXPECT_EQ(0u, renderer->getHeightFieldNode()->getNodeMask());
  renderer = nullptr;
  EXPECT_EQ(group->getNumChildren(), 0u);
}

} // namespace
