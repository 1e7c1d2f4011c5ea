// Checks what each create function makes, and what comes back for sizes and files that cannot be used.
#include "CapturedMessages.h"
#include "TemporaryFolder.h"
#include "TestPicture.h"

#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/SimulationObject.h>

#include <vyrCollide/Box.h>
#include <vyrCollide/Capsule.h>
#include <vyrCollide/Cylinder.h>
#include <vyrCollide/HeightField.h>
#include <vyrCollide/Sphere.h>

#include <osgDB/WriteFile>

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>

namespace {

using vyrOSG::SimulationObject;

class SimulationObjectTest : public testing::Test {
protected:
  template <class Shape>
  const Shape& shapeOf(const SimulationObject& object) {
    return dynamic_cast<const Shape&>(*object.geometry->getShape());
  }

  void expectEmpty(const SimulationObject& object) {
    EXPECT_FALSE(object.geometry);
    EXPECT_FALSE(object.body);
    EXPECT_FALSE(object.node);
  }

  osg::ref_ptr<vyrOSG::Group> m_group = new vyrOSG::Group;
  vyr::ref_ptr<vyrSDK::Simulation> m_simulation = new vyrSDK::Simulation;
  vyr::AffineMatrix4x4 m_place = vyr::AffineMatrix4x4::translate(1, 2, 3);
  CapturedMessages m_messages;
};

TEST_F(SimulationObjectTest, DefaultHoldsNothing) {
  SimulationObject object;
  expectEmpty(object);
  EXPECT_EQ(object.getNode(), nullptr);
}

TEST_F(SimulationObjectTest, CopiesShareAndHoldTheParts) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("b");
  osg::ref_ptr<osg::Node> node = new osg::Node;
  {
    SimulationObject object(nullptr, body.get(), node.get());
    EXPECT_EQ(body->getReferenceCount(), 2);
    EXPECT_EQ(node->referenceCount(), 2);
    const SimulationObject copy(object);
    EXPECT_EQ(body->getReferenceCount(), 3);
    EXPECT_EQ(node->referenceCount(), 3);
    EXPECT_EQ(copy.node, object.node);
  }
  EXPECT_EQ(body->getReferenceCount(), 1);
  EXPECT_EQ(node->referenceCount(), 1);
}

TEST_F(SimulationObjectTest, CreateBoxTakesFullEdgeLengths) {
  SimulationObject object =
      SimulationObject::createBox("crate", m_place, vyr::Vec3(1, 2, 4), m_group.get(), m_simulation.get());
  EXPECT_EQ(shapeOf<vyrCollide::Box>(object).getHalfExtents(), vyr::Vec3(0.5, 1, 2));
  EXPECT_EQ(object.body->getName(), "crate");
  EXPECT_EQ(object.geometry->getName(), "crate");
  EXPECT_EQ(object.body->getPosition(), vyr::Vec3(1, 2, 3));
  EXPECT_EQ(object.body->getMotionControl(), vyr::RigidBody::DYNAMICS);
  EXPECT_EQ(object.body->getSimulation(), m_simulation.get());
  EXPECT_EQ(object.geometry->getRigidBody(), object.body.get());
  // 8 m^3 of the default density, 1000 kg/m^3.
  EXPECT_NEAR(object.body->getMass(), 8000, 1e-9);
  auto* node = dynamic_cast<vyrOSG::GeometryNode*>(object.getNode());
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->getGeometry(), object.geometry.get());
  EXPECT_TRUE(m_group->containsNode(node));
  EXPECT_EQ(node->getMatrix().getTrans(), osg::Vec3d(1, 2, 3));
}

TEST_F(SimulationObjectTest, NullGroupAndNullSimulationLeaveVisualAndSimulationOut) {
  SimulationObject object = SimulationObject::createBox("b", m_place, vyr::Vec3(1, 1, 1), nullptr, nullptr);
  EXPECT_TRUE(object.geometry);
  EXPECT_TRUE(object.body);
  EXPECT_FALSE(object.node);
  EXPECT_EQ(object.body->getSimulation(), nullptr);
}

TEST_F(SimulationObjectTest, FlagsTurnVisualAndCollisionsOffAndSensorOn) {
  SimulationObject object =
      SimulationObject::createBox("b", m_place, vyr::Vec3(1, 1, 1), m_group.get(), m_simulation.get(),
                                  vyr::RigidBody::KINEMATICS, false, false, true);
  EXPECT_FALSE(object.node);
  EXPECT_EQ(m_group->getNumChildren(), 0u);
  EXPECT_FALSE(object.geometry->getEnableCollisions());
  EXPECT_TRUE(object.geometry->isSensor());
  EXPECT_EQ(object.body->getMotionControl(), vyr::RigidBody::KINEMATICS);
}

TEST_F(SimulationObjectTest, RoundShapesTakeRadiusThenHeight) {
  SimulationObject sphere = SimulationObject::createSphere("s", m_place, 0.5, m_group.get());
  EXPECT_EQ(shapeOf<vyrCollide::Sphere>(sphere).getRadius(), 0.5);
  SimulationObject cylinder = SimulationObject::createCylinder("c", m_place, 0.5, 2, m_group.get());
  EXPECT_EQ(shapeOf<vyrCollide::Cylinder>(cylinder).getRadius(), 0.5);
  EXPECT_EQ(shapeOf<vyrCollide::Cylinder>(cylinder).getHeight(), 2);
  SimulationObject capsule = SimulationObject::createCapsule("k", m_place, 0.25, 3, m_group.get());
  EXPECT_EQ(shapeOf<vyrCollide::Capsule>(capsule).getRadius(), 0.25);
  EXPECT_EQ(shapeOf<vyrCollide::Capsule>(capsule).getHeight(), 3);
  EXPECT_EQ(m_group->getNumChildren(), 3u);
}

TEST_F(SimulationObjectTest, ABoxComesToRestOnAPlane) {
  SimulationObject plane =
      SimulationObject::createPlane("ground", vyr::AffineMatrix4x4(), m_group.get(), m_simulation.get());
  EXPECT_EQ(plane.body->getMotionControl(), vyr::RigidBody::STATIC);
  SimulationObject box = SimulationObject::createBox("b", vyr::AffineMatrix4x4::translate(0, 0, 1), vyr::Vec3(1, 1, 1),
                                                     m_group.get(), m_simulation.get());
  for (int i = 0; i < 120; ++i)
    m_simulation->step();
  EXPECT_NEAR(box.body->getPosition().z(), 0.5, 0.01);
}

TEST_F(SimulationObjectTest, RefusesSizesThatAreNoPositiveNumbers) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  expectEmpty(SimulationObject::createBox("b", m_place, vyr::Vec3(1, -1, 1), m_group.get(), m_simulation.get()));
  EXPECT_NE(m_messages.takeOne().find("the y size -1 of 'b' is not a positive number"), std::string::npos);
  expectEmpty(SimulationObject::createSphere("s", m_place, nan, m_group.get(), m_simulation.get()));
  EXPECT_NE(m_messages.takeOne().find("the radius nan of 's'"), std::string::npos);
  expectEmpty(SimulationObject::createCylinder("c", m_place, 1, 0, m_group.get(), m_simulation.get()));
  EXPECT_NE(m_messages.takeOne().find("the height 0 of 'c'"), std::string::npos);
  expectEmpty(SimulationObject::createCapsule("k", m_place, -2, 1, m_group.get(), m_simulation.get()));
  EXPECT_NE(m_messages.takeOne().find("the radius -2 of 'k'"), std::string::npos);
  expectEmpty(SimulationObject::createPlane("p", vyr::AffineMatrix4x4::translate(nan, 0, 0), m_group.get()));
  EXPECT_NE(m_messages.takeOne().find("the transform of 'p' is not finite"), std::string::npos);
  EXPECT_EQ(m_group->getNumChildren(), 0u);
  EXPECT_TRUE(m_simulation->getRigidBodies().empty());
}

TEST_F(SimulationObjectTest, HeightsFromANumberArrayLieColumnByColumn) {
  vyr::RealVector heights;
  for (double height : {0.0, 1.0, 2.0, 3.0, 4.0, 5.0})
    heights.push_back(height);
  SimulationObject object =
      SimulationObject::createHeightField("h", m_place, heights, 3, 2, 10, 20, 0.5, m_group.get(), m_simulation.get());
  const auto& field = shapeOf<vyrCollide::HeightField>(object);
  EXPECT_EQ(field.getNumColumns(), 3u);
  EXPECT_EQ(field.getNumRows(), 2u);
  EXPECT_EQ(field.getSizeX(), 10);
  EXPECT_EQ(field.getSizeY(), 20);
  EXPECT_EQ(field.getHeight(2, 0), 1.0);
  EXPECT_EQ(field.getHeight(0, 1), 1.5);
  EXPECT_EQ(object.body->getMotionControl(), vyr::RigidBody::STATIC);
}

TEST_F(SimulationObjectTest, HeightsThatDoNotFillTheGridAreRefused) {
  vyr::RealVector heights;
  heights.assign(5, 0.0);
  expectEmpty(SimulationObject::createHeightField("h", m_place, heights, 3, 2, 1, 1, 1, m_group.get()));
  EXPECT_NE(m_messages.takeOne().find("5 heights for 3 columns and 2 rows"), std::string::npos);
}

TEST_F(SimulationObjectTest, HeightsFromAnImageRunFromBlackToWhite) {
  TemporaryFolder folder;
  osg::ref_ptr<osg::Image> image = makePicture(4, 4, osg::Vec4(0, 0, 0, 1), true);
  ASSERT_TRUE(osgDB::writeImageFile(*image, folder / "ground.png"));
  SimulationObject object =
      SimulationObject::createHeightField("h", m_place, folder / "ground.png", 8, 8, -1, 3, m_group.get());
  const auto& field = shapeOf<vyrCollide::HeightField>(object);
  EXPECT_EQ(field.getNumColumns(), 4u);
  EXPECT_NEAR(field.getHeight(0, 0), -1, 1e-6) << "the lower edge of the image lies at -y";
  EXPECT_NEAR(field.getHeight(0, 3), 3, 1e-6);
}

TEST_F(SimulationObjectTest, HeightsFromATextFile) {
  TemporaryFolder folder;
  std::ofstream(folder / "ground.txt") << "0 1 2\n3, 4, 5\n";
  SimulationObject scaled =
      SimulationObject::createHeightField("h", m_place, folder / "ground.txt", 8, 8, 0, 1, m_group.get());
  EXPECT_NEAR(shapeOf<vyrCollide::HeightField>(scaled).getHeight(2, 1), 1, 1e-12);
  EXPECT_NEAR(shapeOf<vyrCollide::HeightField>(scaled).getHeight(1, 0), 0.2, 1e-12);
  SimulationObject metres =
      SimulationObject::createHeightField("h", m_place, folder / "ground.txt", 8, 8, 0, 0, m_group.get());
  EXPECT_EQ(shapeOf<vyrCollide::HeightField>(metres).getHeight(2, 1), 5);
}

TEST_F(SimulationObjectTest, RawHeightsAreSixteenBitNumbers) {
  TemporaryFolder folder;
  const char bytes[] = {0, 0, char(0xff), char(0xff), 0, char(0x80), 0, 0};
  std::ofstream(folder / "ground.raw", std::ios::binary).write(bytes, sizeof(bytes));
  SimulationObject object =
      SimulationObject::createHeightField("h", m_place, folder / "ground.raw", 8, 8, 0, 65535, m_group.get());
  EXPECT_EQ(shapeOf<vyrCollide::HeightField>(object).getHeight(1, 0), 65535);
  EXPECT_EQ(shapeOf<vyrCollide::HeightField>(object).getHeight(0, 1), 32768);
}

TEST_F(SimulationObjectTest, AHeightFileThatCannotBeReadLeavesTheBodyAlone) {
  TemporaryFolder folder;
  SimulationObject missing = SimulationObject::createHeightField("h", m_place, "no such file.png", 8, 8, 0, 1,
                                                                 m_group.get(), m_simulation.get());
  EXPECT_NE(m_messages.takeOne().find("no such file.png"), std::string::npos);
  EXPECT_FALSE(missing.geometry);
  ASSERT_TRUE(missing.body);
  EXPECT_EQ(missing.body->getName(), "h");
  EXPECT_EQ(missing.body->getSimulation(), nullptr);

  std::ofstream(folder / "ground.txt") << "0 1\n2 x\n";
  SimulationObject broken =
      SimulationObject::createHeightField("h", m_place, folder / "ground.txt", 8, 8, 0, 1, m_group.get());
  EXPECT_NE(m_messages.takeOne().find("line 2: 'x' is no height"), std::string::npos);
  EXPECT_FALSE(broken.geometry);
}

TEST_F(SimulationObjectTest, AMeshFileGivesAClosedMeshInItsScale) {
  TemporaryFolder folder;
  std::ofstream(folder / "pyramid.obj") << "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 3 2\nf 1 2 4\nf 2 3 4\nf 3 1 4\n";
  SimulationObject object =
      SimulationObject::createTrimesh("m", m_place, folder / "pyramid.obj", 2.0, m_group.get(), m_simulation.get());
  const auto& mesh = shapeOf<vyrCollide::Trimesh>(object);
  EXPECT_EQ(mesh.getNumVertices(), 4u);
  EXPECT_EQ(mesh.getNumTriangles(), 4u);
  EXPECT_TRUE(mesh.isClosed());
  EXPECT_NEAR(mesh.getVolume(), 8.0 / 6, 1e-9) << "a sixth of a cube of edge 2";
  EXPECT_TRUE(object.node);
  EXPECT_TRUE(m_messages.take().empty());
}

TEST_F(SimulationObjectTest, AMeshFileThatCannotBeReadLeavesTheBodyAlone) {
  SimulationObject object =
      SimulationObject::createTrimesh("m", m_place, "no such mesh.obj", m_group.get(), m_simulation.get());
  EXPECT_NE(m_messages.takeOne().find("no such mesh.obj"), std::string::npos);
  EXPECT_FALSE(object.geometry);
  EXPECT_TRUE(object.body);
  EXPECT_TRUE(m_simulation->getRigidBodies().empty());
  EXPECT_EQ(m_group->getNumChildren(), 0u);
}

TEST_F(SimulationObjectTest, AMeshMayBeShared) {
  const std::vector<vyr::Vec3> vertices = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
  const std::vector<unsigned int> indices = {0, 2, 1, 0, 1, 3, 1, 2, 3, 2, 0, 3};
  vyr::ref_ptr<vyrCollide::Trimesh> mesh = new vyrCollide::Trimesh(vertices, indices);
  SimulationObject first = SimulationObject::createTrimesh("a", m_place, mesh.get(), m_group.get());
  SimulationObject second = SimulationObject::createTrimesh("b", m_place, mesh.get(), m_group.get());
  EXPECT_EQ(first.geometry->getShape(), mesh.get());
  EXPECT_EQ(second.geometry->getShape(), mesh.get());
  expectEmpty(SimulationObject::createTrimesh("c", m_place, static_cast<vyrCollide::Trimesh*>(nullptr), m_group.get()));
  EXPECT_NE(m_messages.takeOne().find("no mesh for 'c'"), std::string::npos);
}

} // namespace
