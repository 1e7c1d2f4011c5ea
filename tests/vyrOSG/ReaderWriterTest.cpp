/// The loaders of models and scenes.
#include "CapturedMessages.h"
#include "TemporaryFolder.h"

#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/GeometryNode.h>
#include <vyrOSG/Group.h>
#include <vyrOSG/ReaderWriter.h>
#include <vyrOSG/utils.h>

#include <vyr/AffineMatrix4x4.h>
#include <vyr/Ball.h>
#include <vyr/Frame.h>
#include <vyr/RigidBody.h>
#include <vyrCollide/Plane.h>
#include <vyrCollide/Shape.h>
#include <vyrCollide/Sphere.h>
#include <vyrSDK/Assembly.h>
#include <vyrSDK/Simulation.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <osg/Node>
#include <osg/observer_ptr>
#include <osgDB/Options>
#include <osgDB/Registry>

#include <fstream>

namespace {

using testing::HasSubstr;

// A tetrahedron with its corners at the origin and at 1 m on each axis.
const char* const kTetrahedron = "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n";

// A still plane, a ball 2 m above it that moves, and a second ball that hangs on the first.
void writeScene(const std::string& file) {
  vyr::ref_ptr<vyrSDK::Simulation> scene = new vyrSDK::Simulation;
  scene->setGravity(vyr::Vec3(0, 0, -1.5));
  scene->setTimeStep(0.01);
  vyr::ref_ptr<vyr::RigidBody> ground = new vyr::RigidBody("ground");
  ground->setMotionControl(vyr::RigidBody::STATIC);
  ground->add(new vyrCollide::Geometry(new vyrCollide::Plane, "ground"));
  vyr::ref_ptr<vyr::RigidBody> ball = new vyr::RigidBody("ball"), hanging = new vyr::RigidBody("hanging");
  for (vyr::RigidBody* body : {ball.get(), hanging.get()}) {
    body->add(new vyrCollide::Geometry(new vyrCollide::Sphere(0.25), body->getName()));
    body->setMass(2);
  }
  ball->setPosition(vyr::Vec3(0, 0, 2));
  ball->setVelocity(vyr::Vec3(1, 0, 0));
  hanging->setPosition(vyr::Vec3(1, 0, 2));
  scene->add(ground.get());
  scene->add(ball.get());
  scene->add(hanging.get());
  scene->add(new vyr::Ball(new vyr::Frame(ball.get(), vyr::AffineMatrix4x4::translate(1, 0, 0)),
                           new vyr::Frame(hanging.get())));
  ASSERT_TRUE(scene->write(file));
}

class ReaderWriter : public testing::Test {
protected:
  void SetUp() override {
    std::ofstream(folder / "tetra.obj") << kTetrahedron;
    writeScene(folder / "scene.json");
  }
  void TearDown() override { osgDB::Registry::instance()->clearObjectCache(); }

  TemporaryFolder folder;
  CapturedMessages messages;
  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};
  osg::ref_ptr<vyrOSG::Group> root{new vyrOSG::Group};
};

TEST_F(ReaderWriter, ReadsAModel) {
  osg::ref_ptr<osg::Node> node = vyrOSG::readNodeFile(folder / "tetra.obj");
  ASSERT_TRUE(node);
  // The sphere around the box from (0, 0, 0) to (1, 1, 1) touches the corners.
  EXPECT_NEAR(node->getBound().center().x(), 0.5, 1e-6);
  EXPECT_TRUE(messages.take().empty());
}

TEST_F(ReaderWriter, TheCacheGivesTheSameNode) {
  osg::ref_ptr<osg::Node> first = vyrOSG::readNodeFile(folder / "tetra.obj");
  EXPECT_EQ(vyrOSG::readNodeFile(folder / "tetra.obj", true), first.get());
  osg::ref_ptr<osg::Node> fresh = vyrOSG::readNodeFile(folder / "tetra.obj", false);
  ASSERT_TRUE(fresh);
  EXPECT_NE(fresh.get(), first.get());
  // Nobody but the caller holds a node that was read without the cache.
  EXPECT_EQ(fresh->referenceCount(), 1);
  // The caller's options are not changed.
  osg::ref_ptr<osgDB::Options> options = new osgDB::Options;
  const osgDB::Options::CacheHintOptions hint = options->getObjectCacheHint();
  osg::ref_ptr<osg::Node> other = vyrOSG::readNodeFile(folder / "tetra.obj", options.get(), false);
  EXPECT_EQ(other->referenceCount(), 1);
  EXPECT_EQ(options->getObjectCacheHint(), hint);
}

TEST_F(ReaderWriter, OptionsReachTheReader) {
  osg::ref_ptr<osgDB::Options> options = new osgDB::Options;
  // Relative names are found on the options' own paths.
  EXPECT_EQ(vyrOSG::readNodeFile("tetra.obj", false), nullptr);
  messages.take();
  options->getDatabasePathList().push_back(folder.path());
  osg::ref_ptr<osg::Node> found = vyrOSG::readNodeFile("tetra.obj", options.get(), false);
  EXPECT_TRUE(found);
  EXPECT_TRUE(messages.take().empty());
}

TEST_F(ReaderWriter, AMissingModelIsOneLineWithEveryPath) {
  osgDB::Registry::instance()->getDataFilePathList().push_back(folder.path());
  EXPECT_EQ(vyrOSG::readNodeFile("none.obj"), nullptr);
  osgDB::Registry::instance()->getDataFilePathList().pop_back();
  const std::string line = messages.takeOne();
  EXPECT_THAT(line, HasSubstr("vyrOSG::readNodeFile: cannot find 'none.obj', tried: none.obj, "));
  EXPECT_THAT(line, HasSubstr(folder / "none.obj"));
}

TEST_F(ReaderWriter, AFileThatIsNoModelIsOneLine) {
  std::ofstream(folder / "notes.txt") << "text";
  EXPECT_EQ(vyrOSG::readNodeFile(folder / "notes.txt"), nullptr);
  EXPECT_THAT(messages.takeOne(), HasSubstr("vyrOSG::readNodeFile: cannot read '" + (folder / "notes.txt") + "': "));
}

TEST_F(ReaderWriter, AModelBecomesAStillBodyWithAMesh) {
  EXPECT_TRUE(vyrOSG::readFile(folder / "tetra.obj", simulation.get(), root.get()));
  EXPECT_TRUE(messages.take().empty());
  ASSERT_EQ(simulation->getRigidBodies().size(), 1u);
  vyr::RigidBody* body = simulation->getRigidBodies()[0].get();
  EXPECT_EQ(body->getName(), "tetra");
  EXPECT_EQ(body->getMotionControl(), vyr::RigidBody::STATIC);
  ASSERT_EQ(body->getGeometries().size(), 1u);
  EXPECT_EQ(body->getGeometries()[0]->getShape()->getType(), vyrCollide::Shape::TRIMESH);
  ASSERT_EQ(root->getNumChildren(), 1u);
  EXPECT_NE(vyrOSG::findGeometryNode(body->getGeometries()[0].get(), root.get()), nullptr);
}

TEST_F(ReaderWriter, ASceneFillsTheSimulation) {
  EXPECT_TRUE(vyrOSG::readFile(folder / "scene.json", simulation.get(), root.get()));
  EXPECT_TRUE(messages.take().empty());
  ASSERT_EQ(simulation->getRigidBodies().size(), 3u);
  ASSERT_EQ(simulation->getConstraints().size(), 1u);
  // Settings are the simulation's own unless they are asked for.
  EXPECT_EQ(simulation->getGravity(), vyr::Vec3(0, 0, -9.80665));
  EXPECT_EQ(simulation->getTimeStep(), 1.0 / 60);
  vyr::RigidBody* ball = simulation->findRigidBody("ball");
  ASSERT_NE(ball, nullptr);
  EXPECT_EQ(ball->getPosition(), vyr::Vec3(0, 0, 2));
  EXPECT_EQ(ball->getVelocity(), vyr::Vec3(1, 0, 0));
  EXPECT_EQ(ball->getMass(), 2);
  EXPECT_EQ(ball->getMotionControl(), vyr::RigidBody::DYNAMICS);
  EXPECT_EQ(simulation->findRigidBody("ground")->getMotionControl(), vyr::RigidBody::STATIC);
  EXPECT_EQ(root->getNumChildren(), 3u);
  // The bodies are in the simulation for good: they fall and hit.
  for (int i = 0; i < 240; ++i)
    simulation->step();
  EXPECT_NEAR(ball->getPosition().z(), 0.25, 0.05);
  const vyr::Vec3 apart = simulation->findRigidBody("hanging")->getPosition() - ball->getPosition();
  EXPECT_NEAR(apart.length(), 1, 0.02);
  // Reading adds: bodies of the same names stand beside the first ones.
  EXPECT_TRUE(vyrOSG::readFile(folder / "scene.json", simulation.get(), root.get()));
  EXPECT_EQ(simulation->getRigidBodies().size(), 6u);
  EXPECT_EQ(simulation->getConstraints().size(), 2u);
}

TEST_F(ReaderWriter, AnAssemblyGetsThePartsAndEnters) {
  vyr::ref_ptr<vyrSDK::Assembly> assembly = new vyrSDK::Assembly("read");
  EXPECT_TRUE(vyrOSG::readFile(folder / "scene.json", simulation.get(), root.get(), assembly.get()));
  EXPECT_EQ(assembly->getRigidBodies().size(), 3u);
  EXPECT_EQ(assembly->getConstraints().size(), 1u);
  EXPECT_EQ(assembly->getSimulation(), simulation.get());
  EXPECT_EQ(simulation->getRigidBodies().size(), 3u);
  EXPECT_EQ(simulation->getConstraints().size(), 1u);
  vyr::ref_ptr<vyrSDK::Simulation> other = new vyrSDK::Simulation;
  EXPECT_FALSE(vyrOSG::readFile(folder / "scene.json", other.get(), root.get(), assembly.get()));
  EXPECT_THAT(messages.takeOne(), HasSubstr("is in another simulation"));
  EXPECT_TRUE(other->getRigidBodies().empty());
}

TEST_F(ReaderWriter, TheMaskChoosesWhatIsTakenOver) {
  EXPECT_TRUE(vyrOSG::readFile(folder / "scene.json", simulation.get(), root.get(), nullptr, nullptr, 0.35, false, -1,
                               vyrOSG::READ_BODIES));
  EXPECT_EQ(simulation->getRigidBodies().size(), 3u);
  EXPECT_TRUE(simulation->getConstraints().empty());
  EXPECT_EQ(root->getNumChildren(), 0u);
  EXPECT_TRUE(vyrOSG::readFile(folder / "scene.json", simulation.get(), root.get(), nullptr, nullptr, 0.35, false, -1,
                               vyrOSG::CREATE_VISUALS));
  EXPECT_EQ(simulation->getRigidBodies().size(), 3u);
  EXPECT_EQ(simulation->getTimeStep(), 1.0 / 60);
  EXPECT_TRUE(vyrOSG::readFile(folder / "scene.json", simulation.get(), root.get(), nullptr, nullptr, 0.35, false, -1,
                               vyrOSG::READ_SETTINGS));
  EXPECT_EQ(simulation->getRigidBodies().size(), 3u);
  EXPECT_EQ(simulation->getGravity(), vyr::Vec3(0, 0, -1.5));
  EXPECT_EQ(simulation->getTimeStep(), 0.01);
  EXPECT_EQ(vyrOSG::READ_BODIES | vyrOSG::READ_CONSTRAINTS | vyrOSG::CREATE_VISUALS, 13);
  // Without a group nothing is drawn.
  EXPECT_TRUE(vyrOSG::readFile(folder / "tetra.obj", simulation.get(), nullptr));
  EXPECT_EQ(simulation->getRigidBodies().size(), 4u);
}

TEST_F(ReaderWriter, AMotionControlIsForcedOnEveryBody) {
  EXPECT_TRUE(vyrOSG::readFile(folder / "scene.json", simulation.get(), root.get(), nullptr, nullptr, 0.35, false,
                               vyr::RigidBody::KINEMATICS));
  for (const auto& body : simulation->getRigidBodies())
    EXPECT_EQ(body->getMotionControl(), vyr::RigidBody::KINEMATICS);
  EXPECT_FALSE(vyrOSG::readFile(folder / "scene.json", simulation.get(), root.get(), nullptr, nullptr, 0.35, false, 4));
  EXPECT_THAT(messages.takeOne(), HasSubstr("there is no motion control 4"));
}

TEST_F(ReaderWriter, AxesAreDrawnOnRequest) {
  const auto children = [this](bool axes) {
    osg::ref_ptr<vyrOSG::Group> group = new vyrOSG::Group;
    EXPECT_TRUE(vyrOSG::readFile(folder / "tetra.obj", simulation.get(), group.get(), nullptr, nullptr, 0.35, axes));
    return group->getChild(0)->asGroup()->getNumChildren();
  };
  EXPECT_GT(children(true), children(false));
}

TEST_F(ReaderWriter, TheCameraHomeShowsWhatWasRead) {
  vyr::ref_ptr<vyrOSG::ExampleApplication> application = new vyrOSG::ExampleApplication;
  EXPECT_TRUE(vyrOSG::readFile(folder / "scene.json", simulation.get(), root.get(), nullptr, application.get()));
  EXPECT_TRUE(application->isCameraHomeSet());
  EXPECT_TRUE(messages.take().empty());
  // A file without anything to see leaves the home alone.
  vyr::ref_ptr<vyrOSG::ExampleApplication> second = new vyrOSG::ExampleApplication;
  EXPECT_TRUE(vyrOSG::readFile(folder / "scene.json", simulation.get(), nullptr, nullptr, second.get()));
  EXPECT_FALSE(second->isCameraHomeSet());
}

TEST_F(ReaderWriter, FailuresLeaveTheSimulationAsItIs) {
  EXPECT_FALSE(vyrOSG::readFile(folder / "scene.json", nullptr, root.get()));
  EXPECT_THAT(messages.takeOne(), HasSubstr("there is no simulation to read '"));
  EXPECT_FALSE(vyrOSG::readFile("none.json", simulation.get(), root.get()));
  EXPECT_THAT(messages.takeOne(), HasSubstr("vyrOSG::readFile: cannot find 'none.json', tried: none.json"));
  std::string broken;
  std::getline(std::ifstream(folder / "scene.json"), broken, '\0');
  broken.replace(broken.find("\"radius\":"), 9, "\"radiux\":");
  std::ofstream(folder / "broken.json") << broken;
  EXPECT_FALSE(vyrOSG::readFile(folder / "broken.json", simulation.get(), root.get()));
  EXPECT_THAT(messages.takeOne(), HasSubstr("broken.json"));
  std::ofstream(folder / "notes.txt") << "text";
  EXPECT_FALSE(vyrOSG::readFile(folder / "notes.txt", simulation.get(), root.get()));
  EXPECT_THAT(messages.takeOne(), HasSubstr("notes.txt"));
  EXPECT_TRUE(simulation->getRigidBodies().empty());
  EXPECT_EQ(root->getNumChildren(), 0u);
}

} // namespace
