// Curves and wires as tubes.
#include <vyrOSG/SplineRenderer.h>
#include <vyrOSG/WireRenderer.h>

#include <vyrSDK/Simulation.h>

#include <gtest/gtest.h>

#include <osg/ComputeBoundsVisitor>
#include <osg/Geometry>

#include <limits>

namespace {

using vyr::Vec3;

osg::BoundingBox boundsOf(osg::Node& node) {
  osg::ComputeBoundsVisitor visitor;
  node.accept(visitor);
  return visitor.getBoundingBox();
}

osg::Geometry* tubeOf(osg::Group& group) {
  osg::Geode* geode = group.getNumChildren() > 0 ? group.getChild(0)->asGeode() : nullptr;
  return geode && geode->getNumDrawables() > 0 ? geode->getDrawable(0)->asGeometry() : nullptr;
}

vyr::ref_ptr<vyrUtil::Spline> lineAlongX() {
  vyr::ref_ptr<vyrUtil::Spline> spline(new vyrUtil::Spline);
  spline->add(Vec3(0, 0, 0));
  spline->add(Vec3(2, 0, 0));
  return spline;
}

TEST(SplineRenderer, DrawsATubeOfItsRadius) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  const auto spline = lineAlongX();
  vyr::ref_ptr<vyrOSG::SplineRenderer> renderer(new vyrOSG::SplineRenderer(spline.get(), group));
  renderer->setRadius(0.25);
  EXPECT_NEAR(boundsOf(*group).zMax(), 0.02, 1e-6);
  renderer->update();
  const osg::BoundingBox bounds = boundsOf(*group);
  EXPECT_NEAR(bounds.xMin(), 0, 1e-6);
  EXPECT_NEAR(bounds.xMax(), 2, 1e-6);
  EXPECT_NEAR(bounds.zMax(), 0.25, 1e-6);
}

TEST(SplineRenderer, NormalsLeadOutwards) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  const auto spline = lineAlongX();
  vyr::ref_ptr<vyrOSG::SplineRenderer> renderer(new vyrOSG::SplineRenderer(spline.get(), group));
  const osg::Geometry* tube = tubeOf(*group);
  const auto& vertices = static_cast<const osg::Vec3Array&>(*tube->getVertexArray());
  const auto& normals = static_cast<const osg::Vec3Array&>(*tube->getNormalArray());
  for (size_t i = 0; i < vertices.size(); ++i)
    EXPECT_GE((vertices[i] - osg::Vec3(1, 0, 0)) * normals[i], 0);
}

TEST(SplineRenderer, FollowsItsSplineInASimulation) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  const auto spline = lineAlongX();
  vyr::ref_ptr<vyrSDK::Simulation> simulation(new vyrSDK::Simulation);
  vyr::ref_ptr<vyrOSG::SplineRenderer> renderer(new vyrOSG::SplineRenderer(spline.get(), group));
  simulation->add(renderer.get());
  spline->setPoint(1, Vec3(5, 0, 0));
  simulation->step();
  EXPECT_NEAR(boundsOf(*group).xMax(), 5, 1e-6);
}

TEST(SplineRenderer, ValuesColourFromBlueToRed) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  const auto spline = lineAlongX();
  vyr::ref_ptr<vyrOSG::SplineRenderer> renderer(new vyrOSG::SplineRenderer(spline.get(), group));
  renderer->update(vyr::RealVector{-3.0, 8.0});
  const auto& colors = static_cast<const osg::Vec4Array&>(*tubeOf(*group)->getColorArray());
  EXPECT_GT(colors.front().b(), colors.front().r());
  EXPECT_GT(colors.back().r(), colors.back().b());
}

TEST(SplineRenderer, ColourChangesAtOnce) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  const auto spline = lineAlongX();
  vyr::ref_ptr<vyrOSG::SplineRenderer> renderer(new vyrOSG::SplineRenderer(spline.get(), group));
  renderer->setColor(vyr::Vec4(0, 1, 0, 1));
  EXPECT_EQ(static_cast<const osg::Vec4Array&>(*tubeOf(*group)->getColorArray())[3], osg::Vec4(0, 1, 0, 1));
  renderer->setColor(vyr::Vec4(std::numeric_limits<double>::quiet_NaN(), 0, 0, 1));
  EXPECT_EQ(renderer->getColor(), vyr::Vec4(0, 1, 0, 1));
}

TEST(SplineRenderer, DegenerateCurvesDrawNothing) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  vyr::ref_ptr<vyrUtil::Spline> spline(new vyrUtil::Spline);
  vyr::ref_ptr<vyrOSG::SplineRenderer> renderer(new vyrOSG::SplineRenderer(spline.get(), group));
  EXPECT_EQ(tubeOf(*group), nullptr);
  spline->add(Vec3(1, 1, 1));
  spline->add(Vec3(1, 1, 1));
  renderer->update();
  EXPECT_EQ(tubeOf(*group), nullptr);
  spline->add(Vec3(2, 1, 1));
  renderer->update();
  EXPECT_NE(tubeOf(*group), nullptr);
  renderer->setRadius(-1);
  renderer->update();
  EXPECT_EQ(tubeOf(*group), nullptr);
  renderer->setSplineModel(nullptr);
  renderer->update();
  vyr::ref_ptr<vyrOSG::SplineRenderer> none(new vyrOSG::SplineRenderer(nullptr, nullptr));
  none->update();
}

TEST(WireRenderer, DrawsTheNodesOfItsWire) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  vyr::ref_ptr<vyrWire::Wire> wire(new vyrWire::Wire(3, 12, 1, 0.05));
  vyr::ref_ptr<vyrOSG::WireRenderer> renderer(new vyrOSG::WireRenderer(wire.get(), group));
  EXPECT_EQ(renderer->getRadius(), 0.05);
  EXPECT_NEAR(boundsOf(*group).xMax(), 3, 1e-6);
  wire->attachBegin(nullptr, Vec3(0, 0, 7));
  renderer->update();
  EXPECT_NEAR(boundsOf(*group).zMin(), 4, 1e-5);
  EXPECT_NEAR(boundsOf(*group).zMax(), 7, 1e-5);
}

TEST(WireRenderer, DrawsNothingWithoutAWire) {
  osg::ref_ptr<osg::Group> group = new osg::Group;
  vyr::ref_ptr<vyrWire::Wire> wire(new vyrWire::Wire(3, 12, 1));
  vyr::ref_ptr<vyrOSG::WireRenderer> renderer(new vyrOSG::WireRenderer(wire.get(), group));
  EXPECT_NE(tubeOf(*group), nullptr);
  wire = nullptr;
  renderer->update();
  EXPECT_EQ(tubeOf(*group), nullptr);
  vyr::ref_ptr<vyrOSG::WireRenderer> none(new vyrOSG::WireRenderer(nullptr, group));
  none->update();
  vyr::ref_ptr<vyrWire::Wire> invalid(new vyrWire::Wire(-1, 12, 1));
  vyr::ref_ptr<vyrOSG::WireRenderer> empty(new vyrOSG::WireRenderer(invalid.get(), group));
  empty->update();
}

} // namespace
