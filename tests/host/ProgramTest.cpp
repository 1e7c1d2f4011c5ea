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

TEST(Program, SeedRepeatsRandomNumbers) {
  const std::vector<std::string> arguments = {"--seed", "7", "-e", "print(math.random(), math.random())"};
  const std::string first = runProgram(arguments).output;
  EXPECT_EQ(first, runProgram(arguments).output);
  EXPECT_NE(first, runProgram({"--seed", "8", arguments[2], arguments[3]}).output);
}

} // namespace
