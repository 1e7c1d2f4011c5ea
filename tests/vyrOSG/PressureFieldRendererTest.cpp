// Needles of pressure.
#include "CapturedMessages.h"

#include <vyrOSG/PressureFieldRenderer.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

using vyr::Vec3;

vyrModel::PressureField field(std::initializer_list<double> pressures) {
  vyrModel::PressureField result;
  for (double pressure : pressures)
    result.push_back({Vec3(double(result.size()), 0, 0), Vec3(0, 0, 1), pressure});
  return result;
}

TEST(PressureFieldRenderer, NeedlesAreAsLongAsThePressureIsHigh) {
  const osg::ref_ptr<osg::Group> parent = new osg::Group;
  const vyr::ref_ptr<vyrOSG::PressureFieldRenderer> renderer(new vyrOSG::PressureFieldRenderer(parent.get(), 2));
  ASSERT_TRUE(parent->containsNode(renderer->getNode()));
  renderer->update(field({500, 1000}));
  const osg::BoundingBox box = renderer->getNode()->getBoundingBox();
  EXPECT_NEAR(2, box.zMax(), 1e-5);
  const auto* geometry = renderer->getNode()->getDrawable(0)->asGeometry();
  const auto& vertices = *static_cast<const osg::Vec3Array*>(geometry->getVertexArray());
  float first = 0;
  for (const osg::Vec3& vertex : vertices)
    first = vertex.x() < 0.5f ? std::max(first, vertex.z()) : first;
  EXPECT_NEAR(1, first, 1e-5);
}

TEST(PressureFieldRenderer, DefaultLengthIsOneMetre) {
  const osg::ref_ptr<osg::Group> parent = new osg::Group;
  const vyr::ref_ptr<vyrOSG::PressureFieldRenderer> renderer(new vyrOSG::PressureFieldRenderer(parent.get()));
  renderer->update(field({7}));
  EXPECT_NEAR(1, renderer->getNode()->getBoundingBox().zMax(), 1e-5);
}

TEST(PressureFieldRenderer, LeavesOutWhatDoesNotPress) {
  const osg::ref_ptr<osg::Group> parent = new osg::Group;
  const vyr::ref_ptr<vyrOSG::PressureFieldRenderer> renderer(new vyrOSG::PressureFieldRenderer(parent.get()));
  renderer->update(field({1000}));
  EXPECT_EQ(1u, renderer->getNode()->getNumDrawables());
  renderer->update(field({0, -5, std::numeric_limits<double>::quiet_NaN()}));
  EXPECT_EQ(0u, renderer->getNode()->getNumDrawables());
  renderer->update(field({}));
  EXPECT_EQ(0u, renderer->getNode()->getNumDrawables());
}

TEST(PressureFieldRenderer, LeavesItsParentAndOutlivesIt) {
  osg::ref_ptr<osg::Group> parent = new osg::Group;
  vyr::ref_ptr<vyrOSG::PressureFieldRenderer> renderer(new vyrOSG::PressureFieldRenderer(parent.get()));
  EXPECT_EQ(1u, parent->getNumChildren());
  renderer = nullptr;
  EXPECT_EQ(0u, parent->getNumChildren());
  renderer = new vyrOSG::PressureFieldRenderer(parent.get());
  parent = nullptr;
  renderer->update(field({1}));
  CapturedMessages messages;
  const vyr::ref_ptr<vyrOSG::PressureFieldRenderer> wrong(new vyrOSG::PressureFieldRenderer(nullptr, -1));
  wrong->update(field({1}));
  EXPECT_EQ(1u, messages.errors().size());
}

} // namespace
