/// Scene files that people write: most members may be missing. And files of older versions.
#include "SceneFuture.h"

#include <vyr/Hinge.h>

#include <cmath>
#include <fstream>
#include <sstream>

namespace {

vyr::ref_ptr<vyrSDK::Simulation> read(const std::string& text) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  scene::Messages messages;
  EXPECT_TRUE(simulation->fromText(text));
  EXPECT_TRUE(messages.get().empty()) << messages.get()[0];
  return simulation;
}

} // namespace

TEST(SceneFileByHand, AnEmptySceneHasTheUsualSettings) {
  auto simulation = read(R"({"format": "vyr-scene", "version": 2})");
  const vyr::ref_ptr<vyrSDK::Simulation> usual = new vyrSDK::Simulation;
  EXPECT_EQ(simulation->toText(), usual->toText());
}

TEST(SceneFileByHand, MassFollowsFromTheMaterialUnlessItIsNamed) {
  auto simulation = read(R"({"format": "vyr-scene", "version": 2,
    "materials": [{"name": "oak", "density": 700}],
    "bodies": [
      {"name": "beam", "geometries": [{"material": "oak", "shape": {"type": "box", "halfExtents": [1, 0.5, 0.5]}}]},
      {"name": "post", "mass": 5, "geometries": [{"material": {"density": 9}, "shape": {"type": "sphere", "radius": 1}}]}
    ]})");
  EXPECT_DOUBLE_EQ(simulation->findRigidBody("beam")->getMass(), 1400.0);
  EXPECT_DOUBLE_EQ(simulation->findRigidBody("post")->getMass(), 5.0);
  // 2/5 m r^2
  EXPECT_NEAR(simulation->findRigidBody("post")->getInertia()(0, 0), 2.0, 1e-12);
  EXPECT_DOUBLE_EQ(simulation->findRigidBody("post")->getGeometries()[0]->getMaterial()->getDensity(), 9.0);
}

TEST(SceneFileByHand, APlaceIsAPositionAndARotation) {
  auto simulation = read(R"({"format": "vyr-scene", "version": 2, "bodies": [
      {"position": [1, 2, 3], "rotation": [0, 0, 2, 2], "velocity": [4, 5, 6], "motionControl": "kinematic"}]})");
  const vyr::RigidBody& body = *simulation->getRigidBodies()[0];
  EXPECT_EQ(body.getPosition(), vyr::Vec3(1, 2, 3));
  EXPECT_EQ(body.getVelocity(), vyr::Vec3(4, 5, 6));
  EXPECT_EQ(body.getMotionControl(), vyr::RigidBody::KINEMATICS);
  const vyr::Vec3 turned = vyr::Vec3(1, 0, 0) * body.getRotation();
  EXPECT_NEAR((turned - vyr::Vec3(0, 1, 0)).length(), 0.0, 1e-12);
}

TEST(SceneFileByHand, ASecondFrameLiesWhereTheFirstOneIs) {
  auto simulation = read(R"({"format": "vyr-scene", "version": 2,
    "bodies": [{"name": "door", "position": [0, 0, 1]}, {"name": "wall", "position": [5, 0, 0], "motionControl": "static"}],
    "constraints": [{"type": "hinge", "frame1": {"body": "door", "position": [-0.5, 0, 0]}, "frame2": {"body": "wall"},
                     "control": {"motor": true, "motorSpeed": 2, "motorForce": "inf"}}]})");
  auto* hinge = dynamic_cast<vyr::Hinge*>(simulation->getConstraints()[0].get());
  ASSERT_NE(hinge, nullptr);
  EXPECT_EQ(hinge->getFrame2()->getPosition(), vyr::Vec3(-0.5, 0, 1));
  simulation->stepTo(0.5);
  EXPECT_NEAR(hinge->getSpeed(), 2.0, 1e-6);
}

TEST(SceneFileByHand, AnEditedPlaceGoesBeforeTheExactOne) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->add(scene::body(new vyrCollide::Sphere(0.5), vyr::Vec3(1.25, 0.0, 3.0)));
  std::string text = simulation->toText();
  const std::size_t body = text.find("\"velocity\"");
  const std::size_t number = text.rfind("1.25", body);
  ASSERT_NE(number, std::string::npos);
  text.replace(number, 4, "7.5");
  EXPECT_EQ(read(text)->getRigidBodies()[0]->getPosition(), vyr::Vec3(7.5, 0.0, 3.0));
}

TEST(SceneFileByHand, PartsThatTheOrderLeavesOutStandBehind) {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->add(scene::ground());
  simulation->add(scene::body(new vyrCollide::Sphere(0.5), vyr::Vec3(0.0, 0.0, 0.5)));
  simulation->stepTo(1.0);
  std::string text = simulation->toText();
  const std::size_t end = text.find("}", text.find("\"restTime\"")) + 1;
  text.insert(
      end, R"(, {"name": "new", "position": [3, 0, 5], "geometries": [{"shape": {"type": "sphere", "radius": 1}}]})");
  auto edited = read(text);
  ASSERT_NE(edited->findRigidBody("new"), nullptr);
  edited->stepTo(4.0);
  EXPECT_NEAR(edited->findRigidBody("new")->getPosition().z(), 1.0, 0.01);
}

TEST(SceneFileByHand, TheFirstVersionIsStillRead) {
  auto simulation = read(R"({"format": "vyr-scene", "version": 1,
    "simulation": {"timeStep": 0.01, "countStart": 2.0, "countedSteps": 5, "steps": 205, "gravity": [0, 0, -1],
                   "solver": "iterative", "iterations": 12, "frictionModel": 1, "sleeping": false},
    "materials": [{"name": "m", "density": 10, "friction": 0.1, "restitution": 0.2, "rollingFriction": 0}],
    "shapes": [{"type": "plane"}, {"type": "sphere", "radius": 0.5}],
    "geometries": [
      {"name": "floor", "shape": 0, "material": -1, "transform": [1,0,0,0, 0,1,0,0, 0,0,1,0, 0,0,0,1], "sensor": false, "collides": true},
      {"name": "ball", "shape": 1, "material": 0, "transform": [1,0,0,0, 0,1,0,0, 0,0,1,0, 0,0,0,1], "sensor": false, "collides": true}],
    "bodies": [{"name": "b", "geometries": [1], "motionControl": 3, "transform": [1,0,0,0, 0,1,0,0, 0,0,1,0, 0,0,4,1],
      "velocity": [1, 0, 0], "angularVelocity": [0, 0, 0], "mass": 5, "center": [0, 0, 0],
      "inertia": [1, 0, 0, 0, 1, 0, 0, 0, 1], "massIsSet": true, "inertiaIsSet": true, "linearDamping": 0,
      "angularDamping": 0, "gravity": true, "force": [0, 0, 0], "torque": [0, 0, 0],
      "engineTransform": [1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 4], "activation": 4, "restTime": 0}],
    "freeGeometries": [0], "constraints": [], "particleSystems": [], "spaces": [[0]],
    "assemblies": [{"name": "all", "bodies": [0], "geometries": [0], "constraints": [], "frames": [], "assemblies": []}],
    "order": [["body", 0, 0, 1], ["geometry", 0, 0, 2]], "contacts": []})");
  ASSERT_EQ(simulation->getRigidBodies().size(), 1u);
  EXPECT_EQ(simulation->getRigidBodies()[0]->getGeometries()[0]->getName(), "ball");
  EXPECT_DOUBLE_EQ(simulation->getRigidBodies()[0]->getMass(), 5.0);
  ASSERT_EQ(simulation->getGeometries().size(), 1u);
  EXPECT_EQ(simulation->getSpaces()[0]->getGeometries()[0]->getName(), "floor");
  EXPECT_EQ(simulation->getAssemblies()[0]->getGeometries()[0]->getName(), "floor");
  EXPECT_DOUBLE_EQ(simulation->getTime(), 2.05);
  simulation->stepTo(10.0);
  EXPECT_NEAR(simulation->getRigidBodies()[0]->getPosition().z(), 0.5, 0.01);
}

TEST(SceneFileByHand, SavedStatesOfTheApplicationAreStillRead) {
  auto simulation = read(R"({"version": 1, "time": 1.5, "step": 90,
    "geometries": [{"name": "hill", "sensor": false, "place": {"position": [0, 0, 1], "rotation": [0, 0, 0, 1]},
      "material": {"name": "", "density": 1000, "friction": 0.5, "restitution": 0},
      "shape": {"type": "heightField", "columns": 2, "rows": 2, "sizeX": 4, "sizeY": 6, "heights": [0, 0, 0, 0]}}],
    "bodies": [{"name": "b", "motionControl": 3, "mass": 2, "position": [1, 2, 3], "rotation": [0, 0, 0, 1],
      "velocity": [0, 0, 1], "angularVelocity": [0, 0, 0], "geometries": [
        {"name": "s", "sensor": false, "place": {"position": [0, 0, 0.5], "rotation": [0, 0, 0, 1]},
         "material": {"name": "tin", "density": 7300, "friction": 0.4, "restitution": 0.1},
         "shape": {"type": "sphere", "radius": 0.25}}]}]})");
  EXPECT_DOUBLE_EQ(simulation->getTime(), 1.5);
  EXPECT_EQ(simulation->getTimeStamp().steps(), 90u);
  const vyr::RigidBody& body = *simulation->getRigidBodies()[0];
  EXPECT_EQ(body.getPosition(), vyr::Vec3(1, 2, 3));
  EXPECT_DOUBLE_EQ(body.getMass(), 2.0);
  EXPECT_EQ(body.getGeometries()[0]->getLocalTransform().getTranslate(), vyr::Vec3(0, 0, 0.5));
  EXPECT_EQ(body.getGeometries()[0]->getMaterial()->getName(), "tin");
  EXPECT_EQ(simulation->getGeometries()[0]->getShape()->getType(), vyrCollide::Shape::HEIGHT_FIELD);
}

TEST(SceneFileByHand, TheExampleOfTheDocumentationWorks) {
  std::ifstream file(VYR_SOURCE_DIR "/docs/scene-format.md");
  std::stringstream page;
  page << file.rdbuf();
  const std::string begin = "```json\n";
  const std::size_t from = page.str().find(begin) + begin.size();
  const std::size_t to = page.str().find("```", from);
  ASSERT_LT(to, page.str().size());
  auto simulation = read(page.str().substr(from, to - from));
  ASSERT_EQ(simulation->getRigidBodies().size(), 3u);
  EXPECT_DOUBLE_EQ(simulation->findRigidBody("plank")->getMass(), 700.0 * 3.0 * 0.6 * 0.1);
  auto* hinge = dynamic_cast<vyr::Hinge*>(simulation->getConstraints()[0].get());
  ASSERT_NE(hinge, nullptr);
  simulation->stepTo(3.0);
  EXPECT_NEAR(std::abs(hinge->getPosition()), 0.3, 0.02) << "the ball tips the plank over to its limit";
}
