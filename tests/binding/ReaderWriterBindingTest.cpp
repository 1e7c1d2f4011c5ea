// The module ReaderWriter: every row of its functions.
#include "GivenObjects.h"
#include "LuaState.h"
#include "MessageLines.h"

#include <vyrOSG/ExampleApplication.h>
#include <vyrOSG/Group.h>
#include <vyrSDK/Assembly.h>
#include <vyrSDK/Simulation.h>

#include <osg/Node>
#include <osgDB/Options>
#include <osgDB/Registry>

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

#include <string>
#include <unistd.h>

int tolua_vyrOSG_ReaderWriter_open(lua_State* state);
int luaopen_vyrOSG_ReaderWriter(lua_State* state);

namespace {

using bindingtest::lastRaised;
using bindingtest::mismatch;
using bindingtest::ownedCount;

class ReaderWriterBinding : public ::testing::Test {
protected:
  ReaderWriterBinding() {
    std::ofstream(file) << "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n";
    tolua_vyrOSG_ReaderWriter_open(lua.get());
    give("options", options.get(), "osgDB::ReaderWriter::Options");
    give("simulation", simulation.get(), "vyrSDK::Simulation");
    give("group", group.get(), "vyrOSG::Group");
    give("assembly", assembly.get(), "vyrSDK::Assembly");
    give("application", application.get(), "vyrOSG::ExampleApplication");
    lua.run("file = '" + file + "'");
  }
  ~ReaderWriterBinding() override {
    lua.close();
    std::remove(file.c_str());
    osgDB::Registry::instance()->clearObjectCache();
  }
  void give(const char* name, void* given, const char* type) { bindingtest::give(lua, name, given, type); }

  const std::string file = ::testing::TempDir() + "ReaderWriterBinding" + std::to_string(getpid()) + ".obj";
  osg::ref_ptr<osgDB::Options> options{new osgDB::Options};
  vyr::ref_ptr<vyrSDK::Simulation> simulation{new vyrSDK::Simulation};
  osg::ref_ptr<vyrOSG::Group> group{new vyrOSG::Group};
  vyr::ref_ptr<vyrSDK::Assembly> assembly{new vyrSDK::Assembly};
  vyr::ref_ptr<vyrOSG::ExampleApplication> application{new vyrOSG::ExampleApplication};
  bindingtest::LuaState lua;
};

TEST_F(ReaderWriterBinding, OpensAloneWithTheSharedBlock) {
  bindingtest::LuaState fresh;
  EXPECT_EQ(1, luaopen_vyrOSG_ReaderWriter(fresh.get()));
  EXPECT_EQ(1, tolua_vyrOSG_ReaderWriter_open(fresh.get()));
  EXPECT_EQ("1 4 nil", fresh.eval("vyr.FrictionModel.DIRECT, vyr.Constraint.ITERATIVE, osg"));
  EXPECT_EQ("function function", fresh.eval("type(vyrOSG.readNodeFile), type(vyrOSG.readFile)"));
}

TEST_F(ReaderWriterBinding, NodesComeWithTheirFileName) {
  for (const char* arguments : {"file", "file, true", "file, options", "file, options, true", "file, nil"})
    EXPECT_EQ("osg::Node " + file, lua.eval(std::string("vyrOSG.readNodeFile(") + arguments + ")")) << arguments;
  EXPECT_EQ("0", ownedCount(lua, "vyrOSG.readNodeFile(file)"));
}

TEST_F(ReaderWriterBinding, TheCacheIsUsedUnlessRefused) {
  EXPECT_EQ("true", lua.run("cached = vyrOSG.readNodeFile(file) return rawequal(cached, (vyrOSG.readNodeFile(file)))"));
  EXPECT_EQ("false", lua.run("fresh = vyrOSG.readNodeFile(file, false) return rawequal(cached, fresh)"));
  EXPECT_EQ("false", lua.run("other = vyrOSG.readNodeFile(file, options, false) return rawequal(fresh, other)"));
  EXPECT_EQ(0, bindingtest::taken<osg::Node>(lua, "fresh")->referenceCount());
  const osg::ref_ptr<osg::Node> fresh = bindingtest::taken<osg::Node>(lua, "fresh");
  const osg::ref_ptr<osg::Node> other = bindingtest::taken<osg::Node>(lua, "other");
}

TEST_F(ReaderWriterBinding, AMissingFileIsNilAndItsName) {
  bindingtest::MessageLines messages;
  EXPECT_EQ("nil none.obj", lua.eval("vyrOSG.readNodeFile('none.obj')"));
  EXPECT_EQ(1u, messages.lines().size());
  EXPECT_EQ("nil none.obj", lua.eval("vyrOSG.readNodeFile('none.obj', options)"));
  EXPECT_EQ("false none.obj", lua.eval("vyrOSG.readFile('none.obj', simulation, group)"));
  EXPECT_EQ(3u, messages.lines().size());
}

TEST_F(ReaderWriterBinding, WrongArgumentsOfReadNodeFile) {
  for (const char* arguments :
       {"", "{}", "nil, 1", "file, 1", "file, options, 1", "file, options, true, 1", "file, group"})
    EXPECT_EQ(mismatch("readNodeFile"), lua.raised(std::string("vyrOSG.readNodeFile(") + arguments + ")")) << arguments;
}

TEST_F(ReaderWriterBinding, ReadFileFillsInItsDefaults) {
  EXPECT_EQ("true " + file, lua.eval("vyrOSG.readFile(file, simulation, group)"));
  // 13 draws what was read; -1 leaves the body its own motion control.
  EXPECT_EQ(1u, simulation->getRigidBodies().size());
  EXPECT_EQ(1u, group->getNumChildren());
  EXPECT_EQ(vyr::RigidBody::STATIC, simulation->getRigidBodies()[0]->getMotionControl());
}

TEST_F(ReaderWriterBinding, ReadFileTakesEveryArgument) {
  const std::string call = "vyrOSG.readFile(file, simulation, group, assembly, application, 0.5, true, 2.9, ";
  EXPECT_EQ("true " + file, lua.eval(call + "13)"));
  ASSERT_EQ(1u, assembly->getRigidBodies().size());
  EXPECT_EQ(vyr::RigidBody::KINEMATICS, assembly->getRigidBodies()[0]->getMotionControl());
  EXPECT_TRUE(application->isCameraHomeSet());
  EXPECT_EQ(1u, group->getNumChildren());
  // Bodies alone: nothing is drawn.
  EXPECT_EQ("true " + file, lua.eval(call + "1)"));
  EXPECT_EQ(2u, assembly->getRigidBodies().size());
  EXPECT_EQ(1u, group->getNumChildren());
  EXPECT_EQ("true " + file, lua.eval("vyrOSG.readFile(file, simulation, nil, nil, nil)"));
}

TEST_F(ReaderWriterBinding, WrongArgumentsOfReadFile) {
  bindingtest::MessageLines messages;
  for (const char* arguments :
       {"", "{}, simulation, group", "file", "file, simulation", "file, group, group", "file, simulation, simulation",
        "file, simulation, group, group", "file, simulation, group, assembly, group",
        "file, simulation, group, assembly, application, 'x'", "file, simulation, group, assembly, application, 1, 1",
        "file, simulation, group, assembly, application, 1, true, 'x'",
        "file, simulation, group, assembly, application, 1, true, 1, 'x'",
        "file, simulation, group, assembly, application, 1, true, 1, 13, 1"})
    EXPECT_EQ(mismatch("readFile"), lua.raised(std::string("vyrOSG.readFile(") + arguments + ")")) << arguments;
  EXPECT_TRUE(messages.lines().empty());
  // nil passes the tests for simulation and group; without a simulation there is nothing to read into.
  EXPECT_EQ("false " + file, lua.eval("vyrOSG.readFile(file, nil, nil)"));
  EXPECT_EQ(1u, messages.lines().size());
}

} // namespace
