// The module RockGenerator: constants, defaults, ownership.
#include "CallChecks.h"

#include <vyr/Material.h>
#include <vyrCollide/Space.h>
#include <vyrOSG/RockGenerator.h>
#include <vyrSDK/Assembly.h>

namespace {

/// Remembers what a script's call brought. The function is not virtual: the rocks tell.
class RockGeneratorModule : public bindingtest::CallChecks {
protected:
  RockGeneratorModule() {
    set("assembly", assembly.get(), "vyrSDK::Assembly");
    set("space", space.get(), "vyrCollide::Space");
    set("group", group.get(), "vyrOSG::Group");
    set("material", material.get(), "vyr::Material");
    lua.run("generator = vyrOSG.RockGenerator()");
  }

  vyr::ref_ptr<vyrSDK::Assembly> assembly{new vyrSDK::Assembly};
  vyr::ref_ptr<vyrCollide::Space> space{new vyrCollide::Space};
  osg::ref_ptr<vyrOSG::Group> group{new vyrOSG::Group};
  vyr::ref_ptr<vyr::Material> material{new vyr::Material};
};

TEST_F(RockGeneratorModule, HasItsConstants) {
  EXPECT_EQ("0 1 2 3 4 5 6 7", lua.eval("vyrOSG.RockGenerator.COMPOSITE_ONE, vyrOSG.RockGenerator.COMPOSITE_TWO,"
                                        "vyrOSG.RockGenerator.COMPOSITE_THREE, vyrOSG.RockGenerator.COMPOSITE_FOUR,"
                                        "vyrOSG.RockGenerator.MAYA_ROCK1, vyrOSG.RockGenerator.MAYA_ROCK2,"
                                        "vyrOSG.RockGenerator.MAYA_ROCK3, vyrOSG.RockGenerator.NUM_ROCK_TYPES"));
}

TEST_F(RockGeneratorModule, IsBuiltThreeWays) {
  lua.run("a = vyrOSG.RockGenerator:new() b = vyrOSG.RockGenerator:new_local()");
  EXPECT_EQ("vyrOSG::RockGenerator vyrOSG::RockGenerator vyrOSG::RockGenerator", lua.eval("a, b, generator"));
  const vyr::ref_ptr<vyrOSG::RockGenerator> keep = global<vyrOSG::RockGenerator>("a");
  EXPECT_EQ(1, keep->getReferenceCount());
  EXPECT_EQ(1, global<vyrOSG::RockGenerator>("b")->getReferenceCount());
  for (const char* call : {"vyrOSG.RockGenerator:new(1)", "vyrOSG.RockGenerator:new_local(nil, 1)",
                           "vyrOSG.RockGenerator.new()", "vyrOSG.RockGenerator(1)"})
    EXPECT_EQ("#ferror in function 'new'.", lua.raised(call)) << call;
}

TEST_F(RockGeneratorModule, SevenArgumentsTakeTheDefaultsOfTheOthers) {
  EXPECT_EQ("", lua.run("return generator:generateRocks(assembly, space, 5, group, 0.05, 0.1, material)"));
  ASSERT_EQ(5u, assembly->getRigidBodies().size());
  EXPECT_EQ(5u, group->getNumChildren());
  const vyr::ref_ptr<vyrSDK::Assembly> first = assembly;
  const vyr::ref_ptr<vyrSDK::Assembly> second(new vyrSDK::Assembly);
  set("second", second.get(), "vyrSDK::Assembly");
  EXPECT_EQ("", lua.run("return generator:generateRocks(second, nil, 5.9, nil, 0.05, 0.1, material, 0, 0.5, 0.5, 0)"));
  ASSERT_EQ(5u, second->getRigidBodies().size());
  for (std::size_t i = 0; i < 5; ++i)
    EXPECT_EQ(first->getRigidBodies()[i]->getPosition(), second->getRigidBodies()[i]->getPosition());
}

TEST_F(RockGeneratorModule, TrailingNumbersArriveInTheirOrder) {
  EXPECT_EQ("", lua.run("return generator:generateRocks(assembly, nil, 12, nil, 0.05, 0.05, nil, 7, 3, 0, 1)"));
  double widest = 0;
  for (const auto& body : assembly->getRigidBodies()) {
    EXPECT_GE(body->getPosition().z(), 7.05);
    EXPECT_NEAR(0, body->getPosition().y(), 1e-9);
    widest = std::max(widest, std::abs(body->getPosition().x()));
  }
  EXPECT_GT(widest, 0.6);
  EXPECT_LE(widest, 3);
}

TEST_F(RockGeneratorModule, RefusesOtherArguments) {
  const bindingtest::Call calls[] = {{"generateRocks", "assembly, space, 1, group, 0.1, 0.2, material, 0, 1, 1, 0"}};
  expectRefusals("vyrOSG.RockGenerator", "generator", "vyrOSG::RockGenerator", calls);
  // An object that Lua has not seen: the runtime keeps the type of those that it knows.
  const vyr::ref_ptr<vyrOSG::RockGenerator> fresh = new vyrOSG::RockGenerator;
  expectConstant("vyrOSG.RockGenerator", fresh.get(), "vyrOSG::RockGenerator", calls, "");
  for (const char* call : {"generator:generateRocks(assembly, space, 1, group, 0.1, 0.2)", "generator:generateRocks()",
                           "generator:generateRocks(space, assembly, 1, group, 0.1, 0.2, material)",
                           "generator:generateRocks(assembly, space, 'a', group, 0.1, 0.2, material)"})
    EXPECT_EQ("#ferror in function 'generateRocks'.", lua.raised(call)) << call;
}

TEST_F(RockGeneratorModule, IsCollectedUnlessHeld) {
  const vyr::observer_ptr<vyrOSG::RockGenerator> generator = global<vyrOSG::RockGenerator>("generator");
  lua.run("generator = nil");
  lua.collect();
  EXPECT_FALSE(generator.valid());
}

} // namespace
