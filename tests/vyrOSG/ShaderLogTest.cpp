/// The forms in which drivers write shader errors.
#include "ReportingProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

class ShaderLog : public testing::Test {
protected:
  ShaderLog() { shader->setName("lit"); }
  std::vector<std::string> read(const std::string& log) { return vyrOSG::readShaderLog(*shader, log); }
  osg::ref_ptr<osg::Shader> shader{new osg::Shader(osg::Shader::FRAGMENT)};
};

TEST_F(ShaderLog, ReadsTheFormsOfThreeDrivers) {
  shader->setUserData(new vyrOSG::ShaderOrigin("lit.frag"));
  EXPECT_THAT(read("0:12(5): error: `a' undeclared\n0:14(1): warning: `b' unused\n"),
              ElementsAre("lit.frag:12: error: `a' undeclared (fragment shader \"lit\")",
                          "lit.frag:14: warning: `b' unused (fragment shader \"lit\")"));
  EXPECT_THAT(read("0(7) : error C1008: undefined variable \"a\"\r\n"),
              ElementsAre("lit.frag:7: error C1008: undefined variable \"a\" (fragment shader \"lit\")"));
  EXPECT_THAT(read("ERROR: 0:3: 'a' : undeclared identifier\nERROR: 1 compilation errors.  No code generated.\n"),
              ElementsAre("lit.frag:3: 'a' : undeclared identifier (fragment shader \"lit\")"));
}

TEST_F(ShaderLog, LinesOfAScriptStandForLinesOfTheSource) {
  shader->setUserData(new vyrOSG::ShaderOrigin("states.json", {10, 12}));
  EXPECT_THAT(read("0:2(1): error: a"), ElementsAre("states.json:12: error: a (fragment shader \"lit\")"));
  // A line that the driver counts past the end stays as it is.
  EXPECT_THAT(read("0:3(1): error: a"), ElementsAre("states.json:3: error: a (fragment shader \"lit\")"));
}

TEST_F(ShaderLog, AnUnknownFormGivesItsText) {
  EXPECT_THAT(read("something\nwent wrong\n"),
              ElementsAre("shader \"lit\":1: something; went wrong (fragment shader \"lit\")"));
  EXPECT_THAT(read(""), ElementsAre("shader \"lit\":1: does not compile (fragment shader \"lit\")"));
}

TEST_F(ShaderLog, AnAbsurdLineNumberIsNoLine) {
  EXPECT_THAT(read("0:99999999999999999999(1): error: a"),
              ElementsAre("shader \"lit\":1: 0:99999999999999999999(1): error: a (fragment shader \"lit\")"));
}

} // namespace
