// What the command line means.
#include "CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using vyrHost::CommandLine;
using vyrOSG::LaunchOptions;

struct Parsed {
  bool ok;
  CommandLine line;
  LaunchOptions launch;
  std::string error;
};

Parsed parse(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), "vyr");
  Parsed parsed;
  parsed.ok = CommandLine::parse(arguments, parsed.line, parsed.launch, parsed.error);
  return parsed;
}

TEST(CommandLine, NothingIsARunWithoutScript) {
  const Parsed parsed = parse({});
  EXPECT_TRUE(parsed.ok);
  EXPECT_EQ(CommandLine::RUN, parsed.line.command);
  EXPECT_FALSE(parsed.line.hasScript());
}

TEST(CommandLine, ScriptEndsTheOptions) {
  const Parsed parsed = parse({"-i", "s.lua", "-x", "--gl=egl"});
  EXPECT_TRUE(parsed.ok);
  EXPECT_TRUE(parsed.line.interactive);
  EXPECT_EQ(2u, parsed.line.scriptIndex);
  EXPECT_THAT(parsed.line.getScriptArguments(), ElementsAre("-x", "--gl=egl"));
  EXPECT_EQ(LaunchOptions::AUTO, parsed.launch.backend);
}

TEST(CommandLine, DoubleDashEndsTheOptions) {
  const Parsed parsed = parse({"--", "-s.lua", "a"});
  EXPECT_TRUE(parsed.ok);
  EXPECT_EQ(2u, parsed.line.scriptIndex);
  EXPECT_THAT(parsed.line.getScriptArguments(), ElementsAre("a"));
}

TEST(CommandLine, ActionsKeepTheirOrder) {
  const Parsed parsed = parse({"-e", "x=1", "-lm", "-ey=2", "-l", "n"});
  ASSERT_TRUE(parsed.ok);
  ASSERT_EQ(4u, parsed.line.actions.size());
  EXPECT_EQ("x=1", parsed.line.actions[0].text);
  EXPECT_FALSE(parsed.line.actions[0].isRequire);
  EXPECT_EQ("m", parsed.line.actions[1].text);
  EXPECT_TRUE(parsed.line.actions[1].isRequire);
  EXPECT_EQ("y=2", parsed.line.actions[2].text);
  EXPECT_EQ("n", parsed.line.actions[3].text);
  EXPECT_TRUE(parsed.line.executesText());
  EXPECT_FALSE(parse({"-lm"}).line.executesText());
}

TEST(CommandLine, LaunchOptionsInBothWritings) {
  const Parsed parsed =
      parse({"--gl=none", "--size", "320x200", "--steps=12", "--duration", "2.5", "--fps=25", "--record", "out.mp4",
             "--shot=t=1.5:a.png", "--shot", "t=2:b.png", "--seed=7", "--watch", "s.lua"});
  ASSERT_TRUE(parsed.ok) << parsed.error;
  EXPECT_EQ(LaunchOptions::NONE, parsed.launch.backend);
  EXPECT_EQ(320u, parsed.launch.width);
  EXPECT_EQ(200u, parsed.launch.height);
  EXPECT_EQ(12, parsed.launch.steps);
  EXPECT_EQ(2.5, parsed.launch.duration);
  EXPECT_EQ(25.0, parsed.launch.fps);
  EXPECT_EQ("out.mp4", parsed.launch.record);
  ASSERT_EQ(2u, parsed.launch.shots.size());
  EXPECT_EQ(1.5, parsed.launch.shots[0].time);
  EXPECT_EQ("b.png", parsed.launch.shots[1].file);
  EXPECT_EQ(7u, parsed.line.seed.value());
  EXPECT_TRUE(parsed.line.watch);
  EXPECT_TRUE(parsed.line.hasScript());
}

TEST(CommandLine, PlaceOfTheWindow) {
  const Parsed parsed = parse({"--window", "-10", "20", "640", "480", "--screen=1", "s.lua"});
  ASSERT_TRUE(parsed.ok) << parsed.error;
  EXPECT_EQ(-10, parsed.launch.windowX);
  EXPECT_EQ(20, parsed.launch.windowY);
  EXPECT_EQ(640u, parsed.launch.width);
  EXPECT_EQ(480u, parsed.launch.height);
  EXPECT_EQ(1, parsed.launch.screen);
  EXPECT_TRUE(parsed.line.hasScript());
}

TEST(CommandLine, PlaceOfTheWindowFromTheEnvironment) {
  setenv("OSG_WINDOW", "5 6 70 80", 1);
  setenv("OSG_SCREEN", "2", 1);
  LaunchOptions launch;
  CommandLine::readEnvironment(launch);
  EXPECT_EQ(5, launch.windowX);
  EXPECT_EQ(6, launch.windowY);
  EXPECT_EQ(70u, launch.width);
  EXPECT_EQ(80u, launch.height);
  EXPECT_EQ(2, launch.screen);
  setenv("OSG_WINDOW", "5 6", 1);
  LaunchOptions untouched;
  CommandLine::readEnvironment(untouched);
  EXPECT_EQ(80, untouched.windowX);
  unsetenv("OSG_WINDOW");
  unsetenv("OSG_SCREEN");
}

TEST(CommandLine, CommandsThatAreWords) {
  EXPECT_EQ(CommandLine::DOCTOR, parse({"doctor"}).line.command);
  EXPECT_EQ(CommandLine::RUN, parse({"./doctor"}).line.command);
  const Parsed play = parse({"--gl=none", "--session", "two", "play", "run.journal", "s.lua", "x"});
  EXPECT_EQ(CommandLine::PLAY, play.line.command);
  EXPECT_EQ("run.journal", play.line.journal);
  EXPECT_EQ("s.lua", play.line.arguments[play.line.scriptIndex]);
  EXPECT_THAT(play.line.getScriptArguments(), ElementsAre("--journal", "run.journal", "--journal-session", "two", "x"));
  EXPECT_EQ(CommandLine::REFERENCE, parse({"help"}).line.command);
  EXPECT_EQ("vyr.Vec3", parse({"help", "vyr.Vec3"}).line.topic);
  const Parsed list = parse({"play", "run.journal"});
  EXPECT_EQ(CommandLine::PLAY, list.line.command);
  EXPECT_FALSE(list.line.hasScript());
  EXPECT_FALSE(parse({"play"}).ok);
}

TEST(CommandLine, WrongUsageNamesTheArgument) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"--nonsense"}, "'--nonsense'"},
      {{"-x"}, "'-x'"},
      {{"-ix"}, "'-ix'"},
      {{"-e"}, "'-e' needs an argument"},
      {{"--gl=vulkan"}, "'--gl' cannot take 'vulkan'"},
      {{"--gl"}, "'--gl' needs a value"},
      {{"--size=0x3"}, "'0x3'"},
      {{"--size=axb"}, "'axb'"},
      {{"--steps=-1"}, "'-1'"},
      {{"--steps=1.5"}, "'1.5'"},
      {{"--duration=0"}, "'0'"},
      {{"--duration=nan"}, "'nan'"},
      {{"--fps=-3"}, "'-3'"},
      {{"--shot=file.png"}, "'file.png'"},
      {{"--record="}, "'--record'"},
      {{"--seed=-1"}, "'-1'"},
      {{"--watch=1"}, "'--watch=1'"},
      {{"--window", "1", "2", "3"}, "'--window'"},
      {{"--window", "1", "2", "3", "x"}, "'--window'"},
      {{"--screen=-1"}, "'-1'"},
  };
  for (const auto& [arguments, text] : cases) {
    const Parsed parsed = parse(arguments);
    EXPECT_FALSE(parsed.ok) << arguments[0];
    EXPECT_THAT(parsed.error, HasSubstr(text));
  }
}

TEST(CommandLine, HelpNamesEveryOption) {
  const std::string help = CommandLine::getHelp();
  for (const char* option : {"-e",       "-l",        "-i",         "-v",        "--gl",     "--size", "--window",
                             "--screen", "--steps",   "--duration", "--shot",    "--record", "--fps",  "--seed",
                             "--watch",  "--verbose", "--help",     "--version", "play",     "doctor", "help"})
    EXPECT_THAT(help, HasSubstr(option));
}

} // namespace
