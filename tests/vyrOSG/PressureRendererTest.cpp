// Colours, legend and recordings of pressures.
#include "CapturedMessages.h"

#include <vyrCollide/Box.h>
#include <vyrCollide/Plane.h>
#include <vyrCollide/Trimesh.h>
#include <vyrOSG/PressureRenderer.h>
#include <vyrOSG/utils.h>
#include <vyrSDK/GeometryFilter.h>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using vyr::Vec3;
using vyrOSG::PressureAtlas;
using vyrOSG::PressureRenderer;

vyrRender::ColorVector blueToRed() {
  vyrRender::ColorVector colors;
  colors.push_back(vyrRender::Color(0, 0, 1));
  colors.push_back(vyrRender::Color(1, 0, 0));
  return colors;
}

/// A cube of 1 m and 1000 kg, that presses with 9807 Pa on a table.
class PressureRendererTest : public ::testing::Test {
protected:
  PressureRendererTest() {
    simulation->add(addBody(top.get(), Vec3(0, 0, -0.1), vyr::RigidBody::STATIC).get());
    cubeBody = addBody(cube.get(), Vec3(0, 0, 0.5), vyr::RigidBody::DYNAMICS);
    simulation->add(cubeBody.get());
    renderer = new PressureRenderer(group.get(), decorator.get(), simulation.get(), 0, 2e4, blueToRed(), 10, 2e-5,
                                    vyrOSG::PressureFromContacts::NORMAL_FORCE);
  }

  static vyr::ref_ptr<vyr::RigidBody> addBody(vyrCollide::Geometry* geometry, const Vec3& place,
                                              vyr::RigidBody::MotionControl control) {
    vyr::ref_ptr<vyr::RigidBody> body(new vyr::RigidBody);
    body->add(geometry);
    body->setPosition(place);
    body->setMotionControl(control);
    return body;
  }

  /// The texel of the table next to a place on its top.
  std::size_t texelAt(double x, double y) const {
    const PressureAtlas& atlas = *renderer->getPressureAtlasManager()->findAtlas(top.get());
    for (std::size_t i = 0; i < atlas.getNumTexels(); ++i) {
      const PressureAtlas::Texel& texel = atlas.getTexels()[i];
      if (texel.normal.z() > 0.5 && std::abs(texel.position.x() - x) < 0.06 && std::abs(texel.position.y() - y) < 0.06)
        return i;
    }
    return atlas.getNumTexels();
  }

  vyr::Vec4 colorAt(double x, double y) const { return renderer->getShownColor(top.get(), texelAt(x, y)); }

  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};
  vyr::ref_ptr<vyrCollide::Geometry> top{new vyrCollide::Geometry(new vyrCollide::Box(Vec3(2, 2, 0.1)), "top")};
  vyr::ref_ptr<vyrCollide::Geometry> cube{new vyrCollide::Geometry(new vyrCollide::Box(Vec3(0.5, 0.5, 0.5)), "cube")};
  vyr::ref_ptr<vyr::RigidBody> cubeBody;
  osg::ref_ptr<vyrOSG::Group> group{new vyrOSG::Group};
  osg::ref_ptr<vyrOSG::SceneDecorator> decorator{new vyrOSG::SceneDecorator(640, 480)};
  vyr::ref_ptr<PressureRenderer> renderer;
};

TEST_F(PressureRendererTest, ColoursByPressure) {
  ASSERT_TRUE(renderer->addGeometry(top.get()));
  simulation->stepTo(2);
  // 9807 Pa of 20000: 0.49 of the way from blue to red.
  EXPECT_NEAR(0.49, colorAt(0.05, 0.05).x(), 0.04);
  EXPECT_NEAR(0.51, colorAt(0.05, 0.05).z(), 0.04);
  // Elsewhere bare, which is neither.
  EXPECT_NEAR(colorAt(1.5, 1.5).x(), colorAt(1.5, 1.5).z(), 0.05);
  renderer->getColorRange()->setColors({osg::Vec4(1, 1, 1, 1), osg::Vec4(1, 0.98f, 1, 1), osg::Vec4(0, 0, 0, 1)});
  simulation->step();
  EXPECT_GT(colorAt(0.05, 0.05).x(), 0.95);
}

TEST_F(PressureRendererTest, ReplacesOrCoversTheVisual) {
  vyrOSG::GeometryNode* topVisual = vyrOSG::createVisual(top.get(), group.get());
  vyrOSG::GeometryNode* cubeVisual = vyrOSG::createVisual(cube.get(), group.get());
  ASSERT_TRUE(renderer->addGeometry(top.get(), true));
  ASSERT_TRUE(renderer->addGeometry(cube.get(), false));
  EXPECT_EQ(0u, topVisual->getNodeMask());
  EXPECT_NE(0u, cubeVisual->getNodeMask());
  EXPECT_EQ(4u, group->getNumChildren());
  EXPECT_EQ(0, renderer->getShownColor(cube.get(), 0).w());
  EXPECT_EQ(1, renderer->getShownColor(top.get(), 0).w());
  simulation->clear();
  renderer = nullptr;
  EXPECT_NE(0u, topVisual->getNodeMask());
  EXPECT_EQ(2u, group->getNumChildren());
}

TEST_F(PressureRendererTest, AddsEachOnceAndOnlyWhatHasASurface) {
  CapturedMessages messages;
  EXPECT_FALSE(renderer->addGeometry(nullptr));
  EXPECT_TRUE(renderer->addGeometry(top.get()));
  EXPECT_FALSE(renderer->addGeometry(top.get()));
  EXPECT_TRUE(messages.errors().empty());
  const vyr::ref_ptr<vyrCollide::Geometry> plane(new vyrCollide::Geometry(new vyrCollide::Plane));
  EXPECT_FALSE(renderer->addGeometry(plane.get()));
  EXPECT_EQ(1u, messages.errors().size());
  EXPECT_EQ(1u, renderer->getPressureAtlasManager()->getNumAtlases());
}

TEST_F(PressureRendererTest, AddsAllGeometriesOfAMesh) {
  const std::vector<Vec3> corners = {Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(0, 1, 0), Vec3(0, 0, 1)};
  const vyr::ref_ptr<vyrCollide::Trimesh> mesh(new vyrCollide::Trimesh(corners, {0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3}));
  EXPECT_FALSE(renderer->addTrimesh(mesh.get()));
  EXPECT_FALSE(renderer->addTrimesh(nullptr));
  const vyr::ref_ptr<vyrCollide::Geometry> standing(new vyrCollide::Geometry(mesh.get()));
  standing->setLocalTransform(vyr::AffineMatrix4x4::translate(5, 0, 0));
  simulation->add(standing.get());
  const vyr::ref_ptr<vyrCollide::Geometry> moving(new vyrCollide::Geometry(mesh.get()));
  simulation->add(addBody(moving.get(), Vec3(8, 0, 0), vyr::RigidBody::DYNAMICS).get());
  EXPECT_TRUE(renderer->addTrimesh(mesh.get()));
  EXPECT_NE(nullptr, renderer->getPressureAtlasManager()->findAtlas(standing.get()));
  EXPECT_NE(nullptr, renderer->getPressureAtlasManager()->findAtlas(moving.get()));
  EXPECT_FALSE(renderer->addTrimesh(mesh.get()));
}

TEST_F(PressureRendererTest, RecordsMaximumAndMean) {
  CapturedMessages messages;
  ASSERT_TRUE(renderer->addGeometry(top.get()));
  EXPECT_EQ(std::numeric_limits<unsigned int>::max(), renderer->stopMaxAvgRecording());
  EXPECT_EQ(1u, messages.take().size());
  simulation->stepTo(2);
  ASSERT_TRUE(renderer->startMaxAvgRecording());
  EXPECT_FALSE(renderer->startMaxAvgRecording());
  EXPECT_TRUE(renderer->isRecording());
  for (int i = 0; i < 30; ++i)
    simulation->step();
  // Half of the time the cube is away.
  cubeBody->setPosition(Vec3(0, 0, 50));
  for (int i = 0; i < 30; ++i)
    simulation->step();
  EXPECT_EQ(0u, renderer->getNumRecordings());
  EXPECT_EQ(0u, renderer->stopMaxAvgRecording());
  EXPECT_FALSE(renderer->isRecording());
  EXPECT_EQ(1u, renderer->getNumRecordings());

  const vyr::Vec4 bare = colorAt(0.05, 0.05);
  ASSERT_TRUE(renderer->renderMaxPressure(0));
  EXPECT_NEAR(0.49, colorAt(0.05, 0.05).x(), 0.05);
  ASSERT_TRUE(renderer->renderAvgPressure(0));
  EXPECT_NEAR(0.245, colorAt(0.05, 0.05).x(), 0.03);
  // Steps do not change what is shown of a recording.
  simulation->step();
  EXPECT_NEAR(0.245, colorAt(0.05, 0.05).x(), 0.03);
  EXPECT_TRUE(messages.errors().empty());
  EXPECT_FALSE(renderer->renderMaxPressure(1));
  EXPECT_FALSE(renderer->renderAvgPressure(4294967295ul));
  EXPECT_EQ(2u, messages.take().size());
  EXPECT_NEAR(0.245, colorAt(0.05, 0.05).x(), 0.03);
  EXPECT_TRUE(renderer->restoreRendering());
  EXPECT_FALSE(renderer->restoreRendering());
  EXPECT_EQ(bare, colorAt(0.05, 0.05));
}

TEST_F(PressureRendererTest, FiltersReachAllGeometries) {
  ASSERT_TRUE(renderer->addGeometry(top.get()));
  renderer->addFilter(new vyrSDK::GeometryFilter(nullptr));
  renderer->addFilter(nullptr);
  ASSERT_TRUE(renderer->addGeometry(cube.get()));
  simulation->stepTo(1);
  EXPECT_EQ(0, renderer->getPressureAtlasManager()->findAtlas(top.get())->getForce());
  EXPECT_EQ(0, renderer->getPressureAtlasManager()->findAtlas(cube.get())->getForce());
  renderer->addFilter(new vyrSDK::GeometryFilter(cube.get()));
  simulation->step();
  EXPECT_GT(renderer->getPressureAtlasManager()->findAtlas(top.get())->getForce(), 9000);
  EXPECT_GT(renderer->getPressureAtlasManager()->findAtlas(cube.get())->getForce(), 9000);
}

TEST_F(PressureRendererTest, LegendStandsWhereItIsPut) {
  CapturedMessages messages;
  osg::Group* hud = decorator->getHud();
  osg::Node* legend = hud->getChild(hud->getNumChildren() - 1);
  ASSERT_EQ("pressure legend", legend->getName());
  renderer->setLegendPosition(vyr::Vec2(100, 200));
  EXPECT_EQ(vyr::Vec2(100, 200), renderer->getLegendPosition());
  renderer->setLegendPosition(vyr::Vec2(std::nan(""), 0));
  EXPECT_EQ(vyr::Vec2(100, 200), renderer->getLegendPosition());
  EXPECT_EQ(1u, messages.errors().size());
  renderer->setEnableLegend(false);
  EXPECT_EQ(0u, legend->getNodeMask());
  renderer->setEnableLegend(true);
  EXPECT_NE(0u, legend->getNodeMask());
  const unsigned int before = hud->getNumChildren();
  simulation->clear();
  renderer = nullptr;
  EXPECT_EQ(before - 1, hud->getNumChildren());
}

TEST_F(PressureRendererTest, DropsGeometriesThatHaveGone) {
  ASSERT_TRUE(renderer->addGeometry(cube.get()));
  simulation->remove(cubeBody.get());
  cubeBody = nullptr;
  cube = nullptr;
  simulation->step();
  EXPECT_EQ(0u, renderer->getPressureAtlasManager()->getNumAtlases());
  EXPECT_EQ(0u, group->getNumChildren());
}

TEST_F(PressureRendererTest, WorksWithoutItsParts) {
  CapturedMessages messages;
  const vyr::ref_ptr<PressureRenderer> bare(new PressureRenderer(nullptr, nullptr, nullptr, 0, 1, blueToRed()));
  EXPECT_EQ(1, bare->getReferenceCount());
  EXPECT_FALSE(bare->addGeometry(top.get()));
  EXPECT_FALSE(bare->addTrimesh(nullptr));
  bare->update();
  bare->setEnableLegend(true);
  EXPECT_TRUE(messages.errors().empty());
  const vyr::ref_ptr<PressureRenderer> wrong(
      new PressureRenderer(nullptr, nullptr, nullptr, 5, 1, vyrRender::ColorVector()));
  EXPECT_EQ(2u, messages.errors().size());
  EXPECT_EQ(0, wrong->getColorRange()->getMin());
  EXPECT_EQ(4u, wrong->getColorRange()->getColors().size());
}

TEST_F(PressureRendererTest, GroupAndDecoratorMayGoFirst) {
  ASSERT_TRUE(renderer->addGeometry(top.get()));
  group = nullptr;
  decorator = nullptr;
  simulation->stepTo(0.5);
  EXPECT_FALSE(renderer->addGeometry(cube.get()));
  renderer = nullptr;
  simulation = nullptr;
}

} // namespace
