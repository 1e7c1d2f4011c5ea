// What a user reads when a script goes wrong.
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using vyrTest::makeTestFolder;
using vyrTest::Outcome;
using vyrTest::runProgram;
using vyrTest::writeFile;

Outcome runScript(const std::string& text) {
  return runProgram({writeFile(makeTestFolder(), "s.lua", text)});
}

TEST(ScriptError, WrongArgumentTypeNamesLineTypesAndCandidates) {
  const Outcome outcome = runScript("local body = vyr.RigidBody('ball')\nbody:setPosition('high')\n");
  EXPECT_EQ(1, outcome.code);
  EXPECT_THAT(outcome.errors, HasSubstr("s.lua:2: error in function 'setPosition'.\n"
                                        "     argument #2 is 'string'; 'const vyr::Vec3' expected.\n"
                                        "     passed: (vyr::RigidBody, string \"high\")\n"
                                        "     candidate: vyr.RigidBody:setPosition(vyr::Vec3 position)\n"));
  EXPECT_THAT(outcome.errors, HasSubstr("s.lua:2: in main chunk"));
}

TEST(ScriptError, PointForColonIsExplained) {
  const Outcome outcome = runScript("vyr.RigidBody.new('ball')");
  EXPECT_EQ(1, outcome.code);
  EXPECT_THAT(outcome.errors, HasSubstr("hint: write ':' instead of '.': vyr.RigidBody:new("));
}

TEST(ScriptError, WrongTypeOfAVariable) {
  const Outcome outcome = runScript("local q = vyr.Quat()\nq.x = 'wide'");
  EXPECT_EQ(1, outcome.code);
  EXPECT_THAT(outcome.errors, HasSubstr("s.lua:2: invalid type in variable assignment.\n"
                                        "     value is 'string'; 'number' expected."));
}

TEST(ScriptError, MisspeltNameIsRecognised) {
  EXPECT_THAT(runScript("local body = vyr.RigidBody('ball')\nbody:setPositon(1)").errors,
              HasSubstr("s.lua:2: attempt to call method 'setPositon' (a nil value)\n"
                        "     hint: was 'setPosition' meant?\nstack traceback:"));
}

TEST(ScriptError, UseOfADestroyedObject) {
  const Outcome outcome = runScript("local sim = vyrSDK.Simulation()\n"
                                    "local body = vyr.RigidBody:new('ball')\n"
                                    "sim:add(body)\n"
                                    "sim:remove(body)\n"
                                    "print(body)\n"
                                    "print(body:getName())\n");
  EXPECT_EQ(1, outcome.code);
  EXPECT_EQ("deleted vyr::RigidBody\n", outcome.output);
  EXPECT_THAT(outcome.errors, HasSubstr("s.lua:6: attempt to use a deleted vyr::RigidBody\nstack traceback:"));
}

TEST(ScriptError, ExceptionOfABoundCall) {
  const std::vector<std::string> environment = {"LUA_CPATH=" THROWER_DIRECTORY "/?.so"};
  const Outcome outcome = runProgram({"-l", "thrower", "-e", "throwStandard()"}, "", environment);
  EXPECT_EQ(1, outcome.code);
  EXPECT_THAT(outcome.errors, HasSubstr("vyr: C++ exception: the axle broke\nstack traceback:\n"
                                        "\t[C]: in function 'throwStandard'"));
  const Outcome number = runProgram({"-l", "thrower", "-e", "throwNumber()"}, "", environment);
  EXPECT_EQ(1, number.code);
  EXPECT_THAT(number.errors, HasSubstr("vyr: C++ exception of an unknown type"));
  EXPECT_EQ("false\tC++ exception: the axle broke\n",
            runProgram({"-l", "thrower", "-e", "print(pcall(throwStandard))"}, "", environment).output);
}

} // namespace
