// Checks the visuals of geometries, bodies and assemblies, how they are found, and what stands beside them.
#include "CapturedMessages.h"

#include <vyrOSG/SimulationObject.h>
#include <vyrOSG/utils.h>

#include <vyr/Frame.h>
#include <vyrCollide/Box.h>
#include <vyrCollide/Sphere.h>
#include <vyrSDK/Assembly.h>

#include <osg/ComputeBoundsVisitor>
#include <osg/Geometry>
#include <osg/Material>
#include <osg/TriangleFunctor>
#include <osgUtil/UpdateVisitor>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <limits>

namespace {

using vyrOSG::createVisual;
using vyrOSG::GeometryNode;

void updateScene(osg::Node* root) {
  osgUtil::UpdateVisitor visitor;
  osg::ref_ptr<osg::FrameStamp> stamp = new osg::FrameStamp;
  visitor.setFrameStamp(stamp);
  root->accept(visitor);
}

osg::BoundingBox boundsOf(osg::Node* node) {
  osg::ComputeBoundsVisitor visitor;
  node->accept(visitor);
  return visitor.getBoundingBox();
}

struct VertexCounter : osg::NodeVisitor {
  VertexCounter()
      : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
  void apply(osg::Geometry& geometry) override { vertices += geometry.getVertexArray()->getNumElements(); }
  size_t vertices = 0;
};

size_t vertexCount(osg::Node* node) {
  VertexCounter counter;
  node->accept(counter);
  return counter.vertices;
}

class VisualTest : public testing::Test {
protected:
  vyr::ref_ptr<vyrCollide::Geometry> makeSphere(double radius) {
    return new vyrCollide::Geometry(new vyrCollide::Sphere(radius), "sphere");
  }

  osg::ref_ptr<vyrOSG::Group> m_group = new vyrOSG::Group;
  CapturedMessages m_messages;
};

TEST_F(VisualTest, NullsDrawNothing) {
  vyr::ref_ptr<vyrCollide::Geometry> sphere = makeSphere(1);
  EXPECT_EQ(createVisual(sphere.get(), nullptr), nullptr);
  EXPECT_EQ(createVisual(static_cast<vyrCollide::Geometry*>(nullptr), m_group.get()), nullptr);
  EXPECT_EQ(createVisual(static_cast<vyr::RigidBody*>(nullptr), m_group.get()), nullptr);
  EXPECT_EQ(createVisual(static_cast<vyrSDK::Assembly*>(nullptr), m_group.get()), nullptr);
  EXPECT_EQ(vyrOSG::findGeometryNode(nullptr, m_group.get()), nullptr);
  EXPECT_EQ(vyrOSG::findGeometryNode(sphere.get(), nullptr), nullptr);
}

TEST_F(VisualTest, DetailRatioMakesRoundThingsFiner) {
  vyr::ref_ptr<vyrCollide::Geometry> sphere = makeSphere(1);
  const size_t coarse = vertexCount(createVisual(sphere.get(), m_group.get(), 0.0f));
  const size_t usual = vertexCount(createVisual(sphere.get(), m_group.get(), 0.3f));
  const size_t fine = vertexCount(createVisual(sphere.get(), m_group.get(), 1.0f));
  // Circles of 8, 40 and 108 segments; half as many rings and one more.
  EXPECT_EQ(coarse, 9u * 5u);
  EXPECT_EQ(usual, 41u * 21u);
  EXPECT_EQ(fine, 109u * 55u);
}

TEST_F(VisualTest, EqualShapesShareTheirMesh) {
  vyr::ref_ptr<vyrCollide::Geometry> first = makeSphere(2);
  vyr::ref_ptr<vyrCollide::Geometry> second = makeSphere(2);
  auto meshOf = [&](const vyr::ref_ptr<vyrCollide::Geometry>& geometry) {
    return createVisual(geometry.get(), m_group.get())
        ->getRenderChild(GeometryNode::GEOMETRY_DATA)
        ->asGeode()
        ->getDrawable(0);
  };
  EXPECT_EQ(meshOf(first), meshOf(second));
}

TEST_F(VisualTest, NormalsAreUnitVectorsThatLookOutward) {
  using Object = vyrOSG::SimulationObject;
  const vyr::AffineMatrix4x4 origin;
  const Object objects[] = {Object::createBox("", origin, vyr::Vec3(1, 2, 3), m_group.get(), nullptr),
                            Object::createSphere("", origin, 1, m_group.get()),
                            Object::createCapsule("", origin, 0.5, 1, m_group.get()),
                            Object::createCylinder("", origin, 0.5, 1, m_group.get())};
  for (const Object& object : objects) {
    auto* node = dynamic_cast<GeometryNode*>(object.node.get());
    osg::Geometry* mesh = node->getRenderChild(GeometryNode::GEOMETRY_DATA)->asGeode()->getDrawable(0)->asGeometry();
    const auto& vertices = static_cast<const osg::Vec3Array&>(*mesh->getVertexArray());
    const auto& normals = static_cast<const osg::Vec3Array&>(*mesh->getNormalArray());
    ASSERT_EQ(vertices.size(), normals.size());
    for (size_t i = 0; i < normals.size(); ++i) {
      ASSERT_NEAR(normals[i].length(), 1, 1e-5);
      ASSERT_GT(normals[i] * vertices[i], 0) << "these shapes are convex around the origin";
    }
    // The winding agrees with the normals, or one side would be lit as the other.
    struct Winding {
      float volume = 0;
      void operator()(const osg::Vec3& a, const osg::Vec3& b, const osg::Vec3& c) { volume += a * (b ^ c) / 6; }
    };
    osg::TriangleFunctor<Winding> winding;
    mesh->accept(winding);
    EXPECT_NEAR(winding.volume / object.geometry->getShape()->getVolume(), 1, 0.02);
  }
}

TEST_F(VisualTest, SensorsAreLeftOutUnlessAskedFor) {
  vyr::ref_ptr<vyrCollide::Geometry> sphere = makeSphere(1);
  sphere->setSensor(true);
  EXPECT_EQ(createVisual(sphere.get(), m_group.get()), nullptr);
  GeometryNode* node = createVisual(sphere.get(), m_group.get(), 0.3f, false, true);
  ASSERT_NE(node, nullptr);
  EXPECT_EQ(node->getStateSet()->getRenderingHint(), osg::StateSet::TRANSPARENT_BIN);
}

TEST_F(VisualTest, ABodyIsDrawnWithAllItsGeometriesWhereTheyAre) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("dumbbell");
  vyr::ref_ptr<vyrCollide::Geometry> left = makeSphere(1);
  vyr::ref_ptr<vyrCollide::Geometry> right = makeSphere(1);
  body->add(left.get(), vyr::AffineMatrix4x4::translate(-3, 0, 0));
  body->add(right.get(), vyr::AffineMatrix4x4::translate(3, 0, 0));
  vyrOSG::Group* visual = createVisual(body.get(), m_group.get());
  ASSERT_NE(visual, nullptr);
  EXPECT_EQ(visual->getName(), "dumbbell");
  EXPECT_EQ(visual->getNumChildren(), 2u);
  EXPECT_EQ(vyrOSG::findGeometryNode(right.get(), m_group.get())->getMatrix().getTrans(), osg::Vec3d(3, 0, 0));
  EXPECT_NEAR(boundsOf(visual).xMax(), 4, 1e-6);
}

TEST_F(VisualTest, AnAssemblyIsDrawnWithTheAssembliesInIt) {
  vyr::ref_ptr<vyrSDK::Assembly> outer = new vyrSDK::Assembly("outer");
  vyr::ref_ptr<vyrSDK::Assembly> inner = new vyrSDK::Assembly("inner");
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("b");
  vyr::ref_ptr<vyrCollide::Geometry> inBody = makeSphere(1);
  vyr::ref_ptr<vyrCollide::Geometry> free = makeSphere(1);
  body->add(inBody.get());
  inner->add(body.get());
  outer->add(inner.get());
  outer->add(free.get());
  vyrOSG::Group* visual = createVisual(outer.get(), m_group.get());
  ASSERT_NE(visual, nullptr);
  EXPECT_NE(vyrOSG::findGeometryNode(inBody.get(), m_group.get()), nullptr);
  EXPECT_NE(vyrOSG::findGeometryNode(free.get(), m_group.get()), nullptr);
}

TEST_F(VisualTest, TheSceneRootDrawsUnderItsGroup) {
  vyr::ref_ptr<vyrCollide::Geometry> sphere = makeSphere(1);
  vyrUtil::SceneRoot* root = vyrOSG::OSGSceneRoot::instance();
  EXPECT_EQ(vyrUtil::SceneRoot::getInstance(), root);
  vyrOSG::OSGSceneRoot::set(nullptr);
  EXPECT_FALSE(root->createVisual(sphere.get(), 0.3f));
  vyrOSG::OSGSceneRoot::create(m_group.get());
  EXPECT_EQ(vyrOSG::OSGSceneRoot::get(), m_group.get());
  EXPECT_TRUE(root->createVisual(sphere.get(), 0.3f));
  EXPECT_EQ(m_group->getNumChildren(), 1u);
  vyrOSG::OSGSceneRoot::set(nullptr);
}

TEST_F(VisualTest, TextsAreFoundInTheOrderInWhichTheyWereAdded) {
  vyr::ref_ptr<vyrCollide::Geometry> sphere = makeSphere(1);
  EXPECT_FALSE(vyrOSG::addText(sphere.get(), m_group.get(), "early", vyr::Vec3(), vyr::Vec4(1, 1, 1, 1), 1));
  createVisual(sphere.get(), m_group.get());
  EXPECT_EQ(vyrOSG::findText(sphere.get(), m_group.get()), nullptr);
  EXPECT_TRUE(vyrOSG::addText(sphere.get(), m_group.get(), "one", vyr::Vec3(0, 0, 2), vyr::Vec4(1, 0, 0, 1), 0.5));
  EXPECT_TRUE(vyrOSG::addText(sphere.get(), m_group.get(), "two", vyr::Vec3(), vyr::Vec4(1, 1, 1, 1), 1));
  osgText::Text* first = vyrOSG::findText(sphere.get(), m_group.get());
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first->getText().createUTF8EncodedString(), "one");
  EXPECT_EQ(first->getPosition(), osg::Vec3(0, 0, 2));
  EXPECT_EQ(first->getColor(), osg::Vec4(1, 0, 0, 1));
  EXPECT_EQ(first->getCharacterHeight(), 0.5f);
  EXPECT_EQ(vyrOSG::findText(sphere.get(), m_group.get(), 1)->getText().createUTF8EncodedString(), "two");
  EXPECT_EQ(vyrOSG::findText(sphere.get(), m_group.get(), 2), nullptr);
  EXPECT_TRUE(m_messages.take().empty());
  EXPECT_FALSE(vyrOSG::addText(sphere.get(), m_group.get(), "bad", vyr::Vec3(), vyr::Vec4(1, 1, 1, 1), -1));
  EXPECT_NE(m_messages.takeOne().find("'bad'"), std::string::npos);
}

TEST_F(VisualTest, GridsSpanTheParallelogramOfTheirEdges) {
  EXPECT_TRUE(vyrOSG::createGrid(4, 2, vyr::Vec3(1, 1, 0), vyr::Vec3(4, 0, 0), vyr::Vec3(0, 2, 0), m_group.get()));
  const osg::BoundingBox bounds = boundsOf(m_group);
  EXPECT_EQ(bounds._min, osg::Vec3(1, 1, 0));
  EXPECT_EQ(bounds._max, osg::Vec3(5, 3, 0));
  // Five lines across, three along, two ends each.
  EXPECT_EQ(vertexCount(m_group), 16u);
}

TEST_F(VisualTest, GridsWithoutCellsOrGroupAreRefused) {
  EXPECT_FALSE(vyrOSG::createGrid(1, 1, vyr::Vec3(), vyr::Vec3(1, 0, 0), vyr::Vec3(0, 1, 0), nullptr));
  EXPECT_TRUE(m_messages.take().empty());
  EXPECT_FALSE(vyrOSG::createGrid(0, 2, vyr::Vec3(), vyr::Vec3(1, 0, 0), vyr::Vec3(0, 1, 0), m_group.get()));
  EXPECT_NE(m_messages.takeOne().find("0 by 2 cells"), std::string::npos);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_FALSE(vyrOSG::createGrid(1, 1, vyr::Vec3(nan, 0, 0), vyr::Vec3(1, 0, 0), vyr::Vec3(0, 1, 0), m_group.get()));
  m_messages.takeOne();
  EXPECT_EQ(m_group->getNumChildren(), 0u);
}

TEST_F(VisualTest, AxesOfABodyFollowIt) {
  vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody("b");
  vyrOSG::createAxes(body.get(), vyr::AffineMatrix4x4::translate(0, 0, 1), m_group.get(), 2);
  body->setPosition(vyr::Vec3(10, 0, 0));
  updateScene(m_group);
  const osg::BoundingBox bounds = boundsOf(m_group);
  EXPECT_NEAR(bounds.xMax(), 12, 1e-5);
  EXPECT_NEAR(bounds.zMax(), 3, 1e-5);
  body = nullptr;
  updateScene(m_group);
  EXPECT_FALSE(boundsOf(m_group).valid()) << "the axes end with their body";
}

TEST_F(VisualTest, AxesOfADrawnGeometryStandOnItsVisual) {
  vyr::ref_ptr<vyrCollide::Geometry> sphere = makeSphere(1);
  GeometryNode* node = createVisual(sphere.get(), m_group.get());
  vyrOSG::createAxes(sphere.get(), vyr::AffineMatrix4x4(), m_group.get(), 3);
  EXPECT_EQ(node->getNumChildren(), 2u);
  EXPECT_EQ(m_group->getNumChildren(), 1u);
  EXPECT_NEAR(boundsOf(m_group).zMax(), 3, 1e-5);
}

TEST_F(VisualTest, AxesWithAScaleThatIsNoNumberAreRefused) {
  vyrOSG::createAxes(static_cast<vyr::RigidBody*>(nullptr), vyr::AffineMatrix4x4(), m_group.get(),
                     std::numeric_limits<float>::quiet_NaN());
  EXPECT_NE(m_messages.takeOne().find("createAxes"), std::string::npos);
  EXPECT_EQ(m_group->getNumChildren(), 0u);
}

TEST_F(VisualTest, PathsOfBodiesGrowByOnePointAnInterval) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->setTimeStep(0.01);
  vyrOSG::SimulationObject falling =
      vyrOSG::SimulationObject::createSphere("s", vyr::AffineMatrix4x4(), 1, nullptr, simulation.get());
  osg::Geode* geode = vyrOSG::createRigidBodyTrajectoriesVisual(simulation.get(), m_group.get(), 0.02, 4);
  ASSERT_NE(geode, nullptr);
  const osg::Geometry* lines = geode->getDrawable(0)->asGeometry();
  const auto& places = static_cast<const osg::Vec3Array&>(*lines->getVertexArray());
  for (int i = 0; i < 4; ++i)
    simulation->step();
  updateScene(m_group);
  EXPECT_EQ(places.size(), 3u) << "at 0, 0.02 and 0.04 s";
  EXPECT_EQ(places.back(), osg::Vec3(0, 0, float(falling.body->getPosition().z())));
  for (int i = 0; i < 20; ++i)
    simulation->step();
  updateScene(m_group);
  EXPECT_EQ(places.size(), 4u) << "the latest four";
  simulation->remove(falling.body.get());
  simulation->step();
  simulation->step();
  updateScene(m_group);
  EXPECT_TRUE(places.empty());
}

TEST_F(VisualTest, ABodyDoesNotInheritThePathOfADeadOne) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  osg::Geode* geode = vyrOSG::createRigidBodyTrajectoriesVisual(simulation.get(), m_group.get(), 0, 0);
  const auto& places = static_cast<const osg::Vec3Array&>(*geode->getDrawable(0)->asGeometry()->getVertexArray());
  const void* address = nullptr;
  bool isReused = false;
  // The allocator gives the same memory again sooner or later; here, at once.
  for (int attempt = 0; attempt < 100 && !isReused; ++attempt) {
    vyr::ref_ptr<vyr::RigidBody> body = new vyr::RigidBody;
    isReused = body.get() == address;
    address = body.get();
    body->add(new vyrCollide::Geometry(new vyrCollide::Sphere(0.5)));
    body->setPosition(vyr::Vec3(attempt, 0, 0));
    simulation->add(body.get());
    for (int i = 0; i < 3; ++i)
      simulation->step();
    updateScene(m_group);
    EXPECT_EQ(places.size(), 3u) << attempt;
    for (const osg::Vec3& place : places)
      EXPECT_EQ(place.x(), float(attempt));
    simulation->remove(body.get());
  }
  if (!isReused && dlsym(RTLD_DEFAULT, "__asan_init") != nullptr)
    GTEST_SKIP() << "the sanitizers' allocator keeps freed memory back";
  EXPECT_TRUE(isReused) << "no body stood where another one had died: nothing was tested";
}

TEST_F(VisualTest, PathsEndWithTheirDrawing) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  vyrOSG::createRigidBodyTrajectoriesVisual(simulation.get(), m_group.get(), 0, 0);
  EXPECT_EQ(simulation->getStepEventListeners().size(), 1u);
  m_group->removeChildren(0, 1);
  EXPECT_TRUE(simulation->getStepEventListeners().empty());
  EXPECT_EQ(vyrOSG::createRigidBodyTrajectoriesVisual(simulation.get(), m_group.get(), -1, 5), nullptr);
  EXPECT_NE(m_messages.takeOne().find("-1 s"), std::string::npos);
}

} // namespace
