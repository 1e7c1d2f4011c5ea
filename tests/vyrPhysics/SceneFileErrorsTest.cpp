/// Scene files with mistakes: each costs one message that names the place, and nothing is changed.
#include "SceneFuture.h"

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

struct Mistake {
  const char* text;  ///< the members of a scene
  const char* place; ///< what the message must hold
};

std::string sceneOf(const std::string& members) {
  return R"({"format": "vyr-scene", "version": 2, )" + members + "}";
}

/// A simulation that has something to lose.
vyr::ref_ptr<vyrSDK::Simulation> occupied() {
  vyr::ref_ptr<vyrSDK::Simulation> simulation = new vyrSDK::Simulation;
  simulation->add(scene::body(new vyrCollide::Sphere(0.5), vyr::Vec3(1.0, 2.0, 3.0)));
  simulation->stepTo(0.1);
  return simulation;
}

const Mistake kMistakes[] = {
    {R"("bodies": 3)", "bodies: must be a list, not 3"},
    {R"("bodies": [7])", "bodies[0]: must be an object"},
    {R"("bodies": [{}, {"geometries": [{"shape": {"type": "sphere", "radius": "wide"}}]}])",
     "bodies[1].geometries[0].shape.radius: must be a number, not \"wide\""},
    {R"("bodies": [{"geometries": [{"shape": {"type": "sphere", "radius": -1}}]}])",
     "bodies[0].geometries[0].shape.radius: must be above 0, not -1"},
    {R"("bodies": [{"geometries": [{"shape": {"type": "sphere"}}]}])",
     "bodies[0].geometries[0].shape: the member \"radius\" is missing"},
    {R"("bodies": [{"geometries": [{}]}])", "bodies[0].geometries[0]: the member \"shape\" is missing"},
    {R"("bodies": [{"geometries": [{"shape": 4}]}])", "shape: there is no shape 4, the file has 0"},
    {R"("bodies": [{"geometries": [{"shape": {"type": "boks"}}]}])", "shape.type: there is no shape \"boks\""},
    {R"("bodies": [{"geometries": [{"shape": {"type": "plane"}}]}])", "a plane cannot be in a body that forces move"},
    {R"("bodies": [{"geometries": [{"material": 1, "shape": {"type": "plane"}}]}])", "there is no material 1"},
    {R"("bodies": [{"geometries": [{"material": "tin", "shape": {"type": "plane"}}]}])",
     "there is no material \"tin\""},
    {R"("bodies": [{"position": [1, 2]}])", "bodies[0].position: must be a list of 3 numbers, not [1,2]"},
    {R"("bodies": [{"position": [1, 2, "x"]}])", "bodies[0].position[2]: must be a number"},
    {R"("bodies": [{"rotation": [0, 0, 0, 0]}])", "bodies[0].rotation: must be a quaternion"},
    {R"("bodies": [{"mass": 0}])", "bodies[0].mass: must be above 0"},
    {R"("bodies": [{"mass": "inf"}])", "bodies[0].mass: must be a number"},
    {R"("bodies": [{"linearDamping": 2}])", "bodies[0].linearDamping: must be from 0 to 1"},
    {R"("bodies": [{"motionControl": "ghostly"}])", "bodies[0].motionControl: must be \"static\""},
    {R"("bodies": [{"motionControl": 4}])", "bodies[0].motionControl: must be a whole number from 1 to 3"},
    {R"("bodies": [{"mass": 1, "center": [0, 0, 0], "inertia": [1, 2, 0, 2, 1, 0, 0, 0, 1]}])", "bodies[0].inertia"},
    {R"("materials": [{"restitution": 1.5}])", "materials[0].restitution: must be from 0 to 1"},
    {R"("shapes": [{"type": "box", "halfExtents": [1, 0, 1]}])", "shapes[0].halfExtents[1]: must be above 0"},
    {R"("shapes": [{"type": "trimesh", "vertices": [[0, 0, 0]], "indices": [0, 1, 2]}])", "shapes[0].indices[1]"},
    {R"("shapes": [{"type": "heightField", "columns": 2, "rows": 2, "size": [1, 1], "heights": [0, 0, 0]}])",
     "shapes[0].heights: must be a list of 4 numbers"},
    {R"("bodies": [{}], "constraints": [{"type": "hinge"}])", "constraints[0]: must hold two different bodies"},
    {R"("bodies": [{}], "constraints": [{"type": "glue", "frame1": {"body": 0}}])", "constraints[0].type"},
    {R"("bodies": [{}], "constraints": [{"type": "ball", "frame1": {"body": 5}}])",
     "constraints[0].frame1.body: there is no body 5, the file has 1"},
    {R"("bodies": [{}], "constraints": [{"type": "ball", "frame1": {"body": "arm"}}])", "there is no body \"arm\""},
    {R"("bodies": [{}], "constraints": [{"type": "ball", "frame1": {"body": 0}, "breakForce": -1}])", "breakForce"},
    {R"("bodies": [{}], "constraints": [{"type": "hinge", "frame1": {"body": 0}, "control": {"range": [2, 1]}}])",
     "constraints[0].control.range: must name the smaller number first"},
    {R"("particleSystems": [{"particles": [{"radius": 0.1, "mass": 1, "life": 0}]}])",
     "particleSystems[0].particles[0].life: must be above 0"},
    {R"("spaces": [[[0, 0]]])", "spaces[0][0][0]: there is no body 0"},
    {R"("assemblies": [{"bodies": [2]}])", "assemblies[0].bodies[0]: there is no body 2"},
    {R"("assemblies": [{"type": "Swarm"}])", "assemblies[0].type: there is no kind of assembly \"Swarm\""},
    {R"("assemblies": [{"type": "SimpleCar"}])", "assemblies[0]: the member \"chassis\" is missing"},
    {R"("listeners": [{"type": "Ghost"}])", "listeners[0].type: there is no kind of listener \"Ghost\""},
    {R"("listeners": [{"type": "Wire", "length": 1, "segments": 2, "massPerLength": 1, "nodes": [1]}])",
     "listeners[0].nodes: must be a list of 9 numbers"},
    {R"("simulation": {"timeStep": 0})", "simulation.timeStep: must be above 0"},
    {R"("simulation": {"timeStep": -0.01})", "simulation.timeStep: must be above 0"},
    {R"("simulation": {"solver": "magic"})", "simulation.solver: must be \"iterative\" or \"multi\""},
    {R"("simulation": {"steps": -4})", "simulation.steps: must be a whole number of at least 0"},
    {R"("simulation": {"steps": 1.5})", "simulation.steps: must be a whole number of at least 0"},
    {R"("bodies": [{}], "order": [["body", 1, 0, 1]])", "order[0]: names a part that is not there"},
    {R"("bodies": [{}], "order": [["ghost", 0, 0, 1]])", "order[0][0]: must be \"body\""},
    {R"("bodies": [{}], "contacts": [{"objects": [0, 1], "points": []}])",
     "contacts[0].objects[1]: there is no object 1"},
    {R"("bodies": [{"mass": NaN}])", "parse error at line 1"},
    {R"("bodies": [{"mass": 1e999}])", "out_of_range"},
};

} // namespace

TEST(SceneFileErrors, AMistakeIsNamedByItsPlace) {
  auto simulation = occupied();
  for (const Mistake& mistake : kMistakes) {
    const std::vector<std::string> errors = scene::errorsOf(*simulation, sceneOf(mistake.text));
    ASSERT_EQ(errors.size(), 1u) << mistake.text;
    EXPECT_NE(errors[0].find("'scene.json'"), std::string::npos) << errors[0];
    EXPECT_NE(errors[0].find(mistake.place), std::string::npos) << errors[0] << "\n  should hold " << mistake.place;
  }
}

TEST(SceneFileErrors, TextsThatAreNoScenesAreRefused) {
  auto simulation = occupied();
  const std::string good = occupied()->toText();
  for (const std::string& text :
       {std::string(), std::string("{"), std::string("[]"), std::string("{}"), std::string("null"), std::string("7"),
        good.substr(0, good.size() / 2), std::string(R"({"format": "other", "version": 2})"),
        std::string(R"({"format": "vyr-scene"})"), std::string(R"({"format": 3, "version": 2})"),
        std::string(R"({"format": "vyr-scene", "version": 3})"),
        std::string(R"({"format": "vyr-scene", "version": 1})"),
        std::string(R"({"version": 1, "time": 0, "bodies": 5})")}) {
    EXPECT_EQ(scene::errorsOf(*simulation, text).size(), 1u) << text.substr(0, 60);
  }
}

TEST(SceneFileErrors, UnknownMembersAreNamedAndTheRestIsRead) {
  auto simulation = occupied();
  scene::Messages messages;
  EXPECT_TRUE(simulation->fromText(
      sceneOf(R"("colour": 1, "bodies": [{"name": "a", "weight": 3, "visual": {"anything": 1}}])"), "scene.json"));
  EXPECT_TRUE(messages.get().empty());
  ASSERT_EQ(messages.getWarnings().size(), 1u);
  const std::string& warning = messages.getWarnings()[0];
  EXPECT_NE(warning.find("scene.json"), std::string::npos);
  EXPECT_NE(warning.find("colour, bodies[0].weight"), std::string::npos) << warning;
  EXPECT_EQ(warning.find("visual"), std::string::npos) << "looks are for those who draw";
  ASSERT_EQ(simulation->getRigidBodies().size(), 1u);
  EXPECT_EQ(simulation->getRigidBodies()[0]->getName(), "a");
}

TEST(SceneFileErrors, WhatIsWrittenHasNoUnknownMembers) {
  auto simulation = occupied();
  scene::Messages messages;
  EXPECT_TRUE(simulation->fromText(occupied()->toText()));
  EXPECT_TRUE(messages.get().empty());
  EXPECT_TRUE(messages.getWarnings().empty());
}

TEST(SceneFileErrors, FilesThatCannotBeOpenedAreNamed) {
  auto simulation = occupied();
  const std::string folder = std::filesystem::temp_directory_path().string();
  scene::Messages messages;
  EXPECT_FALSE(simulation->read("/nowhere/scene.json"));
  EXPECT_FALSE(simulation->restore("/nowhere/scene.json"));
  EXPECT_FALSE(simulation->write("/nowhere/scene.json"));
  EXPECT_FALSE(simulation->read(folder));
  EXPECT_FALSE(simulation->write(folder));
  ASSERT_EQ(messages.get().size(), 5u);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_NE(messages.get()[i].find("/nowhere/scene.json"), std::string::npos);
  }
}

TEST(SceneFileErrors, EveryTruncationIsRefused) {
  auto simulation = occupied();
  const std::string good = occupied()->toText();
  for (std::size_t length = 0; length + 1 < good.size(); length += 7) {
    ASSERT_EQ(scene::errorsOf(*simulation, good.substr(0, length)).size(), 1u) << length;
  }
}
