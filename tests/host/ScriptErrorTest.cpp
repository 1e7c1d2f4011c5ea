// What a user reads when a script goes wrong.
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;
using testing::Not;
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

TEST(ScriptError, ErrorsOfCoroutinesKeepTextAndTraceback) {
  const std::string start = "local function rope() error('the rope is too short') end\n"
                            "local co = coroutine.create(function() rope() end)\n";
  for (const std::string& rest :
       {std::string("local f = coroutine.wrap(function() rope() end)\nlocal function drive() f() end\ndrive()"),
        std::string("local ok, text = coroutine.resume(co)\nlocal function drive() error(text, 0) end\ndrive()")}) {
    const Outcome outcome = runScript(start + rest);
    EXPECT_EQ(1, outcome.code);
    EXPECT_THAT(outcome.errors, HasSubstr("s.lua:1: the rope is too short\nstack traceback of the coroutine:\n"));
    EXPECT_THAT(outcome.errors, HasSubstr("s.lua:1: in function 'rope'\n"));
    EXPECT_THAT(outcome.errors, HasSubstr("\nstack traceback:\n"));
    EXPECT_THAT(outcome.errors, HasSubstr("s.lua:5: in main chunk"));
  }
  // A coroutine that failed before, with another error, has nothing to do with this one.
  EXPECT_THAT(runScript(start + "coroutine.resume(co)\nerror('something else')").errors,
              Not(HasSubstr("of the coroutine")));
}

TEST(ScriptError, TwoApplicationsRunOneAfterTheOther) {
  const Outcome outcome = runProgram({"--gl=none", "--steps=6",
                                      writeFile(makeTestFolder(), "s.lua",
                                                "function scene(sim, app) sim:add(vyr.RigidBody('body')) end\n"
                                                "for i = 1, 2 do\n"
                                                "  local app = vyrOSG.ExampleApplication()\n"
                                                "  app:init(vyrIO.ArgumentParser(arg))\n"
                                                "  app:addScene(arg[0], 'scene', 0, true)\n"
                                                "  print(app:run(), app:getTimeStamp())\n"
                                                "end\n")});
  EXPECT_EQ(0, outcome.code) << outcome.errors;
  EXPECT_EQ("0\t0.1\n0\t0.1\n", outcome.output);
}

} // namespace
