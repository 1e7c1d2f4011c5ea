// The program behaves as the stand-alone interpreter does.
#include "Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::HasSubstr;
using testing::MatchesRegex;
using vyrTest::makeTestFolder;
using vyrTest::Outcome;
using vyrTest::runProgram;
using vyrTest::writeFile;

TEST(LuaBehaviour, ScriptReceivesItsArguments) {
  const std::string script = writeFile(makeTestFolder(), "s.lua",
                                       "print(#arg, arg[0]:match('[^/]*$'), arg[1], arg[2])\n"
                                       "print(arg[-1], arg[-2], arg[-3], ...)");
  const Outcome outcome = runProgram({"--gl=none", "--", script, "one", "-two"});
  EXPECT_EQ(0, outcome.code) << outcome.errors;
  EXPECT_EQ("2\ts.lua\tone\t-two\n--\t--gl=none\tvyr\tone\t-two\n", outcome.output);
}

TEST(LuaBehaviour, ExecutesTextBeforeTheScript) {
  const std::string script = writeFile(makeTestFolder(), "s.lua", "print(x)");
  EXPECT_EQ("1\n5\n", runProgram({"-e", "x = 5 print(1)", script}).output);
  EXPECT_EQ("6\n", runProgram({"-eprint(6)"}).output);
}

TEST(LuaBehaviour, RequiresLibraries) {
  const std::string folder = makeTestFolder();
  writeFile(folder, "wheel.lua", "spokes = 12");
  EXPECT_EQ("12\n", runProgram({"-lwheel", "-e", "print(spokes)"}, "", {"LUA_PATH=" + folder + "/?.lua"}).output);
  const Outcome outcome = runProgram({"-l", "no_such_library"});
  EXPECT_EQ(1, outcome.code);
  EXPECT_THAT(outcome.errors, HasSubstr("module 'no_such_library' not found"));
}

TEST(LuaBehaviour, ReadsTheStandardInput) {
  EXPECT_EQ("7\n", runProgram({}, "print(7)").output);
  EXPECT_EQ("8\ta\n", runProgram({"-", "a"}, "print(8, ...)").output);
}

TEST(LuaBehaviour, VersionGoesWithoutScript) {
  const Outcome outcome = runProgram({"-v"}, "print(1)");
  EXPECT_EQ(0, outcome.code);
  EXPECT_EQ("", outcome.output);
  EXPECT_THAT(outcome.errors, HasSubstr("Lua 5.1"));
}

TEST(LuaBehaviour, InitializationFromTheEnvironment) {
  const std::string file = writeFile(makeTestFolder(), "init.lua", "x = 9");
  EXPECT_EQ("3\n", runProgram({"-e", "print(x)"}, "", {"LUA_INIT=x = 3"}).output);
  EXPECT_EQ("9\n", runProgram({"-e", "print(x)"}, "", {"LUA_INIT=@" + file}).output);
  const Outcome outcome = runProgram({"-e", "print(1)"}, "", {"LUA_INIT=x ="});
  EXPECT_EQ(1, outcome.code);
  EXPECT_EQ("", outcome.output);
  EXPECT_THAT(outcome.errors, HasSubstr("LUA_INIT:1:"));
}

TEST(LuaBehaviour, PromptRunsChunksAndPrintsExpressions) {
  const Outcome outcome =
      runProgram({"-i"}, "x = 2\n=x, x * 3\nfor i = 1, 2 do\nprint('i', i)\nend\nerror('oh')\n=4\n");
  EXPECT_EQ(0, outcome.code);
  EXPECT_THAT(outcome.output, HasSubstr("2\t6\n"));
  EXPECT_THAT(outcome.output, HasSubstr("i\t1\ni\t2\n"));
  EXPECT_THAT(outcome.output, HasSubstr("> 4\n"));
  EXPECT_THAT(outcome.errors, HasSubstr("stdin:1: oh"));
}

TEST(LuaBehaviour, PromptFollowsTheScript) {
  const std::string script = writeFile(makeTestFolder(), "s.lua", "y = 11");
  EXPECT_THAT(runProgram({"-i", script}, "=y\n_PROMPT = 'vyr: '\n=1").output, HasSubstr("> 11\n> vyr: 1\n"));
}

TEST(LuaBehaviour, MissingScript) {
  const Outcome outcome = runProgram({"/no/such/script.lua"});
  EXPECT_EQ(1, outcome.code);
  EXPECT_THAT(outcome.errors, HasSubstr("cannot open /no/such/script.lua"));
}

TEST(LuaBehaviour, SyntaxErrorNamesFileAndLine) {
  const std::string script = writeFile(makeTestFolder(), "s.lua", "x = 1\ny = = 2\n");
  const Outcome outcome = runProgram({script});
  EXPECT_EQ(1, outcome.code);
  EXPECT_THAT(outcome.errors, HasSubstr("s.lua:2: unexpected symbol near '='"));
}

TEST(LuaBehaviour, RuntimeErrorShowsTheTraceback) {
  const std::string script =
      writeFile(makeTestFolder(), "s.lua", "local function drop()\n  error('no floor')\nend\ndrop()\n");
  const Outcome outcome = runProgram({script});
  EXPECT_EQ(1, outcome.code);
  EXPECT_THAT(outcome.errors, HasSubstr("s.lua:2: no floor\nstack traceback:"));
  EXPECT_THAT(outcome.errors, HasSubstr("s.lua:4: in main chunk"));
}

TEST(LuaBehaviour, ErrorObjectsThatAreNoStrings) {
  EXPECT_THAT(runProgram({"-e", "error(setmetatable({}, {__tostring = function() return 'a thing' end}))"}).errors,
              HasSubstr("vyr: a thing"));
  EXPECT_THAT(runProgram({"-e", "error({})"}).errors, HasSubstr("vyr: (error object is a table value)"));
  EXPECT_THAT(runProgram({"-e", "error()"}).errors, HasSubstr("vyr: (error object is nil)"));
  EXPECT_EQ(1, runProgram({"-e", "error({})"}).code);
}

TEST(LuaBehaviour, ExitCodeOfTheScript) {
  EXPECT_EQ(5, runProgram({"-e", "os.exit(5)"}).code);
}

} // namespace
