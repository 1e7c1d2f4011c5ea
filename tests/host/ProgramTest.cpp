// The program's own options, exit codes and messages.
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;
using testing::Not;
using vyrTest::makeTestFolder;
using vyrTest::Outcome;
using vyrTest::runProgram;
using vyrTest::writeFile;

TEST(Program, HelpAndVersion) {
  const Outcome help = runProgram({"--help"});
  EXPECT_EQ(0, help.code);
  EXPECT_THAT(help.output, HasSubstr("Usage: vyr [options] [script [args]]"));
  const Outcome version = runProgram({"--version"});
  EXPECT_EQ(0, version.code);
  EXPECT_THAT(version.output, HasSubstr("vyr 1.0.0 (Lua 5.1"));
  EXPECT_THAT(version.output, HasSubstr("OpenSceneGraph 3."));
}

TEST(Program, WrongUsage) {
  const Outcome outcome = runProgram({"--gl=vulkan", "s.lua"});
  EXPECT_EQ(2, outcome.code);
  EXPECT_EQ("", outcome.output);
  EXPECT_EQ("vyr: option '--gl' cannot take 'vulkan'\nTry 'vyr --help'.\n", outcome.errors);
}

TEST(Program, DoctorTellsWhatWorks) {
  const Outcome outcome = runProgram({"doctor"}, "", {"DISPLAY="});
  EXPECT_THAT(outcome.output, HasSubstr("OpenSceneGraph 3."));
  EXPECT_THAT(outcome.output, HasSubstr("no window: DISPLAY is not set"));
  EXPECT_THAT(outcome.output, HasSubstr("egl"));
  EXPECT_THAT(outcome.output, HasSubstr("vyrModel"));
  EXPECT_THAT(outcome.output, HasSubstr("lib/vyr/plugins"));
  EXPECT_THAT(outcome.output, HasSubstr("ffmpeg"));
}

TEST(Program, DoctorMissesPrograms) {
  EXPECT_THAT(runProgram({"doctor"}, "", {"PATH=/nowhere"}).output, HasSubstr("Debian package ffmpeg"));
}

TEST(Program, HelpTellsOfClassesAndFunctions) {
  const Outcome function = runProgram({"help", "vyrWire.Wire:attachBegin"});
  EXPECT_EQ(0, function.code);
  EXPECT_THAT(function.output, HasSubstr("vyrWire.Wire:attachBegin(vyr.RigidBody body, vyr.Vec3 point)"));
  EXPECT_THAT(function.output, HasSubstr("Fastens an end"));
  // The last part of a name is enough, and capitals do not matter; of a class the calls that make one are told too.
  EXPECT_EQ(function.output.substr(0, 24), runProgram({"help", "ATTACHBEGIN"}).output.substr(0, 24));
  EXPECT_THAT(runProgram({"help", "vyrUtil.SimpleCar"}).output,
              HasSubstr("vyrUtil.SimpleCar(vyr.Vec3 size, number mass, number wheelRadius)"));
  EXPECT_THAT(runProgram({"help", "vyr.Vec3d"}).output, HasSubstr("vyr.Vec3d + vyr.Vec3d -> vyr.Vec3"));
  EXPECT_THAT(runProgram({"help"}).output, HasSubstr("vyrOSG.ExampleApplication\n"));
  EXPECT_THAT(runProgram({"help", "setp"}).output, HasSubstr("names match 'setp'"));
}

TEST(Program, HelpOfNothingNamesIt) {
  const Outcome outcome = runProgram({"help", "vyrOSG.Nonsense"});
  EXPECT_EQ(1, outcome.code);
  EXPECT_EQ("vyr: nothing is called 'vyrOSG.Nonsense'; 'vyr help' lists the classes\n", outcome.errors);
}

TEST(Program, DefinitionsForEditorsAreLua) {
  const std::string folder = VYR_BINARY_DIR "/share/vyr/types/";
  const Outcome outcome = runProgram({"-e", "dofile('" + folder + "vyr.lua') dofile('" + folder + "vyrOSG.lua') " +
                                                "print(vyr.RigidBody.setMass, vyrOSG.SceneDecorator.setText)"});
  EXPECT_EQ(0, outcome.code) << outcome.errors;
  EXPECT_THAT(outcome.output, testing::MatchesRegex("function: .*\tfunction: .*\n"));
}

TEST(Program, SeedRepeatsRandomNumbers) {
  const std::vector<std::string> arguments = {"--seed", "7", "-e", "print(math.random(), math.random())"};
  const std::string first = runProgram(arguments).output;
  EXPECT_EQ(first, runProgram(arguments).output);
  EXPECT_NE(first, runProgram({"--seed", "8", arguments[2], arguments[3]}).output);
}

} // namespace
